// The file beside another, whatever the case of its extension.
#include "kssubtitle/import/pictures/sibling.h"

#include <dirent.h>
#include <unistd.h>

#include <memory>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

// With the C library, as std::filesystem ends the program if memory runs out.
std::string siblingOf(const std::string& path, std::string_view extension) {
  const std::size_t name = path.rfind('/') + 1;  // 0 without a directory
  const std::size_t dot = path.rfind('.');
  const std::size_t end = dot != path.npos && dot > name ? dot : path.size();
  const std::string stem = path.substr(name, end - name);
  const std::string directory = path.substr(0, name);
  std::string expected = directory + stem;
  expected += extension;
  if (access(expected.c_str(), F_OK) == 0) return expected;

  const std::unique_ptr<DIR, int (*)(DIR*)> files(opendir(name > 0 ? directory.c_str() : "."),
                                                  &closedir);
  std::string found;
  for (const dirent* file; files && (file = readdir(files.get())) != nullptr;) {
    const std::string_view each = file->d_name;
    const bool belongs = each.starts_with(stem) && equalNoCase(each.substr(stem.size()), extension);
    if (belongs && (found.empty() || each < found)) found = each;
  }
  return found.empty() ? expected : directory + found;
}

}  // namespace kssubtitle::importing
