// The names of elements and attributes in TTML: files choose their own namespace prefixes, and some
// do not declare them.
#pragma once

#include <string_view>

namespace kssubtitle::importing {

/// A name without its prefix.
constexpr std::string_view localName(std::string_view name) noexcept {
  return name.substr(name.rfind(':') + 1);
}

}  // namespace kssubtitle::importing
