// Finds the subtitle files that are given as arguments, also in directories.
#include "tools/kssub/directory_walk.h"

#include <CLI/StringTools.hpp>
#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "tools/kssub/formats.h"

namespace kssub {
namespace {

namespace fs = std::filesystem;

/// In lower case, without its dot.
std::string extensionOf(const fs::path& path) {
  const std::string extension = CLI::detail::to_lower(path.extension().string());
  return extension.empty() ? "" : extension.substr(1);
}

bool isSubtitleExtension(const std::string& extension) {
  return std::ranges::any_of(ksImportFormats(), [&](const ksImportFormat* format) {
    return hasExtension(*format, extension);
  });
}

void walk(const std::string& directory, std::vector<FoundFile>& files) {
  constexpr std::string_view kAmbiguous[] = {"idx", "sub", "txt", "xml"};
  std::error_code error;
  fs::recursive_directory_iterator at(directory, fs::directory_options::skip_permission_denied,
                                      error);
  const auto begin = static_cast<std::ptrdiff_t>(files.size());
  for (; !error && at != fs::recursive_directory_iterator(); at.increment(error)) {
    const std::string extension = extensionOf(at->path());
    std::error_code ignored;
    if (isSubtitleExtension(extension) && at->is_regular_file(ignored)) {
      const auto* const other = std::ranges::find(kAmbiguous, extension);
      files.push_back({at->path().string(), other != std::end(kAmbiguous)});
    }
  }
  std::sort(files.begin() + begin, files.end(),
            [](const FoundFile& a, const FoundFile& b) { return a.path < b.path; });
}

}  // namespace

std::vector<FoundFile> filesOf(const std::vector<std::string>& arguments) {
  std::vector<FoundFile> files;
  for (const std::string& argument : arguments) {
    std::error_code ignored;
    if (fs::is_directory(argument, ignored)) {
      walk(argument, files);
    } else {
      files.push_back({argument});
    }
  }
  return files;
}

}  // namespace kssub
