// How the file of each format is read: where its text begins, how many lines it may have, and what
// becomes of its last one.
#pragma once

#include <type_traits>

namespace kssubtitle::internal {

/// The byte-order mark of UTF-16LE. The manager gives a file that begins with it to a wide parser;
/// the wide parsers skip as many bytes without a look at them.
inline constexpr unsigned char kWideMark[] = {0xFF, 0xFE};

/// What becomes of a last line that has no line feed.
enum class LastLine { kKept, kLost };

struct ReadingRules {
  LastLine lastLine;
  long start;        ///< The offset, in bytes, of the text.
  unsigned lineCap;  ///< How many lines that end in a line feed are accepted, empty ones included.
};

inline constexpr unsigned kMostTextLines = 20000;

template <typename Char>
inline constexpr long kTextStart = std::is_same_v<Char, wchar_t> ? sizeof kWideMark : 0;

template <typename Char>
inline constexpr ReadingRules kSubRipFile{
    .lastLine = LastLine::kKept, .start = kTextStart<Char>, .lineCap = kMostTextLines};

template <typename Char>
inline constexpr ReadingRules kScriptFile{
    .lastLine = LastLine::kLost, .start = kTextStart<Char>, .lineCap = kMostTextLines};

/// Of both widths. Deliberate: no mark is skipped.
inline constexpr ReadingRules kIndexFile{.lastLine = LastLine::kLost, .start = 0, .lineCap = 5000};

}  // namespace kssubtitle::internal
