// Which cues are shown at a moment.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "kssubtitle/import/ksImportCue.h"

namespace kssubtitle::importing {

/// A span of time in which the same cues are shown: one, by its index in the span of all cues, or
/// several.
struct Moment {
  static constexpr int kNobody = -1;
  static constexpr int kSeveral = -2;

  long long start;
  long long end;
  int shown;
};

/// Which cues are shown at every moment.
///
/// A segment begins wherever the set of shown cues changes. A segment that shows one cue names it,
/// and is over where that cue ends, whether another one begins there or not. For one that shows
/// several, the cues that have begun are searched for those that have not ended, by the greatest
/// ends of ever larger groups of them.
///
/// Every `cues` parameter must be the cues that it was constructed from.
class Moments {
 public:
  Moments() = default;
  /// Requires: the cues are sorted by start. One that does not end after its start, and after 0, or
  /// that is a duplicate, is never shown.
  explicit Moments(std::span<const ksImportCue> cues);

  /// The moment around `t`; nothing if no cue is shown.
  std::optional<Moment> at(long long t, std::span<const ksImportCue> cues) const noexcept;
  /// The indices of the cues that are shown in a moment, in the order of the file. Requires:
  /// `moment` is one of at().
  std::vector<int> cuesAt(const Moment& moment, std::span<const ksImportCue> cues) const;

 private:
  class Builder;

  void groupEnds(std::span<const ksImportCue> cues);
  void search(std::span<const ksImportCue> cues, std::size_t level, std::size_t group,
              long long time, std::vector<int>& found) const;

  std::vector<long long> begins_;  // of the segments
  std::vector<int> shown_;         // in each of them: a cue, Moment::kNobody or Moment::kSeveral
  // [n]: of each group of 16^(n+1) cues; empty if no segment shows several.
  std::vector<std::vector<long long>> greatestEnds_;
};

}  // namespace kssubtitle::importing
