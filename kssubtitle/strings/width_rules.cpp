// The two widths' case mapping and conversions between numbers and text.
#include "kssubtitle/strings/width_rules.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <utility>

namespace kssubtitle::internal {
namespace {

// Maps a byte as the C library maps its signed value, without passing a negative one: 0xFF is then
// EOF, which maps to itself in every locale.
template <typename Mapping>
char mapByte(char c, Mapping mapping) noexcept {
  if (c == static_cast<char>(EOF)) return c;
  return static_cast<char>(mapping(static_cast<unsigned char>(c)));
}

template <typename Char>
std::optional<int> scanNumber(const Char* text, int base,
                              long long (*convert)(const Char*, Char**, int)) noexcept {
  Char* end = nullptr;
  const long long value = convert(text, &end, base);
  if (end == text) return std::nullopt;
  return static_cast<int>(value);
}

/// The characters at the first place where the texts differ, or their terminators.
template <typename Char>
auto firstDifference(const Char* a, const Char* b) noexcept {
  for (; *a == *b && *a != 0; ++a) ++b;
  using Order = typename WidthRules<Char>::Order;
  return std::pair(static_cast<Order>(*a), static_cast<Order>(*b));
}

}  // namespace

std::optional<int> scanNumber(const char* text, int base) noexcept {
  return scanNumber(text, base, std::strtoll);
}

std::optional<int> scanNumber(const wchar_t* text, int base) noexcept {
  return scanNumber(text, base, std::wcstoll);
}

char WidthRules<char>::toUpper(char c) noexcept {
  return mapByte(c, [](int value) { return std::toupper(value); });
}

char WidthRules<char>::toLower(char c) noexcept {
  return mapByte(c, [](int value) { return std::tolower(value); });
}

int WidthRules<char>::compare(const char* a, const char* b) noexcept {
  const auto [x, y] = firstDifference(a, b);
  return x - y;
}

std::string WidthRules<char>::textOfNumber(int value) { return std::to_string(value); }

int WidthRules<char>::numberOfText(const std::string& text) noexcept {
  return scanNumber(text.c_str(), 10).value_or(0);
}

wchar_t WidthRules<wchar_t>::toUpper(wchar_t c) noexcept {
  return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
}

wchar_t WidthRules<wchar_t>::toLower(wchar_t c) noexcept {
  return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
}

int WidthRules<wchar_t>::compare(const wchar_t* a, const wchar_t* b) noexcept {
  const auto [x, y] = firstDifference(a, b);
  return int{x > y} - int{x < y};
}

// Deliberate: a number has no wide text, whatever its value.
std::wstring WidthRules<wchar_t>::textOfNumber(int) { return {}; }

// Deliberate: the base is the text's own length.
int WidthRules<wchar_t>::numberOfText(const std::wstring& text) noexcept {
  constexpr std::size_t kLargestBase = 36;
  const std::size_t base = text.size();
  if (base < 2 || base > kLargestBase) return 0;
  return scanNumber(text.c_str(), static_cast<int>(base)).value_or(0);
}

}  // namespace kssubtitle::internal
