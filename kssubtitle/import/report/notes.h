// Gathers what is wrong with a file.
#pragma once

#include <array>
#include <climits>
#include <cstddef>
#include <vector>

#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

inline constexpr std::size_t kProblems =
    static_cast<std::size_t>(ksImportProblem::kIndexUnreadable) + 1;

/// Counts every problem, and keeps the notes with the lowest line numbers.
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

  const std::vector<ksImportNote>& kept() const noexcept { return kept_; }
  std::size_t count(ksImportProblem problem) const noexcept {
    return counts_[static_cast<std::size_t>(problem)];
  }

 private:
  /// Keeps kMostKept notes: many are found in a later look at the cues, whose lines may come first.
  void dropLast();

  std::array<std::size_t, kProblems> counts_{};
  int end_ = INT_MAX;  // notes on this line and later ones are no longer kept
  std::vector<ksImportNote> kept_;
};

}  // namespace kssubtitle::importing
