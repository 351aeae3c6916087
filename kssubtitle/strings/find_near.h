// Searches for characters that are expected a few characters away.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

namespace kssubtitle::internal {

/// The first `c` in [begin, end), or `end`. Looks at a few characters before it calls the C
/// library, whose search pays on longer stretches only.
template <typename Char>
const Char* findNear(const Char* begin, const Char* end, Char c) noexcept {
  constexpr std::ptrdiff_t kNear = 12;
  const Char* const near = begin + std::min(end - begin, kNear);
  for (; begin != near; ++begin) {
    if (*begin == c) return begin;
  }
  const Char* const found =
      std::char_traits<Char>::find(begin, static_cast<std::size_t>(end - begin), c);
  return found == nullptr ? end : found;
}

}  // namespace kssubtitle::internal
