// White space at the ends of a line.
#include "kssubtitle/import/markup/white_space.h"

#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

constexpr bool isWhiteSpace(char32_t c) noexcept {
  if (c <= 0x20) return c == 0x20 || (c >= 0x09 && c <= 0x0D) || (c >= 0x1C && c <= 0x1F);
  return c == 0x85 || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 ||
         c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000 || c == 0xFEFF;
}

constexpr bool isContinuation(char c) noexcept {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace

std::size_t leadingWhiteSpaceOf(std::string_view text) noexcept {
  std::size_t size = 0;
  while (size < text.size() && !isAsciiGraphic(text[size])) {
    const std::size_t length = sequenceLength(text.substr(size));
    if (!isWhiteSpace(codePointOf(text.substr(size, length)))) break;
    size += length;
  }
  return size;
}

std::size_t trailingWhiteSpaceOf(std::string_view text) noexcept {
  std::size_t end = text.size();
  while (end > 0 && !isAsciiGraphic(text[end - 1])) {
    std::size_t begin = end - 1;
    while (begin > 0 && isContinuation(text[begin])) --begin;
    if (!isWhiteSpace(codePointOf(text.substr(begin, end - begin)))) break;
    end = begin;
  }
  return text.size() - end;
}

}  // namespace kssubtitle::importing
