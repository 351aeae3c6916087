// Times that are counted in frames.
#pragma once

#include <cfloat>
#include <cmath>
#include <optional>

#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/report/notes.h"

namespace kssubtitle::importing {

/// `rate` if it can be a number of frames per second.
std::optional<double> usableFrameRate(double rate) noexcept;

/// The frame rate of a file that does not state one: that of the options or else, with a note,
/// exactly 23.976.
double assumedFrameRate(const ksImportOptions& options, Notes& notes);

/// `value` rounded to a double, also where the processor computes with more digits.
inline double inDoublePrecision(double value) noexcept {
#if FLT_EVAL_METHOD == 0
  return value;
#else
  const volatile double stored = value;
  return stored;
#endif
}

/// The time of a count of frames or other units, rounded once; nothing if it is out of range.
/// Requires: `perSecond` is usable.
inline std::optional<long long> millisecondsOf(double units, double perSecond) noexcept {
  constexpr double kFarthest = 1e18;
  const double milliseconds = inDoublePrecision(units * 1000 / perSecond);
  if (!(milliseconds >= -kFarthest && milliseconds <= kFarthest)) return std::nullopt;
  return std::llround(milliseconds);
}

}  // namespace kssubtitle::importing
