// Characters written as entities.
#include "kssubtitle/import/markup/entities.h"

#include <charconv>

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

/// A number behind "&#"; 0 if it is none or means no character.
char32_t numberOf(std::string_view digits) noexcept {
  constexpr std::size_t kMostDigits = 7;
  int base = 10;
  if (digits.starts_with('x') || digits.starts_with('X')) {
    base = 16;
    digits.remove_prefix(1);
  }
  if (digits.empty() || digits.size() > kMostDigits) return 0;
  unsigned number = 0;
  const char* const end = digits.data() + digits.size();
  if (std::from_chars(digits.data(), end, number, base).ptr != end) return 0;
  return isScalar(number) ? number : 0;
}

char32_t characterOf(std::string_view name) noexcept {
  if (name.starts_with('#')) return numberOf(name.substr(1));
  for (const Name& entry : kNames) {
    if (entry.text == name) return entry.character;
  }
  return 0;
}

}  // namespace

Entity entityOf(std::string_view text) noexcept {
  constexpr std::size_t kLongest = 11;  // "&#x0010FFFF" would be, but no number has eight digits
  const std::size_t end = text.substr(0, kLongest).find(';');
  if (end == text.npos) return {};
  const char32_t c = characterOf(text.substr(1, end - 1));
  return c == 0 ? Entity() : Entity{c, end + 1};
}

}  // namespace kssubtitle::importing
