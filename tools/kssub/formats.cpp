// Looks up names and extensions in the library's tables of formats.
#include "tools/kssub/formats.h"

#include <CLI/StringTools.hpp>
#include <algorithm>
#include <sstream>

namespace kssub {

bool hasExtension(const ksImportFormat& format, std::string_view extension) {
  std::istringstream all{std::string(format.extensions)};
  for (std::string one; all >> one;) {
    if (one == extension) return true;
  }
  return false;
}

std::vector<std::string> formatNames() {
  std::vector<std::string> names;
  for (const ksImportFormat* const format : ksImportFormats()) names.emplace_back(format->name);
  std::ranges::sort(names);
  return names;
}

std::vector<std::string> writtenExtensions() {
  std::vector<std::string> extensions;
  for (const ksImportFormat* const format : ksImportWrittenFormats()) {
    extensions.emplace_back(format->extensions.substr(0, format->extensions.find(' ')));
  }
  return extensions;
}

std::optional<ksImportTarget> targetNamed(std::string_view word) {
  const std::string lower = CLI::detail::to_lower(std::string(word));
  for (const ksImportFormat* const format : ksImportWrittenFormats()) {
    if (format->name == lower || hasExtension(*format, lower)) return format->target;
  }
  return std::nullopt;
}

}  // namespace kssub
