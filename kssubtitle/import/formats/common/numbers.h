// Numbers as the text of a file has them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

/// Digits, and the number that they are.
struct Digits {
  long long value = 0;
  std::size_t count = 0;
};

/// Takes digits off the very front of `text`; nothing if there are none, or more than 12.
constexpr std::optional<Digits> consumeDigitsAtFront(std::string_view& text) noexcept {
  constexpr std::size_t kMostDigits = 12;
  const std::size_t looked = std::min(text.size(), kMostDigits + 1);
  Digits digits;
  for (; digits.count < looked && isDigit(text[digits.count]); ++digits.count) {
    digits.value = digits.value * 10 + static_cast<unsigned char>(text[digits.count] - '0');
  }
  if (digits.count == 0 || digits.count > kMostDigits) return std::nullopt;
  text.remove_prefix(digits.count);
  return digits;
}

/// The same with the blanks before them.
constexpr std::optional<Digits> consumeDigits(std::string_view& text) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  const auto digits = consumeDigitsAtFront(rest);
  if (digits) text = rest;
  return digits;
}

/// The number of the two digits at `p`; above 99 if they are none.
constexpr unsigned twoDigits(const char* p) noexcept {
  const auto tens = static_cast<unsigned>(p[0] - '0');
  const auto ones = static_cast<unsigned>(p[1] - '0');
  return tens > 9 || ones > 9 ? 100U : tens * 10 + ones;
}

/// The milliseconds of the digits behind a decimal point.
constexpr long long millisecondsOfFraction(Digits fraction) noexcept {
  for (; fraction.count < 3; ++fraction.count) fraction.value *= 10;
  for (; fraction.count > 3; --fraction.count) fraction.value /= 10;
  return fraction.value;
}

/// Takes a character off the front of `text`, with the blanks before it; false if another is there.
constexpr bool consumeCharacter(std::string_view& text, char c) noexcept {
  const std::string_view rest = withoutLeadingBlanks(text);
  if (!rest.starts_with(c)) return false;
  text = rest.substr(1);
  return true;
}

/// Takes a sign off, with the blanks before it; whether it is a minus.
constexpr bool consumeSign(std::string_view& text) noexcept {
  if (text.empty() || isDigit(text.front())) return false;
  if (consumeCharacter(text, '-')) return true;
  consumeCharacter(text, '+');
  return false;
}

/// Takes an integer with or without a sign off the front of `text`, with the blanks before it;
/// nothing if there is none, or one of more than 12 digits.
constexpr std::optional<long long> consumeInteger(std::string_view& text) noexcept {
  std::string_view rest = text;
  const bool isNegative = consumeSign(rest);
  const auto digits = consumeDigits(rest);
  if (!digits) return std::nullopt;
  text = rest;
  return isNegative ? -digits->value : digits->value;
}

/// A number as it stands in a text.
struct Decimal {
  double value = 0;
  std::size_t length = 0;  ///< How many characters it has; 0: there is none.
};

/// The number at the front of `text`, behind blanks or not, which consumeDecimal() takes.
Decimal decimalAtFront(std::string_view text) noexcept;

/// Takes a number with or without a sign, and with or without a fraction behind a point or a comma,
/// off the front of `text`; nothing if there is none, or one of more than 12 digits before the
/// fraction. Of a fraction three digits or more are exact. ".5" and "1." are numbers too.
inline std::optional<double> consumeDecimal(std::string_view& text) noexcept {
  const Decimal decimal = decimalAtFront(text);
  if (decimal.length == 0) return std::nullopt;
  text.remove_prefix(decimal.length);
  return decimal.value;
}

}  // namespace kssubtitle::importing
