// The names of elements and attributes in TTML: files choose their own namespace prefixes, and some
// do not declare them.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

namespace kssubtitle::importing {

/// A name without its prefix.
constexpr std::string_view localName(std::string_view name) noexcept {
  std::size_t begin = name.size();
  while (begin > 0 && name[begin - 1] != ':') --begin;
  return name.substr(begin);
}

/// The same for a NUL-terminated name.
constexpr const char* localName(const char* name) noexcept {
  for (const char* at = name; *at != '\0'; ++at) {
    if (*at == ':') name = at + 1;
  }
  return name;
}

/// Whether a NUL-terminated name is `literal`. Does not measure the name: in a TTML file most time
/// goes into comparing names.
template <std::size_t kSize>
constexpr bool is(const char* name, const char (&literal)[kSize]) noexcept {
  return [&]<std::size_t... kAt>(std::index_sequence<kAt...>) {
    return ((name[kAt] == literal[kAt]) && ...);
  }
  (std::make_index_sequence<kSize>());
}

}  // namespace kssubtitle::importing
