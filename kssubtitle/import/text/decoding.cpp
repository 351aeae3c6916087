// Decodes bytes to UTF-8.
#include "kssubtitle/import/text/decoding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "kssubtitle/import/text/code_pages.h"
#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

/// Consumes code units of `kSize` bytes.
template <std::size_t kSize, bool kBigEndian>
class Units {
 public:
  explicit Units(std::string_view bytes) noexcept : bytes_(bytes) {}

  bool empty() const noexcept { return bytes_.empty(); }
  bool hasOne() const noexcept { return bytes_.size() >= kSize; }
  std::string_view rest() const noexcept { return bytes_; }
  void drop(std::size_t bytes) noexcept { bytes_.remove_prefix(bytes); }
  void drop() noexcept { bytes_.remove_prefix(hasOne() ? kSize : bytes_.size()); }
  char32_t peek() const noexcept {
    char32_t unit = 0;
    for (std::size_t i = 0; i < kSize; ++i) {
      const std::size_t place = kBigEndian ? i : kSize - 1 - i;
      unit = unit << 8 | static_cast<unsigned char>(bytes_[place]);
    }
    return unit;
  }

 private:
  std::string_view bytes_;
};

/// Consumes a code point; kReplacement for what is not one. Part of a NUL, as padding may end with,
/// is one. Requires: the units are not empty.
template <std::size_t kSize, bool kBigEndian>
char32_t readCodePoint(Units<kSize, kBigEndian>& units, bool& isReplaced) noexcept {
  const bool isCut = !units.hasOne();
  isReplaced = isCut && units.rest().find_first_not_of('\0') != std::string_view::npos;
  const char32_t c = isReplaced ? kReplacement : isCut ? U'\0' : units.peek();
  units.drop();
  if (isScalar(c)) return c;
  if (kSize == 2 && c < 0xDC00 && units.hasOne()) {
    const char32_t low = units.peek();
    if (low >= 0xDC00 && low < 0xE000) {
      units.drop();
      return 0x10000 + ((c & 0x3FF) << 10) + (low & 0x3FF);
    }
  }
  isReplaced = true;
  return kReplacement;
}

/// Writes the ASCII that `bytes` begin with, four units at a time; returns how many bytes it read.
/// Without this, Open() of English SubRip in UTF-16 takes 84 % longer.
template <bool kBigEndian>
std::size_t writeAscii(std::string_view bytes, char* to, std::size_t room) noexcept {
  constexpr std::uint64_t kOthers = kBigEndian ? 0x80FF80FF80FF80FFU : 0xFF80FF80FF80FF80U;
  std::size_t i = 0;
  for (; i + sizeof kOthers <= bytes.size() && i / 2 + 4 <= room; i += sizeof kOthers) {
    std::uint64_t units;
    std::memcpy(&units, bytes.data() + i, sizeof units);
    if ((units & kOthers) != 0) break;
    for (std::size_t j = 0; j < 4; ++j) to[i / 2 + j] = bytes[i + 2 * j + (kBigEndian ? 1 : 0)];
  }
  return i;
}

template <std::size_t kSize, bool kBigEndian>
DecodedText decodeUnits(std::string_view bytes) {
  constexpr std::size_t kLongest = 4;  // bytes of UTF-8 for a code point
  std::array<char, 4096> block;
  DecodedText decoded;
  decoded.text.reserve(bytes.size() / kSize + kLongest);
  for (Units<kSize, kBigEndian> units(bytes); !units.empty();) {
    char* to = block.data();
    const char* const full = block.data() + block.size() - kLongest;
    while (!units.empty() && to < full) {
      if constexpr (kSize == 2) {
        const std::size_t ascii =
            writeAscii<kBigEndian>(units.rest(), to, static_cast<std::size_t>(full - to));
        to += ascii / 2;
        units.drop(ascii);
        if (units.empty() || to >= full) break;
      }
      bool isReplaced = false;
      const char32_t c = readCodePoint(units, isReplaced);
      if (isReplaced) {
        decoded.replacements.add(decoded.text.size() + static_cast<std::size_t>(to - block.data()));
      }
      to = writeUtf8(c, to);
    }
    decoded.text.append(block.data(), to);
  }
  return decoded;
}

DecodedText decodeUtf8(std::string bytes) {
  const Utf8Count count = countUtf8(bytes);
  if (count.badBytes == 0 && !count.cutAtEnd) return {std::move(bytes), {}};
  DecodedText decoded;
  decoded.text =
      repairUtf8(bytes, [&decoded](std::size_t offset) { decoded.replacements.add(offset); });
  return decoded;
}

/// The C library also writes UTF-8 for what is above U+10FFFF, which a few encodings can express.
std::optional<DecodedText> decodeByIconv(std::string_view bytes, const std::string& name) {
  constexpr unsigned char kHighestLead = 0xF4;
  std::optional<DecodedText> decoded = decodeCodePage(bytes, name);
  const auto mayBeAbove = [](char c) { return static_cast<unsigned char>(c) >= kHighestLead; };
  if (!decoded || std::none_of(decoded->text.begin(), decoded->text.end(), mayBeAbove)) {
    return decoded;
  }
  DecodedText valid = decodeUtf8(std::move(decoded->text));
  return valid.replacements.count() > 0
             ? std::move(valid)
             : DecodedText{std::move(valid.text), std::move(decoded->replacements)};
}

std::optional<DecodedText> decodeAs(std::string bytes, const Encoding& encoding) try {
  switch (encoding.kind) {
    case EncodingKind::kUtf8:
      return decodeUtf8(std::move(bytes));
    case EncodingKind::kUtf16Le:
      return decodeUnits<2, false>(bytes);
    case EncodingKind::kUtf16Be:
      return decodeUnits<2, true>(bytes);
    case EncodingKind::kUtf32Le:
      return decodeUnits<4, false>(bytes);
    case EncodingKind::kUtf32Be:
      return decodeUnits<4, true>(bytes);
    case EncodingKind::kCodePage:
      break;
  }
  return decodeByIconv(bytes, encoding.name);
} catch (const std::length_error&) {  // on 32 bits a text may outgrow what a string can have
  throw std::bad_alloc();             // GCOVR_EXCL_LINE
}

}  // namespace

std::optional<DecodedText> decode(std::string bytes, const FoundEncoding& found) {
  if (found.isValid) return DecodedText{std::move(bytes), {}};
  std::optional<DecodedText> decoded = decodeAs(std::move(bytes), found.encoding);
  if (decoded && decoded->text.starts_with(kBomUtf8)) {
    decoded->text.erase(0, kBomUtf8.size());
    decoded->replacements.shift(kBomUtf8.size());
  }
  return decoded;
}

}  // namespace kssubtitle::importing
