// DVD subpicture units: from their bytes to a picture and when it is shown.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "tools/kssub/image.h"
#include "tools/kssub/unit_reader.h"

namespace kssub {

/// The colours that units choose from, as 0xRRGGBB.
struct Palette {
  /// Replaces the four colours of every unit, and their contrast.
  struct Custom {
    std::array<std::uint32_t, 4> colors{};
    std::uint32_t transparent = 0;  ///< A bit for each colour, the first one's is bit 0.
  };

  std::array<std::uint32_t, 16> colors{};
  std::optional<Custom> custom;
};

struct Subpicture {
  Image image;   ///< The display area.
  int left = 0;  ///< Where its corner stands in the frame.
  int top = 0;
  int startDelay = 0;            ///< Milliseconds behind the unit's own time.
  std::optional<int> stopDelay;  ///< The same; without one the next picture ends this one.
};

/// Decodes a whole unit, its two size bytes first. A unit that fades is taken where it is most
/// opaque. Throws BrokenUnit.
Subpicture decodeSubpicture(UnitBytes unit, const Palette& palette);

}  // namespace kssub
