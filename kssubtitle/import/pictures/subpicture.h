// Subpicture units: from their bytes to a picture and when it is shown.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "kssubtitle/import/pictures/control_sequences.h"
#include "kssubtitle/import/pictures/palette.h"
#include "kssubtitle/import/pictures/unit_reader.h"

namespace kssubtitle::importing {

/// What a unit says about its picture. If it is damaged, only what could be read is set.
struct Subpicture {
  Control control;
  int width = 0;  ///< Of its display area, at most 4,096.
  int height = 0;
  long long startDelay = 0;            ///< Milliseconds after the unit's own time.
  std::optional<long long> stopDelay;  ///< The same; nothing without one after the start.
  std::string_view damage;             ///< Why there is no picture, a sentence; empty if there is.
};

/// Reads the control sequences of a whole unit, which begins with its two size bytes, and checks
/// every run length. A unit that fades is read as it is when it is most opaque.
Subpicture readSubpicture(UnitBytes unit) noexcept;

/// The pixels of an undamaged unit that `subpicture` was read from: red, green, blue and alpha of
/// each, rows from the top.
std::vector<unsigned char> drawSubpicture(UnitBytes unit, const Subpicture& subpicture,
                                          const Palette& palette);

}  // namespace kssubtitle::importing
