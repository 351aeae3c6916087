// Times of day as text.
#pragma once

#include <string>

namespace kssubtitle::importing {

/// How a time of hours, minutes and seconds is written.
struct ClockForm {
  int hourDigits;  ///< The least number of them.
  char point;
  int fractionDigits;  ///< 3, or 2, in which case milliseconds are truncated to hundredths.
};

/// Requires: `milliseconds` is not negative.
std::string clockText(long long milliseconds, const ClockForm& form);

}  // namespace kssubtitle::importing
