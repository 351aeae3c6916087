// Subpicture units: from their bytes to a picture and when it is shown.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "kssubtitle/import/pictures/control_sequences.h"
#include "kssubtitle/import/pictures/unit_reader.h"

namespace kssubtitle::importing {

/// The colours that units choose from, as 0xRRGGBB.
struct Palette {
  /// Replaces the four colours of every unit, and their contrast.
  struct Custom {
    std::array<std::uint32_t, 4> colors{};
    std::array<bool, 4> isTransparent{};
  };

  /// Without them a unit's colours are greys, the lighter the lower their pixel code.
  std::optional<std::array<std::uint32_t, 16>> colors;
  std::optional<Custom> custom;
  int alphaPercent = 100;  ///< Of what a unit or the custom colours say.
};

/// What a unit says of itself. If it is damaged, only what could be read is set.
struct Subpicture {
  Control control;
  int width = 0;  ///< Of its display area, at most 4,096.
  int height = 0;
  long long startDelay = 0;            ///< Milliseconds behind the unit's own time.
  std::optional<long long> stopDelay;  ///< The same; nothing if it is behind no start.
  std::string_view damage;             ///< Why it gives no picture, a sentence; empty if it does.
};

/// Reads the control sequences of a whole unit, its two size bytes first, and looks at every run
/// length. A unit that fades is taken where it is most opaque.
Subpicture readSubpicture(UnitBytes unit) noexcept;

/// The pixels of a unit that is not damaged, of which `subpicture` was read: red, green, blue and
/// alpha of each, rows from the top.
std::vector<unsigned char> drawSubpicture(UnitBytes unit, const Subpicture& subpicture,
                                          const Palette& palette);

}  // namespace kssubtitle::importing
