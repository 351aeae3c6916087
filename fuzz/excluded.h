// The inputs that no fuzz target tries: those that docs/limits.md says never return or grow.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/strings/view.h"

/// The arguments of replaceChars(); with an empty `to`, the separator of split() and the fill of
/// inflate().
template <typename Char>
bool neverEndsOrGrows(const std::basic_string<Char>& from, const std::basic_string<Char>& to) {
  return to.starts_with(from);
}

/// A SubRip file, whose text may grow to its size times a quarter of its lines.
inline bool neverEndsOrGrows(std::string_view file) {
  constexpr std::ptrdiff_t kWorthWaiting = 1 << 20;
  return std::ssize(file) * std::count(file.begin(), file.end(), '\n') / 4 > kWorthWaiting;
}

/// The lines of a VobSub index.
template <typename Char>
bool neverEndsOrGrows(const std::vector<ksBasicString<Char>>& lines) {
  return std::any_of(lines.begin(), lines.end(), [](const auto& line) {
    const auto text = kssubtitle::internal::viewOf(line);
    const std::size_t first = text.find_first_not_of(Char{' '});
    return first == text.npos || text[first] == ';';
  });
}
