// DVD subpicture units: two size bytes, the offset of the control sequences, the run lengths of the
// two fields, the control sequences.
#include "tools/kssub/subpicture.h"

#include <cstddef>
#include <numeric>

namespace kssub {
namespace {

using Bytes = std::span<const unsigned char>;
using Rgba = std::array<unsigned char, 4>;
/// A value for each of the four pixel codes.
using FourNibbles = std::array<unsigned char, 4>;

/// Takes numbers off bytes, the highest byte first.
class ByteReader {
 public:
  ByteReader(Bytes readBytes, std::size_t start, const char* endsEarlyReason)
      : bytes(readBytes), offset(start), endsEarly(endsEarlyReason) {}

  std::size_t position() const { return offset; }
  void skip(std::size_t count) { offset += count; }
  unsigned byte() {
    if (offset >= bytes.size()) throw BrokenUnit(endsEarly);
    return bytes[offset++];
  }
  unsigned word() {
    const unsigned high = byte();
    return high << 8 | byte();
  }

 private:
  Bytes bytes;
  std::size_t offset;
  const char* endsEarly;
};

// ---- Control sequences ----

struct Area {
  int left, right, top, bottom;  // the last two numbers of each pair are inside
};

/// What is shown, as far as the control sequences have told.
struct Display {
  FourNibbles colors{};
  FourNibbles contrasts{};
  std::optional<Area> area;
  std::optional<std::array<std::size_t, 2>> fields;  // offsets of the upper and the lower one

  int opacity() const { return std::accumulate(contrasts.begin(), contrasts.end(), 0); }
};

int milliseconds(unsigned delay) { return static_cast<int>(delay * 1024 / 90); }

/// In the order of the pixel codes, of which the unit has the last one first.
FourNibbles readNibbles(ByteReader& reader) {
  const unsigned word = reader.word();
  FourNibbles nibbles;
  for (unsigned i = 0; i < 4; ++i) nibbles[i] = static_cast<unsigned char>(word >> 4 * i & 0xF);
  return nibbles;
}

/// Two numbers of 12 bits, which must not decrease.
std::array<int, 2> readExtent(ByteReader& reader) {
  const unsigned high = reader.byte();
  const unsigned low = reader.word();
  const unsigned first = high << 4 | low >> 12;
  const unsigned last = low & 0xFFF;
  if (last < first) throw BrokenUnit("its display area ends before it begins");
  return {static_cast<int>(first), static_cast<int>(last)};
}

Area readArea(ByteReader& reader) {
  const auto [left, right] = readExtent(reader);
  const auto [top, bottom] = readExtent(reader);
  return {left, right, top, bottom};
}

std::array<std::size_t, 2> readFieldOffsets(ByteReader& reader) {
  const std::size_t upper = reader.word();
  return {upper, reader.word()};
}

/// Skips changes of colours and contrast between columns of the picture; their size counts its own
/// two bytes.
void skipChanges(ByteReader& reader) {
  const unsigned size = reader.word();
  if (size < 2) throw BrokenUnit("a control command has an impossible size");
  reader.skip(size - 2);
}

class ControlSequences {
 public:
  explicit ControlSequences(Bytes controlledUnit) : unit(controlledUnit) {}

  void readFrom(std::size_t offset) {
    for (std::size_t next = readOne(offset); next != offset; next = readOne(offset)) {
      if (next < end) throw BrokenUnit("its control sequences overlap");
      offset = next;
    }
  }

  Display shown;
  std::optional<unsigned> start;
  std::optional<unsigned> stop;

 private:
  /// Returns the offset of the next one; the last one names itself.
  std::size_t readOne(std::size_t offset) {
    ByteReader reader(unit, offset, "its control sequences end too early");
    const unsigned delay = reader.word();
    const std::size_t next = reader.word();
    while (readCommand(reader, delay)) continue;
    if (current.opacity() >= shown.opacity()) shown = current;
    end = reader.position();
    return next;
  }

  /// False for the command that ends a sequence.
  bool readCommand(ByteReader& reader, unsigned delay) {
    switch (reader.byte()) {
      case 0x00:  // forced start
      case 0x01:
        start = start.value_or(delay);
        return true;
      case 0x02:
        stop = delay;
        return true;
      case 0x03:
        current.colors = readNibbles(reader);
        return true;
      case 0x04:
        current.contrasts = readNibbles(reader);
        return true;
      case 0x05:
        current.area = readArea(reader);
        return true;
      case 0x06:
        current.fields = readFieldOffsets(reader);
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

  Bytes unit;
  std::size_t end = 0;  // of the last one read
  Display current;
};

// ---- Pixels ----

/// The run lengths of one field, whose lines begin at whole bytes.
class Field {
 public:
  Field(Bytes pixelData, std::size_t offset)
      : reader(pixelData, offset, "its bitmap ends too early") {}

  /// Appends the next line, `width` pixels of `colors`, to `rgba`.
  void readLine(int width, const std::array<Rgba, 4>& colors, std::vector<unsigned char>& rgba) {
    for (int left = width; left > 0;) {
      const unsigned code = readCode();
      const int run = code < 4 ? left : static_cast<int>(code >> 2);  // 0: to the end of the line
      if (run > left) throw BrokenUnit("a run goes past the end of its line");
      const Rgba& color = colors[code & 3];
      for (int i = 0; i < run; ++i) rgba.insert(rgba.end(), color.begin(), color.end());
      left -= run;
    }
    inByte = false;
  }

 private:
  /// One to four nibbles, the more the more leading zeros: the length of a run, and in the lowest
  /// two bits its pixel code.
  unsigned readCode() {
    unsigned code = readNibble();
    for (unsigned least = 0x4; code < least && least <= 0x40; least <<= 2) {
      code = code << 4 | readNibble();
    }
    return code;
  }

  unsigned readNibble() {
    if (!inByte) byte = reader.byte();
    inByte = !inByte;
    return inByte ? byte >> 4 : byte & 0xF;
  }

  ByteReader reader;
  unsigned byte = 0;
  bool inByte = false;  // its lower nibble is next
};

Rgba pixel(std::uint32_t rgb, unsigned alpha) {
  const auto low = [](unsigned value) { return static_cast<unsigned char>(value & 0xFF); };
  return {low(rgb >> 16), low(rgb >> 8), low(rgb), low(alpha)};
}

std::array<Rgba, 4> pixelsOf(const Display& display, const Palette& palette) {
  std::array<Rgba, 4> pixels;
  for (unsigned i = 0; i < 4; ++i) {
    pixels[i] = palette.custom
                    ? pixel(palette.custom->colors[i],
                            (palette.custom->transparent >> i & 1) != 0 ? 0 : 0xFF)
                    : pixel(palette.colors[display.colors[i]], display.contrasts[i] * 0x11u);
  }
  return pixels;
}

/// The lines come from the two fields in turn.
Image readImage(const Display& display, Bytes pixelData, const Palette& palette) {
  const Area& area = *display.area;
  Image image{area.right - area.left + 1, area.bottom - area.top + 1, {}};
  const std::array<Rgba, 4> pixels = pixelsOf(display, palette);
  const auto [upper, lower] = *display.fields;
  std::array fields{Field(pixelData, upper), Field(pixelData, lower)};
  for (int y = 0; y < image.height; ++y) {
    fields[static_cast<unsigned>(y) % 2].readLine(image.width, pixels, image.rgba);
  }
  return image;
}

}  // namespace

Subpicture decodeSubpicture(Bytes unit, const Palette& palette) {
  constexpr std::size_t kControlOffset = 2;
  const unsigned control = ByteReader(unit, kControlOffset, "it has no header").word();
  ControlSequences sequences(unit);
  sequences.readFrom(control);
  const Display& shown = sequences.shown;
  if (!shown.area || !shown.fields) throw BrokenUnit("it has no display area or no bitmap");
  Subpicture picture;
  picture.image = readImage(shown, unit.first(control), palette);
  picture.left = shown.area->left;
  picture.top = shown.area->top;
  picture.startDelay = milliseconds(sequences.start.value_or(0));
  if (sequences.stop) picture.stopDelay = milliseconds(*sequences.stop);
  return picture;
}

}  // namespace kssub
