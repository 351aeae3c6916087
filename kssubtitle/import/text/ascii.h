// Characters of ASCII, in no locale.
#pragma once

#include <algorithm>
#include <string_view>

namespace kssubtitle::importing {

constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }
constexpr bool isLetter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
/// White space within a line; a carriage return before a line feed is one too.
constexpr bool isBlank(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}
constexpr char lowerOf(char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// White space between words, line ends included.
constexpr bool isSpace(char c) noexcept { return isBlank(c) || c == '\n'; }
/// The value of a hexadecimal digit; 16 if it is not one.
constexpr int hexadecimalDigit(char c) noexcept {
  if (isDigit(c)) return c - '0';
  const char lower = lowerOf(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

/// Whether both are equal, ignoring case.
constexpr bool equalNoCase(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerOf(x) == lowerOf(y); });
}

constexpr bool startsWithNoCase(std::string_view text, std::string_view start) noexcept {
  return equalNoCase(text.substr(0, start.size()), start);
}

/// Where `word` first occurs, in any case; npos if it does not.
constexpr std::size_t findNoCase(std::string_view text, std::string_view word) noexcept {
  const auto found = std::search(text.begin(), text.end(), word.begin(), word.end(),
                                 [](char x, char y) { return lowerOf(x) == lowerOf(y); });
  return found == text.end() ? text.npos : static_cast<std::size_t>(found - text.begin());
}

constexpr std::string_view withoutLeadingBlanks(std::string_view text) noexcept {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  return text;
}

constexpr std::string_view withoutTrailingBlanks(std::string_view text) noexcept {
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

constexpr std::string_view withoutBlanks(std::string_view text) noexcept {
  return withoutTrailingBlanks(withoutLeadingBlanks(text));
}

/// Whether `text` consists of digits, at least one.
constexpr bool isNumber(std::string_view text) noexcept {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

}  // namespace kssubtitle::importing
