// The pixels of a DVD subpicture unit: codes of run lengths, taken off nibble by nibble.
#include "tools/kssub/run_lengths.h"

namespace kssub {

RunLengths::RunLengths(UnitBytes pixelData, std::size_t offset)
    : reader_(pixelData, offset, "its bitmap ends too early") {}

void RunLengths::readLine(int width, const std::array<Rgba, 4>& colors,
                          std::vector<unsigned char>& rgba) {
  for (int left = width; left > 0;) {
    const unsigned code = readCode();
    const int run = code < 4 ? left : static_cast<int>(code >> 2);  // 0: to the end of the line
    if (run > left) throw BrokenUnit("a run goes past the end of its line");
    const Rgba& color = colors[code & 3];
    for (int i = 0; i < run; ++i) rgba.insert(rgba.end(), color.begin(), color.end());
    left -= run;
  }
  inByte_ = false;
}

/// One to four nibbles, the more the more leading zeros: the length of a run, and in the lowest
/// two bits its pixel code.
unsigned RunLengths::readCode() {
  unsigned code = readNibble();
  for (unsigned least = 0x4; code < least && least <= 0x40; least <<= 2) {
    code = code << 4 | readNibble();
  }
  return code;
}

unsigned RunLengths::readNibble() {
  if (!inByte_) byte_ = reader_.byte();
  inByte_ = !inByte_;
  return inByte_ ? byte_ >> 4 : byte_ & 0xF;
}

}  // namespace kssub
