// Times as people write them.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/numbers.h"

namespace kssubtitle::importing {

/// Hours, minutes and seconds, or minutes and seconds, with colons between them.
struct Clock {
  long long seconds = 0;
  signed char fields = 0;  ///< 2 or 3.
  bool isPadded = true;    ///< Each field after the first has two digits.
  bool isLong = false;     ///< One of them has more.
};

/// Consumes a clock time, with blanks before and within it; nothing if there is none. A field has
/// at most 12 digits.
constexpr std::optional<Clock> consumeClock(std::string_view& text) noexcept {
  Clock clock;
  std::string_view rest = text;
  const auto first = consumeDigits(rest);
  if (!first) return std::nullopt;
  clock.seconds = first->value;
  clock.fields = 1;
  while (clock.fields < 3) {
    std::string_view next = rest;
    if (!consumeCharacter(next, ':')) break;
    const auto field = consumeDigits(next);
    if (!field) break;
    rest = next;
    clock.seconds = clock.seconds * 60 + field->value;
    clock.isPadded = clock.isPadded && field->count == 2;
    clock.isLong = clock.isLong || field->count > 2;
    ++clock.fields;
  }
  if (clock.fields < 2) return std::nullopt;
  text = rest;
  return clock;
}

/// A time at the front of a text. Small enough to be returned in registers.
struct WrittenTime {
  long long milliseconds = 0;
  int length = 0;          ///< In characters.
  signed char fields = 0;  ///< 3 for hours, minutes and seconds; 2 for minutes and seconds; 0: no
                           ///< time.
  signed char fractionDigits = 0;
  bool isUsual = false;  ///< Written nearly as in SubRip, ASS or WebVTT.
};

/// The time at the very front of `text`, as consumeTime() reads it.
WrittenTime timeAtFront(std::string_view text) noexcept;

/// Consumes a time, with blanks before and within it: two or three fields, then perhaps a comma, a
/// point or (after three fields) a colon and a decimal fraction, of which milliseconds count; a
/// comma or a point may be there without one. A sign at the front makes it negative.
inline std::optional<WrittenTime> consumeTime(std::string_view& text) noexcept {
  const std::string_view rest = withoutLeadingBlanks(text);
  const WrittenTime time = timeAtFront(rest);
  if (time.fields == 0) return std::nullopt;
  text = rest.substr(static_cast<std::size_t>(time.length));
  return time;
}

}  // namespace kssubtitle::importing
