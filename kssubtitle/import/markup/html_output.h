// Writes the small set of HTML tags, and escapes text.
#pragma once

#include <iterator>
#include <string_view>

#include "kssubtitle/import/markup/style.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {

struct HtmlTag {
  bool Style::*isSet;
  std::string_view opening;
  std::string_view closing;
};

inline constexpr HtmlTag kHtmlTags[] = {
    {&Style::italic, "<i>", "</i>"},
    {&Style::bold, "<b>", "</b>"},
    {&Style::underline, "<u>", "</u>"},
    {&Style::strikeOut, "<s>", "</s>"},
};

/// "rrggbb" of a colour.
struct HtmlColour {
  explicit HtmlColour(int colour) noexcept {
    constexpr std::string_view kDigits = "0123456789abcdef";
    for (int i = 0; i < 6; ++i) {
      digits[i] = kDigits[static_cast<std::size_t>(colour >> (20 - 4 * i) & 0xF)];
    }
  }
  operator std::string_view() const noexcept { return {digits, sizeof digits}; }

  char digits[6];
};

/// Passes the opening tags of a style to `put`, piece by piece.
template <typename Put>
void putOpeningTags(const Style& style, Put put) {
  for (const HtmlTag& tag : kHtmlTags) {
    if (style.*tag.isSet) put(tag.opening);
  }
  if (style.colour == Style::kNoColour) return;
  put("<font color=\"#");
  put(HtmlColour(style.colour));
  put("\">");
}

/// Passes its closing tags.
template <typename Put>
void putClosingTags(const Style& style, Put put) {
  if (style.colour != Style::kNoColour) put("</font>");
  for (auto tag = std::rbegin(kHtmlTags); tag != std::rend(kHtmlTags); ++tag) {
    if (style.*tag->isSet) put(tag->closing);
  }
}

/// Passes the characters, escaping & < >.
template <typename Put>
void putEscaped(std::string_view characters, Put put) {
  while (!characters.empty()) {
    const std::size_t plain = findAny<'&', '<', '>'>(characters);
    put(characters.substr(0, plain));
    characters.remove_prefix(plain);
    if (characters.empty()) return;
    const char sign = characters.front();
    put(sign == '&' ? "&amp;" : sign == '<' ? "&lt;" : "&gt;");
    characters.remove_prefix(1);
  }
}

}  // namespace kssubtitle::importing
