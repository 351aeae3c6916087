// The control sequences of a subpicture unit: what it shows, where and when.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "kssubtitle/import/pictures/unit_reader.h"

namespace kssubtitle::importing {

/// A value for each of the four pixel codes, in their order.
using FourNibbles = std::array<unsigned char, 4>;

struct DisplayArea {
  int left, right, top, bottom;  // right and bottom are the last column and row inside
};

/// What is shown, as far as control sequences have said.
struct Display {
  FourNibbles colors{};
  FourNibbles contrasts{};
  std::optional<DisplayArea> area;
  std::optional<std::array<std::size_t, 2>> fields;  // offsets of the upper and the lower one
};

struct Control {
  Display shown;                  ///< When the unit is most opaque, the last such time.
  std::optional<unsigned> start;  ///< The first one's delay, in units of 1024/90 ms.
  std::optional<unsigned> stop;   ///< The last one's, likewise; nothing if it never comes.
  bool isForced = false;
  bool changesColors = false;  ///< By column, which is not supported.
  std::string_view damage;     ///< A sentence on what cannot be read; empty if all can.
};

/// Reads all control sequences of `unit`; the first is at `offset`.
Control readControl(UnitBytes unit, std::size_t offset) noexcept;

}  // namespace kssubtitle::importing
