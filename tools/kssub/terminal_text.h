// Text of any file, made fit for a terminal.
#pragma once

#include <string>

namespace kssub {

/// `text` as UTF-8 in which the line feed is the only control character: the others of ASCII become
/// their pictures, and whatever is no printable character becomes U+FFFD, byte by byte. Text in an
/// 8-bit encoding other than UTF-8 comes out with U+FFFD for its foreign letters.
std::string terminalText(const char* text);
/// The same for wide text, one code point in each character.
std::string terminalText(const wchar_t* text);

}  // namespace kssub
