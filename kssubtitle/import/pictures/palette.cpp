// The palette of a VobSub index, and the default palette of files without one.
#include "kssubtitle/import/pictures/palette.h"

#include <algorithm>

namespace kssubtitle::importing {
namespace {

Rgba pixel(std::uint32_t rgb, unsigned alpha) noexcept {
  const auto low = [](unsigned value) { return static_cast<unsigned char>(value & 0xFF); };
  return {low(rgb >> 16), low(rgb >> 8), low(rgb), low(alpha)};
}

/// The default palette: shades of grey for the visible colours, evenly spaced from white to black
/// in the order of their pixel codes, as the first visible one is commonly that of the letters.
std::array<std::uint32_t, 4> defaultColors(const Display& display) {
  std::array<unsigned, 4> ranks{};
  unsigned colors = 0;
  for (unsigned i = 0; i < 4; ++i) {
    if (display.contrasts[i] == 0) continue;
    ranks[i] = colors;
    for (unsigned j = 0; j < i; ++j) {
      const bool isSame = display.contrasts[j] != 0 && display.colors[j] == display.colors[i];
      if (isSame) ranks[i] = ranks[j];
    }
    colors = std::max(colors, ranks[i] + 1);
  }
  const unsigned steps = std::max(colors, 2U) - 1;
  std::array<std::uint32_t, 4> greys;
  for (unsigned i = 0; i < 4; ++i) greys[i] = 255 * (steps - ranks[i]) / steps * 0x010101U;
  return greys;
}

std::array<std::uint32_t, 4> colorsOf(const Display& display, const Palette& palette) {
  if (palette.custom) return palette.custom->colors;
  if (!palette.colors) return defaultColors(display);
  std::array<std::uint32_t, 4> colors;
  for (unsigned i = 0; i < 4; ++i) colors[i] = (*palette.colors)[display.colors[i]];
  return colors;
}

unsigned alphaOf(unsigned code, const Display& display, const Palette& palette) noexcept {
  if (!palette.custom) return display.contrasts[code] * 0x11U;
  return palette.custom->isTransparent[code] ? 0 : 0xFF;
}

}  // namespace

std::array<Rgba, 4> pixelsOf(const Display& display, const Palette& palette) {
  const auto percent = static_cast<unsigned>(palette.alphaPercent);
  const auto colors = colorsOf(display, palette);
  std::array<Rgba, 4> pixels;
  for (unsigned i = 0; i < 4; ++i) {
    pixels[i] = pixel(colors[i], alphaOf(i, display, palette) * percent / 100);
  }
  return pixels;
}

}  // namespace kssubtitle::importing
