// Code points and their forms.
#include "kssubtitle/import/text/unicode.h"

#include <cstdint>
#include <cstring>

namespace kssubtitle::importing {
namespace {

constexpr unsigned char byteAt(std::string_view text, std::size_t i) noexcept {
  return static_cast<unsigned char>(text[i]);
}

/// How many bytes a sequence has that begins with `lead`; 0 if none does.
std::size_t lengthByLead(unsigned char lead) noexcept {
  if (lead < 0x80) return 1;
  if (lead < 0xC2) return 0;
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

/// Whether `second` may follow `lead`: overlong forms, surrogates and what is above U+10FFFF may
/// not (RFC 3629, section 4).
bool canFollow(unsigned char lead, unsigned char second) noexcept {
  switch (lead) {
    case 0xE0:
      return second >= 0xA0 && second < 0xC0;
    case 0xED:
      return second >= 0x80 && second < 0xA0;
    case 0xF0:
      return second >= 0x90 && second < 0xC0;
    case 0xF4:
      return second >= 0x80 && second < 0x90;
    default:
      return second >= 0x80 && second < 0xC0;
  }
}

/// How many bytes at the start of `text` fit a sequence of `length` bytes.
std::size_t agreeing(std::string_view text, std::size_t length) noexcept {
  std::size_t i = 1;
  while (
      i < length && i < text.size() &&
      (i == 1 ? canFollow(byteAt(text, 0), byteAt(text, 1)) : (byteAt(text, i) & 0xC0) == 0x80)) {
    ++i;
  }
  return i;
}

/// How many bytes of ASCII `text` begins with. Byte by byte, Open() of English SubRip takes 17 %
/// longer.
std::size_t asciiPrefix(std::string_view text) noexcept {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::size_t i = 0;
  for (std::uint64_t word; i + sizeof word <= text.size(); i += sizeof word) {
    std::memcpy(&word, text.data() + i, sizeof word);
    if ((word & kHighBits) != 0) break;
  }
  while (i < text.size() && byteAt(text, i) < 0x80) ++i;
  return i;
}

bool isContinuation(char c) noexcept { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// How many bytes `text` begins with that are sequences of two or three bytes whose second byte may
/// be any continuation; most text that is not Latin consists of them. Without this, Open() of
/// Japanese SubRip takes 19 % longer.
std::size_t commonSequences(std::string_view text, std::size_t& sequences) noexcept {
  std::size_t i = 0;
  while (i + 3 <= text.size()) {
    const unsigned char lead = byteAt(text, i);
    if (lead >= 0xC2 && lead < 0xE0 && isContinuation(text[i + 1])) {
      i += 2;
    } else if (lead > 0xE0 && lead < 0xF0 && lead != 0xED && isContinuation(text[i + 1]) &&
               isContinuation(text[i + 2])) {
      i += 3;
    } else {
      break;
    }
    ++sequences;
  }
  return i;
}

}  // namespace

char* writeUtf8(char32_t c, char* to) noexcept {
  const auto put = [&to](char32_t byte) { *to++ = static_cast<char>(byte); };
  if (c < 0x80) {
    put(c);
    return to;
  }
  if (c < 0x800) {
    put(0xC0 | c >> 6);
  } else {
    if (c < 0x10000) {
      put(0xE0 | c >> 12);
    } else {
      put(0xF0 | c >> 18);
      put(0x80 | (c >> 12 & 0x3F));
    }
    put(0x80 | (c >> 6 & 0x3F));
  }
  put(0x80 | (c & 0x3F));
  return to;
}

void appendUtf8(std::string& text, char32_t c) {
  char bytes[4];
  text.append(bytes, static_cast<std::size_t>(writeUtf8(c, bytes) - bytes));
}

std::size_t sequenceLength(std::string_view text) noexcept {
  const std::size_t length = lengthByLead(byteAt(text, 0));
  return length <= 1 || agreeing(text, length) == length ? length : 0;
}

char32_t codePointOf(std::string_view sequence) noexcept {
  if (sequence.size() == 1) return byteAt(sequence, 0);
  char32_t c = byteAt(sequence, 0) & (0x7FU >> sequence.size());
  for (std::size_t i = 1; i < sequence.size(); ++i) c = c << 6 | (byteAt(sequence, i) & 0x3FU);
  return c;
}

std::wstring wideText(std::string_view utf8) {
  std::wstring wide;
  wide.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::size_t length = lengthByLead(byteAt(utf8, 0));
    wide += static_cast<wchar_t>(codePointOf(utf8.substr(0, length)));
    utf8.remove_prefix(length);
  }
  return wide;
}

Utf8Count countUtf8(std::string_view text) noexcept {
  Utf8Count count;
  while (!text.empty()) {
    const std::size_t length = lengthByLead(byteAt(text, 0));
    if (length == 1) {
      text.remove_prefix(asciiPrefix(text));
      continue;
    }
    if (const std::size_t common = commonSequences(text, count.sequences); common > 0) {
      text.remove_prefix(common);
      continue;
    }
    const std::size_t agreed = length == 0 ? 0 : agreeing(text, length);
    if (length != 0 && agreed == length) {
      ++count.sequences;
      text.remove_prefix(length);
    } else if (length != 0 && agreed == text.size()) {
      count.cutAtEnd = true;
      break;
    } else {
      ++count.badBytes;
      text.remove_prefix(1);
    }
  }
  return count;
}

}  // namespace kssubtitle::importing
