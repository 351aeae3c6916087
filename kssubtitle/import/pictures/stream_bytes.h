// The bytes of a program stream, in a file or in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kssubtitle::importing {

/// Gives access to parts of a stream. Of a file it holds one window, so files may be of any size.
class StreamBytes {
 public:
  static constexpr std::size_t kWindow = std::size_t{1} << 17;

  StreamBytes() noexcept : file_(nullptr, &std::fclose) {}
  explicit StreamBytes(std::string bytes) : StreamBytes() { memory_ = std::move(bytes); }

  /// Opens the file at `path`, which must be seekable. Returns 0, or the `errno` of what failed.
  int open(const char* path);

  /// `count` bytes from `offset` on, at most kWindow; fewer if the stream ends or cannot be read.
  /// Valid until the next call.
  std::span<const unsigned char> at(std::uint64_t offset, std::size_t count);

 private:
  std::size_t readWindow(std::uint64_t offset);

  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;  // without one the bytes are in memory
  std::string memory_;
  std::vector<unsigned char> window_;
  std::uint64_t begin_ = 0;  // where the window begins
  std::size_t size_ = 0;     // how much of it is filled
};

}  // namespace kssubtitle::importing
