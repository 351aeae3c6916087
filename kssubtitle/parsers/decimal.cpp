// Decimal numbers that the short way in decimal.h does not take.
#include "kssubtitle/parsers/decimal.h"

#include <cstdlib>
#include <cwchar>

namespace kssubtitle::internal {

std::optional<int> scanDecimalSlowly(const std::string& text) noexcept {
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (end == text.c_str()) return std::nullopt;
  return static_cast<int>(value);
}

std::optional<int> scanDecimalSlowly(const std::wstring& text) noexcept {
  wchar_t* end = nullptr;
  const long value = std::wcstol(text.c_str(), &end, 10);
  if (end == text.c_str()) return std::nullopt;
  return static_cast<int>(value);
}

}  // namespace kssubtitle::internal
