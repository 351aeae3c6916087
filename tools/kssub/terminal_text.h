// Converts text of any origin to UTF-8 that is safe to print to a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kssub {

/// `text` as UTF-8 whose only control character is the line feed: other ASCII controls become their
/// control pictures (U+2400 on), other controls and each byte of invalid UTF-8 become U+FFFD.
std::string terminalText(std::string_view text);

/// The lines of terminalText(); none for the empty text.
std::vector<std::string> terminalLines(std::string_view text);

/// The same for standard output after `indent` columns: if it is a terminal, lines that do not fit
/// the rest of its width are wrapped.
std::vector<std::string> outputLines(std::string_view text, std::size_t indent);

/// `text` as UTF-8: each byte that is not valid UTF-8 becomes U+FFFD. Control characters stay.
std::string utf8Text(const char* text);
/// The same for wide text with one code point per character.
std::string utf8Text(const wchar_t* text);

struct Decoded {
  char32_t codePoint;
  std::size_t size;  ///< In bytes.
};

/// The first code point of `text`, which is not empty; U+FFFD of one byte if it is not UTF-8.
Decoded decodeUtf8(std::string_view text);

}  // namespace kssub
