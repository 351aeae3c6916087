// Times as people write them.
#pragma once

#include <optional>
#include <string_view>

namespace kssubtitle::importing {

/// How a time is written.
enum class TimeForm {
  kOther,
  kUsual,   ///< Nearly as SubRip, ASS or WebVTT have it.
  kSubRip,  ///< 00:00:00,000
  kAss,     ///< 0:00:00.00, with one or two digits of hours
};

struct WrittenTime {
  long long milliseconds = 0;
  int fields = 0;  ///< 3 for hours, minutes and seconds; 2 for minutes and seconds.
  TimeForm form = TimeForm::kOther;

  bool isUsual() const noexcept { return form != TimeForm::kOther; }
};

/// Takes a time off the front of `text`, with the blanks before and within it: two or three fields,
/// then perhaps a comma, a point or (behind three fields) a colon and a decimal fraction, of which
/// milliseconds count; a comma or a point may stand there without one. A sign makes it negative. A
/// field of more than 12 digits is no time.
std::optional<WrittenTime> takeTime(std::string_view& text) noexcept;

/// Takes "00:00:00" off the very front of `text`, unless a further digit follows: in seconds.
std::optional<int> takeUsualClock(std::string_view& text) noexcept;

}  // namespace kssubtitle::importing
