// White space at the ends of a line: that of any script, no-break spaces and BOMs.
#pragma once

#include <cstddef>
#include <string_view>

namespace kssubtitle::importing {

/// Most lines begin and end with such a character.
constexpr bool isAsciiGraphic(char c) noexcept {
  return c > 0x20 && static_cast<unsigned char>(c) < 0x7F;
}

std::size_t leadingWhiteSpaceOf(std::string_view text) noexcept;
std::size_t trailingWhiteSpaceOf(std::string_view text) noexcept;

/// How many bytes of white space valid UTF-8 begins with.
inline std::size_t leadingWhiteSpace(std::string_view text) noexcept {
  return text.empty() || isAsciiGraphic(text.front()) ? 0 : leadingWhiteSpaceOf(text);
}

/// How many bytes of white space valid UTF-8 ends with.
inline std::size_t trailingWhiteSpace(std::string_view text) noexcept {
  return text.empty() || isAsciiGraphic(text.back()) ? 0 : trailingWhiteSpaceOf(text);
}

}  // namespace kssubtitle::importing
