// Times whose digits all stand where they usually do.
#pragma once

#include <cstddef>

namespace kssubtitle::internal {

/// Reads a text of the form `form`, in which each '0' stands for a digit and any other character
/// for itself; the runs of digits become `fields`. False, with `fields` undefined, if the text at
/// `p` has another form. Requires: as many characters at `p`.
template <std::size_t kSize, typename Char>
bool readForm(const char (&form)[kSize], const Char* p, int (&fields)[4]) noexcept {
  int number = 0;
  int* field = fields;
  for (std::size_t i = 0; i + 1 < kSize; ++i) {
    if (form[i] == '0') {
      const auto digit = static_cast<unsigned>(p[i]) - '0';
      if (digit > 9) return false;
      number = number * 10 + static_cast<int>(digit);
    } else {
      if (p[i] != form[i]) return false;
      *field++ = number;
      number = 0;
    }
  }
  if (field != fields + 4) *field = number;
  return true;
}

}  // namespace kssubtitle::internal
