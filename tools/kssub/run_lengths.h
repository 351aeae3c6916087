// The pixels of a DVD subpicture unit: the run lengths of one of its two fields.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "tools/kssub/unit_reader.h"

namespace kssub {

using Rgba = std::array<unsigned char, 4>;

/// The lines of one field, which begin at whole bytes.
class RunLengths {
 public:
  /// Begins at `offset` of `pixelData`.
  RunLengths(UnitBytes pixelData, std::size_t offset);

  /// Appends the next line, `width` pixels of `colors`, to `rgba`. Throws BrokenUnit.
  void readLine(int width, const std::array<Rgba, 4>& colors, std::vector<unsigned char>& rgba);

 private:
  unsigned readCode();
  unsigned readNibble();

  UnitReader reader_;
  unsigned byte_ = 0;
  bool inByte_ = false;  // its lower nibble is next
};

}  // namespace kssub
