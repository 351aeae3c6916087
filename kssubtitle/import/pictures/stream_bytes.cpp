// The bytes of a program stream, in a file or in memory.
#include "kssubtitle/import/pictures/stream_bytes.h"

#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "kssubtitle/parsers/sub_fopen.h"

namespace kssubtitle::importing {
namespace {

/// The part of `bytes` from `offset` on.
std::span<const unsigned char> partOf(std::span<const unsigned char> bytes, std::uint64_t offset,
                                      std::size_t count) noexcept {
  if (offset >= bytes.size()) return {};
  const std::span<const unsigned char> rest = bytes.subspan(static_cast<std::size_t>(offset));
  return rest.first(std::min(count, rest.size()));
}

}  // namespace

int StreamBytes::open(const char* path) {
  errno = 0;
  file_.reset(sub_fopen(path, "rb"));
  if (!file_) return errno;
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // every read is a large one
  window_.resize(kWindow);
  if (fseeko(file_.get(), 0, SEEK_END) != 0) return errno;
  size_ = readWindow(0);
  return std::ferror(file_.get()) != 0 ? errno : 0;
}

std::span<const unsigned char> StreamBytes::at(std::uint64_t offset, std::size_t count) {
  if (!file_) {
    const auto* const data = reinterpret_cast<const unsigned char*>(memory_.data());
    return partOf({data, memory_.size()}, offset, count);
  }
  if (offset < begin_ || offset - begin_ + count > size_) {
    size_ = readWindow(offset);
    begin_ = offset;
  }
  return partOf(std::span(window_).first(size_), offset - begin_, count);
}

std::size_t StreamBytes::readWindow(std::uint64_t offset) {
  const bool isThere = fseeko(file_.get(), static_cast<off_t>(offset), SEEK_SET) == 0;
  if (!isThere) return 0;  // GCOVR_EXCL_LINE: open() has found that the file can be searched
  return std::fread(window_.data(), 1, window_.size(), file_.get());
}

}  // namespace kssubtitle::importing
