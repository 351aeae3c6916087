// Characters written as entities, the character references of HTML.
#include "kssubtitle/import/markup/entities.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>

#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

// A pointer for each name would cost a relocation, and the table five times as much room.
constexpr std::string_view kNames =
#include "kssubtitle/import/markup/html_entities.inc"
    ;

constexpr std::size_t kLongestName = 32;
// Of names that need no semicolon.
constexpr std::size_t kShortestBare = 2;
constexpr std::size_t kLongestBare = 6;

// What numbers from 0x80 to 0x9F mean: many writers use those of windows-1252.
constexpr char32_t kWindows1252[] = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

/// The character of that number, in windows-1252 from 0x80 to 0x9F; U+FFFD if there is none.
char32_t characterOfNumber(char32_t number) noexcept {
  if (number == 0 || !isScalar(number)) return kReplacement;
  return number >= 0x80 && number < 0xA0 ? kWindows1252[number - 0x80] : number;
}

/// `text` begins with "&#".
Entity numberAt(std::string_view text) noexcept {
  std::size_t at = 2;
  const bool isHexadecimal = at < text.size() && lowerOf(text[at]) == 'x';
  if (isHexadecimal) ++at;
  const char32_t base = isHexadecimal ? 16 : 10;
  const std::size_t begin = at;
  char32_t number = 0;
  for (; at < text.size() && static_cast<char32_t>(hexadecimalDigit(text[at])) < base; ++at) {
    const auto digit = static_cast<char32_t>(hexadecimalDigit(text[at]));
    number = std::min<char32_t>(number * base + digit, 0x110000);  // not a character
  }
  if (at == begin) return {};
  if (at < text.size() && text[at] == ';') ++at;
  return {characterOfNumber(number), 0, at};
}

/// The entry of a name, from the sign after the name on; empty if HTML does not have the name.
std::string_view entryOf(std::string_view name) noexcept {
  std::size_t low = 0;
  std::size_t high = kNames.size();
  while (low < high) {
    const std::size_t begin = kNames.rfind(' ', low + (high - low) / 2) + 1;
    const std::size_t end = std::min(kNames.find(' ', begin), kNames.size());
    const std::string_view entry = kNames.substr(begin, end - begin);
    const std::size_t sign = entry.find_first_of(":;");
    const int order = name.compare(entry.substr(0, sign));
    if (order == 0) return entry.substr(sign);
    if (order > 0) low = end + 1;
    if (order < 0) high = std::max<std::size_t>(begin, 1) - 1;
  }
  return {};
}

char32_t consumeCodePoint(std::string_view& digits) noexcept {
  std::uint32_t c = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), c, 16);
  digits.remove_prefix(static_cast<std::size_t>(read.ptr - digits.data()));
  return c;
}

/// `name` has no semicolon.
Entity named(std::string_view name, bool isFollowedBySemicolon) noexcept {
  std::string_view entry = entryOf(name);
  if (entry.empty() || (entry.front() == ';' && !isFollowedBySemicolon)) return {};
  Entity entity{.length = 1 + name.size() + (isFollowedBySemicolon ? 1 : 0)};
  entry.remove_prefix(1);
  entity.first = consumeCodePoint(entry);
  if (!entry.empty()) entity.second = consumeCodePoint(entry = entry.substr(1));
  return entity;
}

}  // namespace

Entity htmlEntityOf(std::string_view text) noexcept {
  if (text.substr(1).starts_with('#')) return numberAt(text);
  const std::string_view rest = text.substr(1, kLongestName);
  std::size_t length = 0;
  while (length < rest.size() && (isLetter(rest[length]) || isDigit(rest[length]))) ++length;
  if (length < rest.size() && rest[length] == ';') {
    if (const Entity entity = named(rest.substr(0, length), true); entity.length > 0) return entity;
  }
  for (length = std::min(length, kLongestBare); length >= kShortestBare; --length) {
    if (const Entity entity = named(rest.substr(0, length), false); entity.length > 0)
      return entity;
  }
  return {};
}

Entity subRipEntityOf(std::string_view text) noexcept {
  const Entity entity = htmlEntityOf(text);
  const bool isWhole = entity.length > 0 && text[entity.length - 1] == ';';
  return isWhole && entity.first != kReplacement ? entity : Entity();
}

void consumeHtmlEntity(std::string_view& text, CueText& out, LineReference lineReference) {
  const Entity entity = htmlEntityOf(text);
  if (entity.length == 0) {
    out.append(text.substr(0, 1));
    return text.remove_prefix(1);
  }
  const bool isLineEnd = entity.first == '\n' || entity.first == '\r';
  out.append(isLineEnd && lineReference == LineReference::kSpace ? U' ' : entity.first);
  if (entity.second != 0) out.append(entity.second);
  text.remove_prefix(entity.length);
}

}  // namespace kssubtitle::importing
