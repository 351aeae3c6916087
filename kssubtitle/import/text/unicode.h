// Code points and their forms in UTF-8, UTF-16 and UTF-32.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kssubtitle::importing {

/// Stands for what cannot be decoded.
inline constexpr char32_t kReplacement = 0xFFFD;
inline constexpr std::string_view kReplacementUtf8 = "\xEF\xBF\xBD";
inline constexpr std::string_view kBomUtf8 = "\xEF\xBB\xBF";

constexpr bool isSurrogate(char32_t c) noexcept { return c >= 0xD800 && c < 0xE000; }
constexpr bool isScalar(char32_t c) noexcept { return c < 0x110000 && !isSurrogate(c); }

/// Writes the 1 to 4 bytes of a scalar value to `to` and returns where they end.
char* writeUtf8(char32_t c, char* to) noexcept;
void appendUtf8(std::string& text, char32_t c);

/// The length of the UTF-8 sequence that `text` begins with; 0 if it begins with none.
std::size_t sequenceLength(std::string_view text) noexcept;
/// The code point of a sequence of that length.
char32_t codePointOf(std::string_view sequence) noexcept;

/// Valid UTF-8 as one character for each code point.
std::wstring wideText(std::string_view utf8);

/// What a text is as UTF-8.
struct Utf8Count {
  std::size_t sequences = 0;  ///< Of two bytes or more.
  std::size_t badBytes = 0;   ///< In no sequence, not counting one that the text's end cuts.
  bool cutAtEnd = false;
};
Utf8Count countUtf8(std::string_view text) noexcept;

/// The same text with U+FFFD for each byte in no sequence; calls `replaced` with the offset of each
/// in the new text.
template <typename Replaced>
std::string repairUtf8(std::string_view text, Replaced replaced) {
  std::string repaired;
  repaired.reserve(text.size() + text.size() / 16);
  while (!text.empty()) {
    std::size_t length = sequenceLength(text);
    if (length == 0) {
      replaced(repaired.size());
      repaired += kReplacementUtf8;
      length = 1;
    } else {
      repaired.append(text.substr(0, length));
    }
    text.remove_prefix(length);
  }
  return repaired;
}

}  // namespace kssubtitle::importing
