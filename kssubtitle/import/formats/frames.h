// Times that are counted in frames.
#pragma once

#include <optional>

#include "kssubtitle/import/formats/formats.h"

namespace kssubtitle::importing {

/// `rate`, if it can be the number of frames in a second; nothing otherwise.
std::optional<double> usableFrameRate(double rate) noexcept;

/// The rate for a file that states none: that of the options, else 23.976 as it is written, which
/// is noted.
double frameRateWithout(const ksImportOptions& options, Notes& notes);

/// The time of a place in a file; nothing if that is too far away to be one. Rounds once, to the
/// nearest millisecond. Requires: `perSecond` is usable.
std::optional<long long> millisecondsOf(double units, double perSecond) noexcept;

}  // namespace kssubtitle::importing
