// Times that are counted in frames.
#pragma once

#include <cfloat>
#include <optional>

#include "kssubtitle/import/formats/common/format.h"

namespace kssubtitle::importing {

/// `rate`, if it can be the number of frames in a second; nothing otherwise.
std::optional<double> usableFrameRate(double rate) noexcept;

/// The rate for a file that states none: that of the options, else 23.976 as it is written, which
/// is noted.
double frameRateWithout(const ksImportOptions& options, Notes& notes);

/// The integer nearest to `value`, the farther one from zero if two are. Requires: it is at most
/// 1e18 either way.
constexpr long long nearestTo(double value) noexcept {
  // What is cut off is exact, and a call of the mathematical library would be most of the work.
  const auto whole = static_cast<long long>(value);
  const double rest = value - static_cast<double>(whole);
  return whole + (rest >= 0.5 ? 1 : 0) - (rest <= -0.5 ? 1 : 0);
}

/// `value` as a double has it, where the processor computes with more digits as well.
inline double inDoublePrecision(double value) noexcept {
#if FLT_EVAL_METHOD == 0
  return value;
#else
  const volatile double stored = value;
  return stored;
#endif
}

/// The time of a place in a file; nothing if that is too far away to be one. Rounds once, to the
/// nearest millisecond. Requires: `perSecond` is usable.
inline std::optional<long long> millisecondsOf(double units, double perSecond) noexcept {
  constexpr double kFarthest = 1e18;
  const double milliseconds = inDoublePrecision(units * 1000 / perSecond);
  if (!(milliseconds >= -kFarthest && milliseconds <= kFarthest)) return std::nullopt;
  return nearestTo(milliseconds);
}

}  // namespace kssubtitle::importing
