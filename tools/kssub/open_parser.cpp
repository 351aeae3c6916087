// Opens subtitle files through the import library.
#include "tools/kssub/open_parser.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include "tools/kssub/report_text.h"

namespace kssub {
namespace {

constexpr const char* kStandardInput = "standard input";

/// At most one byte more than `most`, which is enough to be refused.
std::string readStandardInput(std::size_t most) {
  std::string bytes;
  std::array<char, 1 << 16> block;
  while (bytes.size() <= most) {
    const std::size_t wanted = std::min(block.size(), most + 1 - bytes.size());
    const std::size_t count = std::fread(block.data(), 1, wanted, stdin);
    if (count == 0) break;
    bytes.append(block.data(), count);
  }
  if (std::ferror(stdin) != 0) {
    throwCannotOpen(kStandardInput, std::generic_category().message(errno));
  }
  return bytes;
}

}  // namespace

bool readSubtitles(ksImportParser& parser, const FileRequest& request) {
  if (request.path != "-") return parser.Open(request.path.c_str(), request.options);
  const std::string bytes = readStandardInput(request.options.maxBytes);
  return parser.OpenMemory(bytes.data(), bytes.size(), request.options);
}

std::string nameOf(const FileRequest& request) {
  return request.path == "-" ? kStandardInput : request.path;
}

ksImportParser openedParser(const FileRequest& request) {
  ksImportParser parser;
  const ksImportReport& report = parser.report();
  if (!readSubtitles(parser, request)) throwRefusal(nameOf(request), report);
  requireLanguage(nameOf(request), request.options.language, report);
  return parser;
}

}  // namespace kssub
