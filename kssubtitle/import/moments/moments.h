// Which cues are shown at a moment.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <queue>
#include <span>
#include <vector>

#include "kssubtitle/import/ksImportCue.h"

namespace kssubtitle::importing {

/// A span of time in which the same cues are shown, and which: one by its place in the span of all
/// cues, or several.
struct Moment {
  static constexpr int kNobody = -1;
  static constexpr int kSeveral = -2;

  long long start;
  long long end;
  int shown;
};

/// Takes cues in the order of their starts, one after the other, and then answers.
///
/// Time is cut into segments where other cues are shown from then on. A segment that shows one cue
/// names it, and is over where that cue ends, whether another one begins there or not; for one that
/// shows several, the cues that begin up to there are searched for those that have not ended, by
/// the greatest ends of ever larger groups of them.
///
/// Wherever cues are asked for, they are all those that were added.
class Moments {
 public:
  void reserve(std::size_t cues);
  /// Adds the next cue. One whose end is not behind its start, or not above 0, or that is
  /// a duplicate, is never shown.
  void add(const ksImportCue& cue);
  /// To be called behind the last cue that is added before a question.
  void settle(std::span<const ksImportCue> cues);

  /// The moment round `t`; nothing if no cue is shown.
  std::optional<Moment> at(long long t, std::span<const ksImportCue> cues) const noexcept;
  /// The places of the cues that are shown in a moment, in the order of the file. Requires:
  /// `moment` is one of at().
  std::vector<int> cuesAt(const Moment& moment, std::span<const ksImportCue> cues) const;

 private:
  struct Ending {
    long long time;
    int cue;
    bool operator>(const Ending& other) const noexcept { return time > other.time; }
  };

  /// The cues that are shown where the segments end.
  class Active {
   public:
    bool empty() const noexcept { return count_ == 0; }
    bool isSingle() const noexcept { return count_ == 1; }
    /// Requires: there is one.
    long long firstEnd() const noexcept { return next_.time; }
    /// What a segment shows.
    int shown() const noexcept {
      if (count_ == 1) return next_.cue;
      return empty() ? Moment::kNobody : Moment::kSeveral;
    }
    void add(long long end, int cue) {
      if (count_ > 0) return addBesideOthers({end, cue});
      replaceAll(end, cue);
    }
    void replaceAll(long long end, int cue) noexcept {
      next_.time = end;
      next_.cue = cue;
      count_ = 1;
    }
    /// Drops what ends first.
    void drop() {
      if (--count_ > 0) dropBesideOthers();
    }

   private:
    void addBesideOthers(const Ending& ending);
    void dropBesideOthers();

    Ending next_{};  // what ends first: mostly the only one
    std::priority_queue<Ending, std::vector<Ending>, std::greater<>> others_;
    int count_ = 0;
  };

  void dropUnsettled();
  void cutAt(long long time);
  void endUntil(long long time);
  void groupEnds(std::span<const ksImportCue> cues);
  void search(std::span<const ksImportCue> cues, std::size_t level, std::size_t group,
              long long time, std::vector<int>& found) const;

  std::vector<long long> begins_;  // of the segments
  std::vector<int> shown_;
  std::size_t settled_ = 0;  // how many of them no later cue can change
  Active active_;
  // [n]: of each group of 16^(n+1) cues; none while no segment shows several.
  std::vector<std::vector<long long>> greatestEnds_;
  std::size_t grouped_ = 0;  // how many groups of the lowest level no later cue can change
  bool showsSeveral_ = false;
  int count_ = 0;
};

}  // namespace kssubtitle::importing
