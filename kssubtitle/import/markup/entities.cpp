// Characters written as entities.
#include "kssubtitle/import/markup/entities.h"

#include <charconv>

#include "kssubtitle/import/markup/html_entities.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

struct Name {
  std::string_view text;
  char32_t character;
};

constexpr Name kNames[] = {
    {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"nbsp", 0xA0}, {"quot", '"'}, {"apos", '\''},
};

/// `text` begins with "&#".
Entity numberAt(std::string_view text) noexcept {
  const bool isHexadecimal = text.size() > 2 && lowerOf(text[2]) == 'x';
  const char* const begin = text.data() + (isHexadecimal ? 3 : 2);
  const char* const end = text.data() + text.size();
  unsigned number = 0;
  const auto read = std::from_chars(begin, end, number, isHexadecimal ? 16 : 10);
  const bool isWhole = read.ec == std::errc() && read.ptr != end && *read.ptr == ';';
  if (!isWhole || number == 0 || !isScalar(number)) return {};
  return {characterOfNumber(number), static_cast<std::size_t>(read.ptr + 1 - text.data())};
}

char32_t characterOf(std::string_view name) noexcept {
  for (const Name& entry : kNames) {
    if (entry.text == name) return entry.character;
  }
  return 0;
}

}  // namespace

Entity entityOf(std::string_view text) noexcept {
  if (text.substr(1).starts_with('#')) return numberAt(text);
  constexpr std::size_t kLongest = 6;  // "&nbsp;"
  const std::size_t end = text.substr(0, kLongest).find(';');
  if (end == text.npos) return {};
  const char32_t c = characterOf(text.substr(1, end - 1));
  return c == 0 ? Entity() : Entity{c, end + 1};
}

}  // namespace kssubtitle::importing
