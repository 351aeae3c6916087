// Colours as tags name them.
#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

#include "kssubtitle/import/markup/style.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

struct NamedColour {
  std::string_view name;
  int colour;
};

constexpr NamedColour kNamedColours[] = {
#include "kssubtitle/import/markup/colours.inc"
};

constexpr bool isBefore(const NamedColour& a, const NamedColour& b) noexcept {
  return std::ranges::lexicographical_compare(a.name, b.name, {}, lowerOf, lowerOf);
}
static_assert(std::is_sorted(std::begin(kNamedColours), std::end(kNamedColours), isBefore));

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
  const auto* const found = std::lower_bound(std::begin(kNamedColours), std::end(kNamedColours),
                                             NamedColour{text, 0}, isBefore);
  if (found != std::end(kNamedColours) && equalNoCase(found->name, text)) return found->colour;
  return text.size() == 6 ? colourByNumber(text) : std::nullopt;
}

}  // namespace kssubtitle::importing
