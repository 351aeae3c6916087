// UTF-16LE text as wide characters: the C library's wide streams cannot decode it.
#pragma once

#include <cstddef>
#include <cstdio>
#include <vector>

namespace kssubtitle::internal {

/// Whether the text that `bytes` begins is UTF-16LE: its digits and line feeds hold zero bytes,
/// which 8-bit text never does. kWideMark does not decide it: 8-bit text may follow it as well.
bool looksLikeUtf16(const unsigned char* bytes, std::size_t size) noexcept;

/// Reads one code point from a byte stream; false at the end of the file, for which an odd last
/// byte is too, and after a read error. A lone surrogate is U+FFFD.
bool readUtf16(std::FILE* file, wchar_t& out);

/// Decodes a byte stream in blocks.
class Utf16Input {
 public:
  using Char = wchar_t;

  explicit Utf16Input(std::FILE* file);
  /// Fills `to` with up to `room` code points; 0 at the end of the file and after a read error.
  std::size_t read(wchar_t* to, std::size_t room);
  bool atEnd() const noexcept { return std::feof(file_) != 0; }

 private:
  std::size_t decode(wchar_t* to, std::size_t room) noexcept;

  std::FILE* file_;
  std::vector<unsigned char> bytes_;
  std::size_t begin_ = 0;  // the bytes not yet decoded
  std::size_t end_ = 0;
};

}  // namespace kssubtitle::internal
