// Numbers as the text of a file has them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

/// Digits, and the number that they write.
struct Digits {
  long long value = 0;
  std::size_t count = 0;
};

/// Consumes digits at the very front of `text`; nothing if there are none, or more than 12.
constexpr std::optional<Digits> consumeDigitsAtFront(std::string_view& text) noexcept {
  constexpr std::size_t kMostDigits = 12;
  const std::size_t looked = std::min(text.size(), kMostDigits + 1);
  Digits digits;
  for (; digits.count < looked && isDigit(text[digits.count]); ++digits.count) {
    digits.value = digits.value * 10 + (text[digits.count] - '0');
  }
  if (digits.count == 0 || digits.count > kMostDigits) return std::nullopt;
  text.remove_prefix(digits.count);
  return digits;
}

/// Consumes digits and the blanks before them.
constexpr std::optional<Digits> consumeDigits(std::string_view& text) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  const auto digits = consumeDigitsAtFront(rest);
  if (digits) text = rest;
  return digits;
}

/// The milliseconds of the digits after a decimal point.
constexpr long long millisecondsOfFraction(Digits fraction) noexcept {
  for (; fraction.count < 3; ++fraction.count) fraction.value *= 10;
  for (; fraction.count > 3; --fraction.count) fraction.value /= 10;
  return fraction.value;
}

/// Consumes a character and the blanks before it; false if another comes first.
constexpr bool consumeCharacter(std::string_view& text, char c) noexcept {
  const std::string_view rest = withoutLeadingBlanks(text);
  if (!rest.starts_with(c)) return false;
  text = rest.substr(1);
  return true;
}

/// Consumes a sign, if there is one, and the blanks before it; whether it is a minus.
constexpr bool consumeSign(std::string_view& text) noexcept {
  if (consumeCharacter(text, '-')) return true;
  consumeCharacter(text, '+');
  return false;
}

/// Consumes an integer with or without a sign, and the blanks before and within it; nothing if
/// there is none, or one of more than 12 digits.
constexpr std::optional<long long> consumeInteger(std::string_view& text) noexcept {
  std::string_view rest = text;
  const bool isNegative = consumeSign(rest);
  const auto digits = consumeDigits(rest);
  if (!digits) return std::nullopt;
  text = rest;
  return isNegative ? -digits->value : digits->value;
}

/// Consumes a number with or without a sign, and with or without a fraction after a point or a
/// comma; nothing if there is none, or one of more than 12 digits before the fraction. Of a
/// fraction three digits or more are exact. ".5" and "1." are numbers too.
std::optional<double> consumeDecimal(std::string_view& text) noexcept;

}  // namespace kssubtitle::importing
