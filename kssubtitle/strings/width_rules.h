// What differs between 8-bit and wide text. Nothing else in the text class knows its width.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kssubtitle::internal {

static_assert(sizeof(int) == 4, "times and keys are 32-bit");
static_assert(sizeof(wchar_t) == 4, "one wide character is one code point");

/// What strtol() (wcstol()) finds where `long` has 64 bits, cut to 32 bits; nothing if it finds no
/// number.
std::optional<int> scanNumber(const char* text, int base) noexcept;
std::optional<int> scanNumber(const wchar_t* text, int base) noexcept;

template <typename Char>
struct WidthRules;

template <>
struct WidthRules<char> {
  /// As what single characters compare, whether or not the platform's own are signed.
  using Value = signed char;
  /// As what characters compare in the order of texts.
  using Order = unsigned char;
  static char toUpper(char c) noexcept;
  static char toLower(char c) noexcept;
  /// The difference of the first characters that differ, as strcmp() returns it on most platforms.
  static int compare(const char* a, const char* b) noexcept;
  static std::string textOfNumber(int value);
  static int numberOfText(const std::string& text) noexcept;
};

template <>
struct WidthRules<wchar_t> {
  using Value = std::int32_t;
  using Order = std::int32_t;
  static wchar_t toUpper(wchar_t c) noexcept;
  static wchar_t toLower(wchar_t c) noexcept;
  /// -1, 0 or 1, as wcscmp() returns where wide characters are signed.
  static int compare(const wchar_t* a, const wchar_t* b) noexcept;
  static std::wstring textOfNumber(int value);
  static int numberOfText(const std::wstring& text) noexcept;
};

}  // namespace kssubtitle::internal
