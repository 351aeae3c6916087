// Opens VobSub files through the import library.
#include "tools/kssub/open_pictures.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "tools/kssub/report_text.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

/// The missing file may be the other one of the two.
[[noreturn]] void throwPictureRefusal(const std::string& path, const ksImportReport& report) {
  std::error_code ignored;
  const bool isCannotOpen = report.refusal() == ksImportRefusal::kCannotOpen;
  const bool isReadable =
      std::filesystem::is_regular_file(path, ignored) && access(path.c_str(), R_OK) == 0;
  if (!isCannotOpen || !isReadable) {
    throwRefusal(path, report);
  }
  const std::string stream = std::filesystem::path(path).replace_extension(".sub").string();
  throw std::runtime_error(terminalText(path) + ": cannot open its pictures, " +
                           terminalText(stream) + ": " +
                           std::generic_category().message(report.systemError()));
}

}  // namespace

void addStream(CLI::App& app, std::optional<int>& stream) {
  app.add_option("--stream", stream, "The language of pictures, by its index in the file")
      ->type_name("NUMBER");
}

ksImportPictures openPictures(const std::string& path, const ksImportOptions& options,
                              std::optional<int> stream) {
  ksImportPictures pictures;
  if (!pictures.Open(path.c_str(), options)) throwPictureRefusal(path, pictures.report());
  const auto streams = pictures.streams();
  if (!stream) {
    requireLanguage(path, options.language, pictures.report());
    return pictures;
  }
  const auto found = std::ranges::find(streams, *stream, &ksImportPictureStream::index);
  if (!pictures.Select(static_cast<std::size_t>(found - streams.begin()))) {
    throw std::runtime_error(terminalText(path) + ": there is no language with index " +
                             std::to_string(*stream));
  }
  return pictures;
}

std::string languageOf(const ksImportPictureStream& stream) {
  const std::string number = "index " + std::to_string(stream.index);
  const std::string name = stream.name.empty() ? stream.language : stream.name;
  return name.empty() ? number : terminalText(name) + ", " + number;
}

}  // namespace kssub
