// Times that are counted in frames.
#include "kssubtitle/import/formats/frames.h"

#include <cmath>

namespace kssubtitle::importing {

std::optional<double> usableFrameRate(double rate) noexcept {
  constexpr double kLeast = 0.01;
  constexpr double kMost = 1e6;
  return rate >= kLeast && rate <= kMost ? std::optional(rate) : std::nullopt;
}

double frameRateWithout(const ksImportOptions& options, Notes& notes) {
  constexpr double kUsual = 23.976;
  if (const auto given = usableFrameRate(options.frameRate)) return *given;
  notes.add(ksImportProblem::kFrameRateAssumed, 0);
  return kUsual;
}

std::optional<long long> millisecondsOf(double units, double perSecond) noexcept {
  constexpr double kFarthest = 1e18;
  const double milliseconds = units * 1000 / perSecond;
  if (!(std::abs(milliseconds) <= kFarthest)) return std::nullopt;
  return std::llround(milliseconds);
}

}  // namespace kssubtitle::importing
