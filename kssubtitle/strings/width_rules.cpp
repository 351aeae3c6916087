// The two widths' case mapping and conversions between numbers and text.
#include "kssubtitle/strings/width_rules.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <cwctype>

namespace kssubtitle::internal {
namespace {

// Maps a byte as the C library maps its signed value, without passing a negative one: 0xFF is then
// EOF, which maps to itself in every locale.
template <typename Mapping>
char mapByte(char c, Mapping mapping) noexcept {
  if (c == static_cast<char>(EOF)) return c;
  return static_cast<char>(mapping(static_cast<unsigned char>(c)));
}

constexpr std::size_t kLargestBase = 36;

}  // namespace

char WidthRules<char>::toUpper(char c) noexcept {
  return mapByte(c, [](int value) { return std::toupper(value); });
}

char WidthRules<char>::toLower(char c) noexcept {
  return mapByte(c, [](int value) { return std::tolower(value); });
}

int WidthRules<char>::compare(const char* a, const char* b) noexcept { return std::strcmp(a, b); }

std::string WidthRules<char>::textOfNumber(int value) { return std::to_string(value); }

int WidthRules<char>::numberOfText(const std::string& text) noexcept {
  return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

wchar_t WidthRules<wchar_t>::toUpper(wchar_t c) noexcept {
  return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
}

wchar_t WidthRules<wchar_t>::toLower(wchar_t c) noexcept {
  return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
}

int WidthRules<wchar_t>::compare(const wchar_t* a, const wchar_t* b) noexcept {
  return std::wcscmp(a, b);
}

// Deliberate: a number has no wide text, whatever its value.
std::wstring WidthRules<wchar_t>::textOfNumber(int) { return {}; }

// Deliberate: the base is the text's own length.
int WidthRules<wchar_t>::numberOfText(const std::wstring& text) noexcept {
  const std::size_t base = text.size();
  if (base < 2 || base > kLargestBase) return 0;
  return static_cast<int>(std::wcstol(text.c_str(), nullptr, static_cast<int>(base)));
}

}  // namespace kssubtitle::internal
