// Characters written as entities, the character references of HTML.
#pragma once

#include <cstddef>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// What a character reference stands for, and how long it is.
struct Entity {
  char32_t first = 0;
  char32_t second = 0;     ///< 0: there is only one character.
  std::size_t length = 0;  ///< 0: `text` begins with no reference.
};

/// The reference at the beginning of `text`, which begins with '&': a number, or any name that HTML
/// has. The semicolon may be missing where HTML permits.
Entity htmlEntityOf(std::string_view text) noexcept;

/// The same, in SubRip: only with its semicolon, and not the number of an invalid character.
Entity subRipEntityOf(std::string_view text) noexcept;

/// What a reference to a line feed or a carriage return becomes.
enum class LineReference { kSpace, kLineEnd };

/// Consumes the reference at the beginning of `text`, or else only the ampersand, and appends what
/// it stands for.
void consumeHtmlEntity(std::string_view& text, CueText& out,
                       LineReference lineReference = LineReference::kSpace);

}  // namespace kssubtitle::importing
