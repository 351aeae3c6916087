// Decimal numbers at the front of a text, as the C library reads them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kssubtitle/strings/width_rules.h"

namespace kssubtitle::internal {

/// The decimal number that `text` begins with, after white space and a sign; cut to 32 bits.
template <typename Char>
std::optional<int> scanDecimal(std::basic_string_view<Char> text) {
  return scanNumber(std::basic_string<Char>(text).c_str(), 10);
}

/// scanDecimal(), with 0 where there is no number.
template <typename Char>
int decimalOf(std::basic_string_view<Char> text) {
  return scanDecimal(text).value_or(0);
}

}  // namespace kssubtitle::internal
