// Reads the numbers in a subpicture unit or a packet header.
#pragma once

#include <cstddef>
#include <span>

namespace kssubtitle::importing {

using UnitBytes = std::span<const unsigned char>;

/// Reads big-endian numbers one after another; after the end they are 0.
class UnitReader {
 public:
  UnitReader(UnitBytes bytes, std::size_t offset) noexcept : bytes_(bytes), offset_(offset) {}

  std::size_t position() const noexcept { return offset_; }
  bool isPastEnd() const noexcept { return offset_ > bytes_.size(); }
  void skip(std::size_t count) noexcept { offset_ += count; }
  unsigned byte() noexcept {
    const std::size_t at = offset_++;
    return at < bytes_.size() ? bytes_[at] : 0;
  }
  unsigned word() noexcept {
    const unsigned high = byte();
    return high << 8 | byte();
  }

 private:
  UnitBytes bytes_;
  std::size_t offset_;
};

}  // namespace kssubtitle::importing
