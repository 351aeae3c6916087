// Times of day, from the usual form of their digits or from their fields.
#pragma once

#include <cstddef>

namespace kssubtitle::internal {

/// A time of day in milliseconds. Deliberate: it wraps at 32 bits before it is widened.
inline long long milliseconds32(int hours, int minutes, int seconds, int milliseconds) noexcept {
  const auto wrapped = static_cast<unsigned>(hours) * 3600000U +
                       static_cast<unsigned>(minutes) * 60000U +
                       static_cast<unsigned>(seconds) * 1000U + static_cast<unsigned>(milliseconds);
  return static_cast<int>(wrapped);
}

/// `value` times ten, wrapped at 32 bits.
inline int times10(int value) noexcept {
  return static_cast<int>(static_cast<unsigned>(value) * 10U);
}

/// Reads a text of the form `form`, in which each '0' is any digit and any other character
/// for itself; the runs of digits, as many as there are `fields`, become those. False, with
/// `fields` undefined, if the text at `p` has another form. Requires: as many characters at `p`.
template <std::size_t kSize, std::size_t kFields, typename Char>
bool readForm(const char (&form)[kSize], const Char* p, int (&fields)[kFields]) noexcept {
  int number = 0;
  int* field = fields;
  // Unrolled, so that the form is known at each step and costs nothing.
#pragma GCC unroll 32
  for (std::size_t i = 0; i + 1 < kSize; ++i) {
    if (form[i] == '0') {
      const auto digit = static_cast<unsigned>(p[i]) - '0';
      if (digit > 9) return false;
      number = number * 10 + static_cast<int>(digit);
      if (form[i + 1] != '0') {
        *field++ = number;
        number = 0;
      }
    } else if (p[i] != form[i]) {
      return false;
    }
  }
  return true;
}

}  // namespace kssubtitle::internal
