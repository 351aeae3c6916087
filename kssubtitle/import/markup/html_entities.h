// Characters written as the character references of HTML.
#pragma once

#include <cstddef>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// What a character reference stands for, and how long it is.
struct HtmlEntity {
  char32_t first = 0;
  char32_t second = 0;     ///< 0: there is only one character.
  std::size_t length = 0;  ///< 0: `text` begins with no reference.
};

/// What a number in a reference means: the character of that number, of windows-1252 from 0x80 to
/// 0x9F, U+FFFD if there is none.
char32_t characterOfNumber(char32_t number) noexcept;

/// The reference at the front of `text`, which begins with '&': a number, or any name that HTML
/// has. The semicolon may be missing where HTML lets it.
HtmlEntity htmlEntityOf(std::string_view text) noexcept;

/// What a reference to a line feed or a carriage return is.
enum class LineReference { kSpace, kLineEnd };

/// Takes the reference, or else the ampersand alone, off the front of `text` and appends what it
/// stands for.
void takeHtmlEntity(std::string_view& text, CueText& out,
                    LineReference lineReference = LineReference::kSpace);

}  // namespace kssubtitle::importing
