// A pack of the MPEG-2 program stream (ISO/IEC 13818-1) in a ".sub" file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <span>

namespace kssubtitle::internal {

/// 2048 bytes: a pack header without stuffing, then one PES packet of private stream 1 whose
/// payload begins with a sub-stream id. Only the first pack of a subpicture unit is checked to be
/// one.
class ProgramStreamPack {
 public:
  /// Reads the next pack; false if nothing is left. What a short read leaves out keeps its bytes.
  bool read(std::FILE* file) { return std::fread(bytes_.data(), 1, bytes_.size(), file) != 0; }

  /// Whether a unit of the first subpicture stream begins in this pack.
  bool beginsUnit() const noexcept;
  /// Whether the payload belongs to the first subpicture stream.
  bool isFirstSubStream() const noexcept;
  /// The size, in bytes, of the unit that begins here.
  int unitSize() const noexcept { return word(0); }
  /// The offset, in bytes, of that unit's control sequence table.
  int controlOffset() const noexcept { return word(2); }
  /// What the pack holds of the unit, up to the end of the pack.
  std::span<const unsigned char> payload() const noexcept;

 private:
  std::size_t headerDataLength() const noexcept;
  int word(std::size_t offset) const noexcept;

  std::array<unsigned char, 2048> bytes_{};
};

}  // namespace kssubtitle::internal
