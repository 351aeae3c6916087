// Times that are counted in frames.
#include "kssubtitle/import/formats/common/frames.h"

namespace kssubtitle::importing {

std::optional<double> usableFrameRate(double rate) noexcept {
  constexpr double kLeast = 0.01;
  constexpr double kMost = 1e6;
  return rate >= kLeast && rate <= kMost ? std::optional(rate) : std::nullopt;
}

double assumedFrameRate(const ksImportOptions& options, Notes& notes) {
  constexpr double kUsual = 23.976;
  if (const auto given = usableFrameRate(options.frameRate)) return *given;
  notes.add(ksImportProblem::kFrameRateAssumed, 0);
  return kUsual;
}

}  // namespace kssubtitle::importing
