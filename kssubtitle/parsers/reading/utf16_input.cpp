// UTF-16LE text as wide characters.
#include "kssubtitle/parsers/reading/utf16_input.h"

#include <algorithm>
#include <cstring>

namespace kssubtitle::internal {
namespace {

constexpr std::size_t kUnitSize = 2;
constexpr std::size_t kPairSize = 4;
constexpr std::size_t kBlockSize = 32768;
constexpr wchar_t kReplacement = 0xFFFD;

unsigned unitAt(const unsigned char* p) noexcept { return p[0] | static_cast<unsigned>(p[1]) << 8; }

bool isSurrogate(unsigned unit) noexcept { return (unit & 0xF800U) == 0xD800U; }
bool isHighSurrogate(unsigned unit) noexcept { return (unit & 0xFC00U) == 0xD800U; }
bool isLowSurrogate(unsigned unit) noexcept { return (unit & 0xFC00U) == 0xDC00U; }

/// Decodes the code point at the front of the `size` (2 or more) bytes at `p`; returns how many it
/// takes. A high surrogate without two more bytes counts as a lone one.
std::size_t decodeOne(const unsigned char* p, std::size_t size, wchar_t& out) noexcept {
  const unsigned unit = unitAt(p);
  if (!isSurrogate(unit)) {
    out = static_cast<wchar_t>(unit);
    return kUnitSize;
  }
  if (isHighSurrogate(unit) && size >= kPairSize && isLowSurrogate(unitAt(p + kUnitSize))) {
    const unsigned low = unitAt(p + kUnitSize);
    out = static_cast<wchar_t>(0x10000U + ((unit & 0x3FFU) << 10) + (low & 0x3FFU));
    return kPairSize;
  }
  out = kReplacement;
  return kUnitSize;
}

/// Decodes code points of one unit each, up to the first surrogate; returns how many.
std::size_t decodeUnits(const unsigned char* p, std::size_t units, wchar_t* to) noexcept {
  std::size_t i = 0;
  for (; i < units && !isSurrogate(unitAt(p + i * kUnitSize)); ++i) {
    to[i] = static_cast<wchar_t>(unitAt(p + i * kUnitSize));
  }
  return i;
}

}  // namespace

bool looksLikeUtf16(const unsigned char* bytes, std::size_t size) noexcept {
  return std::memchr(bytes, 0, size) != nullptr;
}

bool readUtf16(std::FILE* file, wchar_t& out) {
  unsigned char bytes[kPairSize];
  std::size_t size = std::fread(bytes, 1, kUnitSize, file);
  if (size < kUnitSize) return false;
  if (isHighSurrogate(unitAt(bytes))) size += std::fread(bytes + kUnitSize, 1, kUnitSize, file);
  const std::size_t used = decodeOne(bytes, size, out);
  // Seeking back also takes back an end of the file that only the look ahead has met.
  if (used < size || std::feof(file)) {
    std::fseek(file, static_cast<long>(used) - static_cast<long>(size), SEEK_CUR);
  }
  return true;
}

Utf16Input::Utf16Input(std::FILE* file) : file_(file), bytes_(kBlockSize) {}

std::size_t Utf16Input::read(wchar_t* to, std::size_t room) {
  for (;;) {
    const std::size_t decoded = decode(to, room);
    if (decoded != 0) return decoded;
    std::memmove(bytes_.data(), bytes_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    const std::size_t got = std::fread(bytes_.data() + end_, 1, bytes_.size() - end_, file_);
    if (got == 0 && (end_ < kUnitSize || !atEnd())) return 0;
    end_ += got;
  }
}

// Keeps the last few bytes back until the end of the file, for a surrogate pair that the next block
// completes.
std::size_t Utf16Input::decode(wchar_t* to, std::size_t room) noexcept {
  const std::size_t least = atEnd() ? kUnitSize : kPairSize;
  std::size_t decoded = 0;
  while (decoded < room && end_ - begin_ >= least) {
    const std::size_t units = std::min(room - decoded, (end_ - begin_) / kUnitSize);
    const std::size_t plain = decodeUnits(bytes_.data() + begin_, units, to + decoded);
    decoded += plain;
    begin_ += plain * kUnitSize;
    if (plain == units || end_ - begin_ < least) break;
    begin_ += decodeOne(bytes_.data() + begin_, end_ - begin_, to[decoded++]);
  }
  return decoded;
}

}  // namespace kssubtitle::internal
