// The control sequences of a subpicture unit: each a delay, the offset of the next one, and
// commands.
#include "kssubtitle/import/pictures/control_sequences.h"

#include <numeric>

namespace kssubtitle::importing {
namespace {

constexpr unsigned kNever = 0xFFFF;  // a delay

int opacityOf(const Display& display) noexcept {
  return std::accumulate(display.contrasts.begin(), display.contrasts.end(), 0);
}

/// In the order of the pixel codes; the unit has the last one first.
FourNibbles readNibbles(UnitReader& reader) noexcept {
  const unsigned word = reader.word();
  FourNibbles nibbles;
  for (unsigned i = 0; i < 4; ++i) nibbles[i] = static_cast<unsigned char>(word >> 4 * i & 0xF);
  return nibbles;
}

/// Two numbers of 12 bits.
std::array<int, 2> readExtent(UnitReader& reader) noexcept {
  const unsigned high = reader.byte();
  const unsigned low = reader.word();
  return {static_cast<int>(high << 4 | low >> 12), static_cast<int>(low & 0xFFF)};
}

DisplayArea readArea(UnitReader& reader) noexcept {
  const auto [left, right] = readExtent(reader);
  const auto [top, bottom] = readExtent(reader);
  return {left, right, top, bottom};
}

std::array<std::size_t, 2> readFieldOffsets(UnitReader& reader) noexcept {
  const std::size_t upper = reader.word();
  return {upper, reader.word()};
}

class SequenceReader {
 public:
  explicit SequenceReader(UnitBytes unit) noexcept : unit_(unit) {}

  Control readFrom(std::size_t offset) noexcept {
    for (std::size_t next = readOne(offset); next != offset && isSound(); next = readOne(offset)) {
      if (next < end_) {
        damage("Its control sequences overlap.");
        break;
      }
      offset = next;
    }
    return control_;
  }

 private:
  bool isSound() const noexcept { return control_.damage.empty(); }
  void damage(std::string_view sentence) noexcept {
    if (isSound()) control_.damage = sentence;
  }

  /// Returns the offset of the next one; the last one gives its own.
  std::size_t readOne(std::size_t offset) noexcept {
    UnitReader reader(unit_, offset);
    const unsigned delay = reader.word();
    const std::size_t next = reader.word();
    while (!reader.isPastEnd() && readCommand(reader, delay)) continue;
    if (reader.isPastEnd()) damage("Its control sequences end too early.");
    if (opacityOf(current_) >= opacityOf(control_.shown)) control_.shown = current_;
    end_ = reader.position();
    return next;
  }

  /// False for the command that ends a sequence.
  bool readCommand(UnitReader& reader, unsigned delay) noexcept {
    switch (reader.byte()) {
      case 0x00:
        control_.isForced = true;
        [[fallthrough]];
      case 0x01:
        control_.start = control_.start.value_or(delay);
        return true;
      case 0x02:
        control_.stop = delay == kNever ? std::nullopt : std::optional(delay);
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
        return skipChanges(reader);
      case 0xFF:
        return false;
      default:
        damage("It has an unknown control command.");
        return false;
    }
  }

  /// The size of the changes of colours and contrasts includes its own two bytes.
  bool skipChanges(UnitReader& reader) noexcept {
    const unsigned size = reader.word();
    if (size < 2) damage("A control command has an impossible size.");
    if (size < 2) return false;
    reader.skip(size - 2);
    control_.changesColors = true;
    return true;
  }

  UnitBytes unit_;
  std::size_t end_ = 0;  // of the last one read
  Display current_;
  Control control_;
};

}  // namespace

Control readControl(UnitBytes unit, std::size_t offset) noexcept {
  return SequenceReader(unit).readFrom(offset);
}

}  // namespace kssubtitle::importing
