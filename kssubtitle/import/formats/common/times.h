// Times as people write them.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace kssubtitle::importing {

/// Hours, minutes and seconds, or minutes and seconds, with colons between them.
struct Clock {
  long long seconds = 0;
  int fields = 0;  ///< 2 or 3.
  // How many digits the first field has, and those after it.
  std::size_t firstDigits = 0;
  std::size_t fewestDigits = 0;
  std::size_t mostDigits = 0;
};

/// Consumes a clock time, with blanks before and within it; nothing if there is none. A field has
/// at most 12 digits.
std::optional<Clock> consumeClock(std::string_view& text) noexcept;

/// How a time is written.
enum class TimeForm : short {
  kOther,
  kUsual,   ///< Nearly as SubRip, ASS or WebVTT have it.
  kSubRip,  ///< 00:00:00,000
  kAss,     ///< 0:00:00.00, with one or two digits of hours
};

/// A time with or without a fraction.
struct WrittenTime {
  long long milliseconds = 0;
  int fields = 0;  ///< 3 for hours, minutes and seconds; 2 for minutes and seconds.
  TimeForm form = TimeForm::kOther;

  bool isUsual() const noexcept { return form != TimeForm::kOther; }
};

/// Consumes a time, with blanks before and within it: two or three fields, then perhaps a comma, a
/// point or (after three fields) a colon and a decimal fraction, of which milliseconds count; a
/// comma or a point may be there without one. A sign at the front makes it negative.
std::optional<WrittenTime> consumeTime(std::string_view& text) noexcept;

}  // namespace kssubtitle::importing
