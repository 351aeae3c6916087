// Times as the formats write them.
#pragma once

#include <string>

namespace kssubtitle::importing {

/// How a time of hours, minutes and seconds is written.
struct ClockForm {
  int hourDigits;  ///< At least.
  char point;
  int fractionDigits;  ///< 3 or 2, of which the third is cut off.
};

/// Requires: `milliseconds` is not negative.
std::string clockText(long long milliseconds, const ClockForm& form);

}  // namespace kssubtitle::importing
