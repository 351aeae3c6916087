// Text of any file, made UTF-8 and fit for a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kssub {

/// `text` as UTF-8 in which the line feed is the only control character: the others of ASCII become
/// their pictures, and whatever is no printable character becomes U+FFFD, byte by byte. Text in an
/// 8-bit encoding other than UTF-8 comes out with U+FFFD for its foreign letters.
std::string terminalText(std::string_view text);

/// The lines of terminalText(); none for the empty text.
std::vector<std::string> terminalLines(std::string_view text);

/// The same for standard output behind `indent` columns: if it is a terminal, lines too long for
/// the rest of its width are wrapped.
std::vector<std::string> outputLines(std::string_view text, std::size_t indent);

/// `text` as UTF-8: whatever is none becomes U+FFFD, byte by byte. Control characters stay.
std::string utf8Text(const char* text);
/// The same for wide text, one code point in each character.
std::string utf8Text(const wchar_t* text);

struct Decoded {
  char32_t codePoint;
  std::size_t size;  ///< In bytes.
};

/// The first code point of `text`, which is not empty; U+FFFD, of one byte, if it is not UTF-8.
Decoded decodeUtf8(std::string_view text);

}  // namespace kssub
