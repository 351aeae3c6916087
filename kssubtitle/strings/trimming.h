// The blank removals of the text class, over a range of characters, for parsers that read a line
// without shifting it.
#pragma once

#include <algorithm>
#include <cstddef>

namespace kssubtitle::internal {

/// The rule of TrimLeft on [begin, end): returns where the trimmed text now begins; it ends at
/// `end`. Deliberate: only positions 0, 2, 4, ... are examined, so the characters between two
/// deleted ones stay, moved up against the rest.
template <typename Char>
Char* trimLeft(Char* begin, Char* end, Char blank) noexcept {
  const std::ptrdiff_t size = end - begin;
  std::ptrdiff_t deleted = 0;
  while (2 * deleted < size && begin[2 * deleted] == blank) ++deleted;
  const std::ptrdiff_t kept = std::min(deleted, size - deleted);
  for (std::ptrdiff_t k = kept - 1; k >= 0; --k) begin[deleted + k] = begin[2 * k + 1];
  return begin + deleted;
}

/// Where [begin, end) ends without its trailing `blank`s.
template <typename Char>
Char* trimRight(Char* begin, Char* end, Char blank) noexcept {
  while (end != begin && end[-1] == blank) --end;
  return end;
}

}  // namespace kssubtitle::internal
