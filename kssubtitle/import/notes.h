// Gathers what is wrong with a file.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

/// Counts every problem, and keeps the first ones with their lines.
class Notes {
 public:
  static constexpr std::size_t kMostKept = 1000;

  void add(ksImportProblem problem, int line) {
    ++counts_[static_cast<std::size_t>(problem)];
    if (kept_.size() < kMostKept) kept_.push_back({problem, line});
  }
  void sortByLine();

  const std::vector<ksImportNote>& kept() const noexcept { return kept_; }
  std::size_t count(ksImportProblem problem) const noexcept {
    return counts_[static_cast<std::size_t>(problem)];
  }

 private:
  std::array<std::size_t, kImportProblems> counts_{};
  std::vector<ksImportNote> kept_;
};

}  // namespace kssubtitle::importing
