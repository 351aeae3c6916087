// The pixels of a subpicture unit: the run lengths of one of its two fields.
#pragma once

#include <cstddef>

#include "kssubtitle/import/pictures/unit_reader.h"

namespace kssubtitle::importing {

/// The lines of one field, which begin at whole bytes.
class RunLengths {
 public:
  /// Begins at `offset` of `unit`.
  RunLengths(UnitBytes unit, std::size_t offset) noexcept : unit_(unit), at_(2 * offset) {}

  /// Calls `draw` with the length and the pixel code of each run of the next line, which is `width`
  /// pixels long. False if a run ends after the line or the unit.
  template <typename Draw>
  bool readLine(int width, Draw draw) noexcept {
    for (int left = width; left > 0;) {
      const unsigned code = readCode();
      const int run = code < 4 ? left : static_cast<int>(code >> 2);  // 0: to the end of the line
      if (run > left || at_ > 2 * unit_.size()) return false;
      draw(run, code & 3);
      left -= run;
    }
    at_ += at_ & 1;
    return true;
  }

 private:
  /// One to four nibbles, depending on the leading zeros: the length of a run, and in the lowest
  /// two bits its pixel code.
  unsigned readCode() noexcept {
    unsigned code = readNibble();
    for (unsigned least = 0x4; code < least && least <= 0x40; least <<= 2) {
      code = code << 4 | readNibble();
    }
    return code;
  }

  unsigned readNibble() noexcept {
    const std::size_t at = at_++;
    if (at / 2 >= unit_.size()) return 0;
    const unsigned byte = unit_[at / 2];
    return at % 2 == 0 ? byte >> 4 : byte & 0xF;
  }

  UnitBytes unit_;
  std::size_t at_;  // in nibbles
};

}  // namespace kssubtitle::importing
