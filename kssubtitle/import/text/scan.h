// Looks for characters in pieces of text that are mostly short.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kssubtitle::importing {

/// The high bits of those bytes of `word` that are `c`. Above the lowest one others may be set too.
constexpr std::uint64_t markBytes(std::uint64_t word, char c) noexcept {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  const std::uint64_t difference = word ^ (kOnes * static_cast<unsigned char>(c));
  return (difference - kOnes) & ~difference & (kOnes << 7);
}

/// The eight bytes at `p`, the first one lowest.
inline std::uint64_t wordAt(const char* p) noexcept {
  std::uint64_t word;
  std::memcpy(&word, p, sizeof word);
  return word;
}

/// Which byte the lowest of `marks` stands for.
constexpr std::size_t placeOf(std::uint64_t marks) noexcept {
  return static_cast<std::size_t>(std::countr_zero(marks)) / 8;
}

/// The first place in `text` of any of the characters; its size if there is none. Looks at eight
/// bytes at once: for pieces that are mostly short, of which the lengths cannot be foretold.
template <char... kSought>
std::size_t findAny(std::string_view text) noexcept {
  std::size_t at = 0;
  for (; at + sizeof(std::uint64_t) <= text.size(); at += sizeof(std::uint64_t)) {
    const std::uint64_t word = wordAt(text.data() + at);
    if (const std::uint64_t marks = (markBytes(word, kSought) | ...)) return at + placeOf(marks);
  }
  while (at < text.size() && ((text[at] != kSought) && ...)) ++at;
  return at;
}

/// The high bits of those bytes of `word` that are `c`, and of no others.
constexpr std::uint64_t markBytesExactly(std::uint64_t word, char c) noexcept {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  constexpr std::uint64_t kLow = kOnes * 0x7F;
  const std::uint64_t difference = word ^ (kOnes * static_cast<unsigned char>(c));
  return ~(((difference & kLow) + kLow) | difference | kLow);
}

/// The first place in `text` of any of the characters, or of a blank that another one follows; its
/// size if there is none: where prose ends of which each white space is to become one blank.
template <char... kSought>
std::size_t findAnyOrBlanks(std::string_view text) noexcept {
  std::size_t at = 0;
  for (; at + sizeof(std::uint64_t) < text.size(); at += sizeof(std::uint64_t)) {
    const std::uint64_t word = wordAt(text.data() + at);
    const std::uint64_t next = wordAt(text.data() + at + 1);
    const std::uint64_t blanks = markBytesExactly(word, ' ') & markBytesExactly(next, ' ');
    if (const std::uint64_t marks = (markBytes(word, kSought) | ...) | blanks) {
      return at + placeOf(marks);
    }
  }
  const auto isBlanks = [text](std::size_t i) { return text.substr(i, 2) == "  "; };
  while (at < text.size() && ((text[at] != kSought) && ...) && !isBlanks(at)) ++at;
  return at;
}

/// Finds characters that are rare in a text: each is looked for again only once it was passed.
template <char... kSought>
class RareCharacters {
 public:
  explicit RareCharacters(std::string_view text) noexcept
      : text_(text), places_{placeOf(kSought, 0)...} {}

  /// How many characters stand in front of the first one sought in `piece`; all if none is.
  /// Requires: `piece` is part of the text and begins no earlier than the one before.
  std::size_t countBefore(std::string_view piece) noexcept {
    const auto begin = static_cast<std::size_t>(piece.data() - text_.data());
    std::size_t count = piece.size();
    std::size_t* place = places_;
    const auto look = [&](char c) {
      if (*place < begin) *place = placeOf(c, begin);
      count = std::min(count, *place++ - begin);
    };
    (look(kSought), ...);
    return count;
  }

 private:
  std::size_t placeOf(char c, std::size_t from) const noexcept {
    return std::min(text_.find(c, from), text_.size());
  }

  std::string_view text_;
  std::size_t places_[sizeof...(kSought)];
};

}  // namespace kssubtitle::importing
