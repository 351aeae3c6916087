// White space at the ends of a line: that of any script, no-break spaces and marks of UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

namespace kssubtitle::importing {

/// How many bytes of white space valid UTF-8 begins with.
std::size_t leadingWhiteSpace(std::string_view text) noexcept;
/// How many bytes of white space valid UTF-8 ends with.
std::size_t trailingWhiteSpace(std::string_view text) noexcept;

}  // namespace kssubtitle::importing
