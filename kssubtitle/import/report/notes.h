// Gathers what is wrong with a file.
#pragma once

#include <array>
#include <climits>
#include <cstddef>
#include <vector>

#include "kssubtitle/import/conditions.h"
#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

inline constexpr std::size_t kProblems =
    static_cast<std::size_t>(ksImportProblem::kIndexUnreadable) + 1;

/// Counts every problem, keeps those of the first lines, and gathers which conditions of the
/// fixed readers fail.
class Notes {
 public:
  static constexpr std::size_t kMostKept = 1000;

  void add(ksImportProblem problem, int line) {
    ++counts_[static_cast<std::size_t>(problem)];
    if (line >= end_) return;
    kept_.push_back({problem, line});
    if (kept_.size() == 2 * kMostKept) dropLast();
  }
  void sortByLine();
  void fail(Condition condition) noexcept { failed_.add(condition); }

  const std::vector<ksImportNote>& kept() const noexcept { return kept_; }
  std::size_t count(ksImportProblem problem) const noexcept {
    return counts_[static_cast<std::size_t>(problem)];
  }
  /// Those that readers and the parser have told; what problems say of them is not among them.
  const FailedConditions& failed() const noexcept { return failed_; }

 private:
  /// Keeps kMostKept notes: many are found in a later look at the cues, whose lines may come first.
  void dropLast();

  std::array<std::size_t, kProblems> counts_{};
  int end_ = INT_MAX;  // notes on this line and later ones are no longer kept
  std::vector<ksImportNote> kept_;
  FailedConditions failed_;
};

}  // namespace kssubtitle::importing
