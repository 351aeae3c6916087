// Colours as files write them.
#include "kssubtitle/import/markup/colours.h"

#include <algorithm>
#include <iterator>

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

std::optional<int> colourOfDigits(std::string_view digits) noexcept {
  const auto colour = hexadecimalNumber(digits);
  if (digits.size() == 6) return colour;
  return colour && digits.size() == 3 ? std::optional(doubled(*colour)) : std::nullopt;
}

}  // namespace

std::optional<int> hexadecimalNumber(std::string_view digits) noexcept {
  constexpr std::size_t kMostDigits = 7;  // which fit an int
  if (digits.empty() || digits.size() > kMostDigits) return std::nullopt;
  int number = 0;
  for (const char c : digits) {
    const int digit = hexadecimalDigit(c);
    if (digit > 15) return std::nullopt;
    number = number << 4 | digit;
  }
  return number;
}

int swappedRedAndBlue(int colour) noexcept {
  return (colour & 0xFF) << 16 | (colour & 0xFF00) | colour >> 16;
}

std::optional<int> colourOf(std::string_view text) noexcept {
  if (text.starts_with('#')) return colourOfDigits(text.substr(1));
  const auto* const found = std::lower_bound(std::begin(kNamedColours), std::end(kNamedColours),
                                             NamedColour{text, 0}, isBefore);
  if (found != std::end(kNamedColours) && equalNoCase(found->name, text)) return found->colour;
  return text.size() == 6 ? colourOfDigits(text) : std::nullopt;
}

}  // namespace kssubtitle::importing
