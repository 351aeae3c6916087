// The control sequences of a DVD subpicture unit: each a delay, the offset of the next one, and
// commands.
#include "tools/kssub/control_sequences.h"

#include <numeric>

namespace kssub {
namespace {

int opacityOf(const Display& display) {
  return std::accumulate(display.contrasts.begin(), display.contrasts.end(), 0);
}

/// In the order of the pixel codes, of which the unit has the last one first.
FourNibbles readNibbles(UnitReader& reader) {
  const unsigned word = reader.word();
  FourNibbles nibbles;
  for (unsigned i = 0; i < 4; ++i) nibbles[i] = static_cast<unsigned char>(word >> 4 * i & 0xF);
  return nibbles;
}

/// Two numbers of 12 bits, which must not decrease.
std::array<int, 2> readExtent(UnitReader& reader) {
  const unsigned high = reader.byte();
  const unsigned low = reader.word();
  const unsigned first = high << 4 | low >> 12;
  const unsigned last = low & 0xFFF;
  if (last < first) throw BrokenUnit("its display area ends before it begins");
  return {static_cast<int>(first), static_cast<int>(last)};
}

DisplayArea readArea(UnitReader& reader) {
  const auto [left, right] = readExtent(reader);
  const auto [top, bottom] = readExtent(reader);
  return {left, right, top, bottom};
}

std::array<std::size_t, 2> readFieldOffsets(UnitReader& reader) {
  const std::size_t upper = reader.word();
  return {upper, reader.word()};
}

/// Skips changes of colours and contrast between columns of the picture; their size counts its own
/// two bytes.
void skipChanges(UnitReader& reader) {
  const unsigned size = reader.word();
  if (size < 2) throw BrokenUnit("a control command has an impossible size");
  reader.skip(size - 2);
}

class SequenceReader {
 public:
  explicit SequenceReader(UnitBytes unit) : unit_(unit) {}

  Control readFrom(std::size_t offset) {
    for (std::size_t next = readOne(offset); next != offset; next = readOne(offset)) {
      if (next < end_) throw BrokenUnit("its control sequences overlap");
      offset = next;
    }
    return control_;
  }

 private:
  /// Returns the offset of the next one; the last one names itself.
  std::size_t readOne(std::size_t offset) {
    UnitReader reader(unit_, offset, "its control sequences end too early");
    const unsigned delay = reader.word();
    const std::size_t next = reader.word();
    while (readCommand(reader, delay)) continue;
    if (opacityOf(current_) >= opacityOf(control_.shown)) control_.shown = current_;
    end_ = reader.position();
    return next;
  }

  /// False for the command that ends a sequence.
  bool readCommand(UnitReader& reader, unsigned delay) {
    switch (reader.byte()) {
      case 0x00:  // forced start
      case 0x01:
        control_.start = control_.start.value_or(delay);
        return true;
      case 0x02:
        control_.stop = delay;
        return true;
      case 0x03:
        current_.colors = readNibbles(reader);
        return true;
      case 0x04:
        current_.contrasts = readNibbles(reader);
        return true;
      case 0x05:
        current_.area = readArea(reader);
        return true;
      case 0x06:
        current_.fields = readFieldOffsets(reader);
        return true;
      case 0x07:
        skipChanges(reader);
        return true;
      case 0xFF:
        return false;
      default:
        throw BrokenUnit("it has an unknown control command");
    }
  }

  UnitBytes unit_;
  std::size_t end_ = 0;  // of the last one read
  Display current_;
  Control control_;
};

}  // namespace

Control readControl(UnitBytes unit, std::size_t offset) {
  return SequenceReader(unit).readFrom(offset);
}

}  // namespace kssub
