// Subpicture units: two size bytes, the offset of the control sequences, the run lengths of the two
// fields, the control sequences.
#include "kssubtitle/import/pictures/subpicture.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "kssubtitle/import/pictures/run_lengths.h"

namespace kssubtitle::importing {
namespace {

long long milliseconds(unsigned delay) noexcept {
  return static_cast<long long>(delay) * 1024 / 90;
}

/// Calls `draw` with the length and the pixel code of each run, lines from the top, which are in
/// the two fields in turn. False if a line is damaged.
template <typename Draw>
bool readRuns(UnitBytes unit, const Subpicture& subpicture, Draw draw) noexcept {
  const auto [upper, lower] = *subpicture.control.shown.fields;
  std::array fields{RunLengths(unit, upper), RunLengths(unit, lower)};
  for (int y = 0; y < subpicture.height; ++y) {
    if (!fields[static_cast<unsigned>(y) % 2].readLine(subpicture.width, draw)) return false;
  }
  return true;
}

std::string_view damageOf(UnitBytes unit, const Subpicture& subpicture) noexcept {
  const Control& control = subpicture.control;
  if (!control.damage.empty()) return control.damage;
  if (!control.shown.area || !control.shown.fields) return "It has no picture.";
  if (subpicture.width < 1 || subpicture.height < 1) return "Its area ends before it begins.";
  if (readRuns(unit, subpicture, [](int, unsigned) {})) return {};
  return "Its pixels go past the end of their line or of their data.";
}

}  // namespace

Subpicture readSubpicture(UnitBytes unit) noexcept {
  constexpr std::size_t kControlOffset = 2;
  Subpicture subpicture;
  subpicture.control = readControl(unit, UnitReader(unit, kControlOffset).word());
  const Control& control = subpicture.control;
  if (const auto& area = control.shown.area) {
    subpicture.width = area->right - area->left + 1;
    subpicture.height = area->bottom - area->top + 1;
  }
  subpicture.startDelay = milliseconds(control.start.value_or(0));
  if (control.stop > control.start) subpicture.stopDelay = milliseconds(*control.stop);
  subpicture.damage = damageOf(unit, subpicture);
  return subpicture;
}

std::vector<unsigned char> drawSubpicture(UnitBytes unit, const Subpicture& subpicture,
                                          const Palette& palette) {
  const std::array<Rgba, 4> pixels = pixelsOf(subpicture.control.shown, palette);
  std::vector<unsigned char> rgba(static_cast<std::size_t>(subpicture.width) *
                                  static_cast<std::size_t>(subpicture.height) * sizeof(Rgba));
  auto at = rgba.begin();
  readRuns(unit, subpicture, [&](int length, unsigned code) {
    for (int i = 0; i < length; ++i) at = std::copy_n(pixels[code].begin(), sizeof(Rgba), at);
  });
  return rgba;
}

}  // namespace kssubtitle::importing
