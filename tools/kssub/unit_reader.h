// The bytes of a DVD subpicture unit, taken off one number after another.
#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>

namespace kssub {

/// Why a unit gives no picture.
class BrokenUnit : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

using UnitBytes = std::span<const unsigned char>;

/// Takes numbers off bytes, the highest byte first.
class UnitReader {
 public:
  /// Begins at `offset`. Where a number goes past the end, BrokenUnit is thrown with the text
  /// `endsEarly`, which outlives the reader.
  UnitReader(UnitBytes bytes, std::size_t offset, const char* endsEarly)
      : bytes_(bytes), offset_(offset), endsEarly_(endsEarly) {}

  std::size_t position() const { return offset_; }
  void skip(std::size_t count) { offset_ += count; }
  unsigned byte() {
    if (offset_ >= bytes_.size()) throw BrokenUnit(endsEarly_);
    return bytes_[offset_++];
  }
  unsigned word() {
    const unsigned high = byte();
    return high << 8 | byte();
  }

 private:
  UnitBytes bytes_;
  std::size_t offset_;
  const char* endsEarly_;
};

}  // namespace kssub
