// Times as people write them.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

/// How a time is written.
enum class TimeForm : short {
  kOther,
  kUsual,   ///< Nearly as SubRip, ASS or WebVTT have it.
  kSubRip,  ///< 00:00:00,000
  kAss,     ///< 0:00:00.00, with one or two digits of hours
};

/// A time as it stands in a text. It fits two registers: a text in memory of which a part was just
/// taken off is slow to copy.
struct WrittenTime {
  long long milliseconds = 0;
  int length = 0;    ///< How many characters it has.
  short fields = 0;  ///< 3 for hours, minutes and seconds; 2 for minutes and seconds; 0: no time.
  TimeForm form = TimeForm::kOther;

  bool isUsual() const noexcept { return form != TimeForm::kOther; }
};

/// The time at the very front of `text`, which consumeTime() takes.
WrittenTime timeAtFront(std::string_view text) noexcept;

/// Takes a time off the front of `text`, with the blanks before and within it: two or three fields,
/// then perhaps a comma, a point or (behind three fields) a colon and a decimal fraction, of which
/// milliseconds count; a comma or a point may stand there without one. A sign makes it negative. A
/// field of more than 12 digits is no time.
inline std::optional<WrittenTime> consumeTime(std::string_view& text) noexcept {
  const std::string_view rest = withoutLeadingBlanks(text);
  const WrittenTime time = timeAtFront(rest);
  if (time.fields == 0) return std::nullopt;
  text = rest.substr(static_cast<std::size_t>(time.length));
  return time;
}

/// How many characters clockAtFront() reads.
inline constexpr std::size_t kClockLength = 8;

/// The seconds of "00:00:00" at the very front of `text`; -1 if another thing stands there, or a
/// further digit follows.
int clockAtFront(std::string_view text) noexcept;

}  // namespace kssubtitle::importing
