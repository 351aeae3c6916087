// Colours as tags name them.
#include <algorithm>
#include <charconv>
#include <string_view>

#include "kssubtitle/import/markup/style.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

struct NamedColour {
  std::string_view name;
  int colour;
};

// The sixteen of HTML 4, and the few others that subtitles are seen to use.
constexpr NamedColour kNamedColours[] = {
    {"aqua", 0x00FFFF},    {"black", 0x000000},   {"blue", 0x0000FF},      {"brown", 0xA52A2A},
    {"cyan", 0x00FFFF},    {"fuchsia", 0xFF00FF}, {"gold", 0xFFD700},      {"gray", 0x808080},
    {"green", 0x008000},   {"grey", 0x808080},    {"lightblue", 0xADD8E6}, {"lime", 0x00FF00},
    {"magenta", 0xFF00FF}, {"maroon", 0x800000},  {"navy", 0x000080},      {"olive", 0x808000},
    {"orange", 0xFFA500},  {"pink", 0xFFC0CB},    {"purple", 0x800080},    {"red", 0xFF0000},
    {"silver", 0xC0C0C0},  {"skyblue", 0x87CEEB}, {"teal", 0x008080},      {"violet", 0xEE82EE},
    {"white", 0xFFFFFF},   {"yellow", 0xFFFF00},
};

/// "rgb" as "rrggbb".
constexpr int doubled(int colour) noexcept {
  const int red = colour >> 8 & 0xF;
  const int green = colour >> 4 & 0xF;
  const int blue = colour & 0xF;
  return (red * 0x11) << 16 | (green * 0x11) << 8 | blue * 0x11;
}

std::optional<int> colourByNumber(std::string_view digits) noexcept {
  int colour = 0;
  const char* const end = digits.data() + digits.size();
  const bool isNumber = std::from_chars(digits.data(), end, colour, 16).ptr == end;
  if (!isNumber || colour < 0) return std::nullopt;
  if (digits.size() == 6) return colour;
  return digits.size() == 3 ? std::optional(doubled(colour)) : std::nullopt;
}

}  // namespace

std::optional<int> colourOf(std::string_view text) noexcept {
  if (text.starts_with('#')) return colourByNumber(text.substr(1));
  for (const NamedColour& entry : kNamedColours) {
    if (equalNoCase(entry.name, text)) return entry.colour;
  }
  return text.size() == 6 ? colourByNumber(text) : std::nullopt;
}

}  // namespace kssubtitle::importing
