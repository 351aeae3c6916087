// DVD subpicture units: two size bytes, the offset of the control sequences, the run lengths of the
// two fields, the control sequences.
#include "tools/kssub/subpicture.h"

#include <cstddef>

#include "tools/kssub/control_sequences.h"
#include "tools/kssub/run_lengths.h"

namespace kssub {
namespace {

int milliseconds(unsigned delay) { return static_cast<int>(delay * 1024 / 90); }

Rgba pixel(std::uint32_t rgb, unsigned alpha) {
  const auto low = [](unsigned value) { return static_cast<unsigned char>(value & 0xFF); };
  return {low(rgb >> 16), low(rgb >> 8), low(rgb), low(alpha)};
}

std::array<Rgba, 4> pixelsOf(const Display& display, const Palette& palette) {
  std::array<Rgba, 4> pixels;
  for (unsigned i = 0; i < 4; ++i) {
    pixels[i] = palette.custom
                    ? pixel(palette.custom->colors[i],
                            (palette.custom->transparent >> i & 1) != 0 ? 0 : 0xFF)
                    : pixel(palette.colors[display.colors[i]], display.contrasts[i] * 0x11u);
  }
  return pixels;
}

/// The lines come from the two fields in turn.
Image readImage(const Display& display, UnitBytes pixelData, const Palette& palette) {
  const DisplayArea& area = *display.area;
  Image image{area.right - area.left + 1, area.bottom - area.top + 1, {}};
  const std::array<Rgba, 4> pixels = pixelsOf(display, palette);
  const auto [upper, lower] = *display.fields;
  std::array fields{RunLengths(pixelData, upper), RunLengths(pixelData, lower)};
  for (int y = 0; y < image.height; ++y) {
    fields[static_cast<unsigned>(y) % 2].readLine(image.width, pixels, image.rgba);
  }
  return image;
}

}  // namespace

Subpicture decodeSubpicture(UnitBytes unit, const Palette& palette) {
  constexpr std::size_t kControlOffset = 2;
  const unsigned offset = UnitReader(unit, kControlOffset, "it has no header").word();
  const Control control = readControl(unit, offset);
  const Display& shown = control.shown;
  if (!shown.area || !shown.fields) throw BrokenUnit("it has no display area or no bitmap");
  Subpicture picture;
  picture.image = readImage(shown, unit.first(offset), palette);
  picture.left = shown.area->left;
  picture.top = shown.area->top;
  picture.startDelay = milliseconds(control.start.value_or(0));
  if (control.stop) picture.stopDelay = milliseconds(*control.stop);
  return picture;
}

}  // namespace kssub
