// The palette: the colours in which subpicture units are shown.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "kssubtitle/import/pictures/control_sequences.h"

namespace kssubtitle::importing {

/// What an index says about colours, as 0xRRGGBB.
struct Palette {
  /// Replaces the four colours of every unit, and their contrast.
  struct Custom {
    std::array<std::uint32_t, 4> colors{};
    std::array<bool, 4> isTransparent{};
  };

  /// What units choose their four from; without them, defaultColors() are shown.
  std::optional<std::array<std::uint32_t, 16>> colors;
  std::optional<Custom> custom;
  int alphaPercent = 100;  ///< Of what the unit or the custom colours say.
};

using Rgba = std::array<unsigned char, 4>;

/// The pixels that the four pixel codes of a unit stand for.
std::array<Rgba, 4> pixelsOf(const Display& display, const Palette& palette);

}  // namespace kssubtitle::importing
