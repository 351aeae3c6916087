// Times of day as text.
#include "kssubtitle/import/writers/clock.h"

#include <cstdio>

namespace kssubtitle::importing {

std::string clockText(long long milliseconds, const ClockForm& form) {
  const long long seconds = milliseconds / 1000;
  char text[40];
  std::snprintf(text, sizeof text, "%0*lld:%02lld:%02lld%c%03lld", form.hourDigits, seconds / 3600,
                seconds / 60 % 60, seconds % 60, form.point, milliseconds % 1000);
  std::string clock = text;
  if (form.fractionDigits == 2) clock.pop_back();
  return clock;
}

}  // namespace kssubtitle::importing
