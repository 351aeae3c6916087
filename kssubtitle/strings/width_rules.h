// What differs between 8-bit and wide text. Nothing else in the text class knows its width.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>

namespace kssubtitle::internal {

static_assert(sizeof(int) == 4, "times and keys are 32-bit");
static_assert(std::is_signed_v<char>, "characters compare as signed values: use -fsigned-char");
static_assert(sizeof(wchar_t) == 4 && std::is_signed_v<wchar_t>,
              "one wide character is one code point");

template <typename Char>
struct WidthRules;

template <>
struct WidthRules<char> {
  static char toUpper(char c) noexcept;
  static char toLower(char c) noexcept;
  static int compare(const char* a, const char* b) noexcept;
  static std::string textOfNumber(int value);
  static int numberOfText(const std::string& text) noexcept;
};

template <>
struct WidthRules<wchar_t> {
  static wchar_t toUpper(wchar_t c) noexcept;
  static wchar_t toLower(wchar_t c) noexcept;
  static int compare(const wchar_t* a, const wchar_t* b) noexcept;
  static std::wstring textOfNumber(int value);
  static int numberOfText(const std::wstring& text) noexcept;
};

}  // namespace kssubtitle::internal
