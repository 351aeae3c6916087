// The names of elements and attributes in TTML: the prefixes of its name spaces are whatever a file
// makes of them, and some files do not declare them.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace kssubtitle::importing {

/// A name without its prefix.
constexpr std::string_view localName(std::string_view name) noexcept {
  std::size_t begin = name.size();
  while (begin > 0 && name[begin - 1] != ':') --begin;
  return name.substr(begin);
}

/// The same of a name that ends with a zero; in one look at it.
inline std::string_view localName(const char* name) noexcept {
  const char* end = name;
  for (; *end != '\0'; ++end) {
    if (*end == ':') name = end + 1;
  }
  return {name, static_cast<std::size_t>(end - name)};
}

/// Whether `name` is `literal`: in a few instructions, since both sizes are known before the
/// characters are looked at.
template <std::size_t kSize>
bool is(std::string_view name, const char (&literal)[kSize]) noexcept {
  return name.size() == kSize - 1 && std::memcmp(name.data(), literal, kSize - 1) == 0;
}

}  // namespace kssubtitle::importing
