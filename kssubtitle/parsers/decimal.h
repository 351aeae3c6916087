// Decimal numbers at the front of a text, as the C library reads them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "kssubtitle/strings/width_rules.h"

namespace kssubtitle::internal {

/// The decimal number that `text` begins with, behind white space and a sign; cut to 32 bits.
template <typename Char>
std::optional<int> scanDecimal(std::basic_string_view<Char> text) {
  constexpr std::size_t kSafeDigits = 9;
  int value = 0;
  std::size_t digits = 0;
  while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9') {
    if (++digits > kSafeDigits) break;
    value = value * 10 + static_cast<int>(text[digits - 1] - '0');
  }
  if (digits > 0 && digits <= kSafeDigits) return value;
  return scanNumber(std::basic_string<Char>(text).c_str(), 10);
}

/// scanDecimal(), with 0 where there is no number.
template <typename Char>
int decimalOf(std::basic_string_view<Char> text) {
  return scanDecimal(text).value_or(0);
}

}  // namespace kssubtitle::internal
