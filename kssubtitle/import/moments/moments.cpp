// Which cues are shown at a moment.
#include "kssubtitle/import/moments/moments.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <queue>
#include <utility>

namespace kssubtitle::importing {
namespace {

constexpr std::size_t kGroup = 16;

struct Ending {
  long long time;
  int cue;

  bool operator>(const Ending& other) const noexcept { return time > other.time; }
};

}  // namespace

/// Adds the segments of one cue after the other.
class Moments::Builder {
 public:
  explicit Builder(Moments& moments) noexcept : moments_(moments) {}

  void add(const ksImportCue& cue, int index) {
    const long long start = std::max(cue.start, 0LL);
    if (cue.end <= start || cue.isDuplicate) return;
    endUntil(start);
    active_.push({cue.end, index});
    cutAt(start);
  }
  /// Ends all cues. Returns whether several were ever shown together.
  bool finish() {
    endUntil(std::numeric_limits<long long>::max());
    return showsSeveral_;
  }

 private:
  int shown() const noexcept {
    if (active_.empty()) return Moment::kNobody;
    return active_.size() == 1 ? active_.top().cue : Moment::kSeveral;
  }

  /// A segment that shows the active cues begins at `time`.
  void cutAt(long long time) {
    showsSeveral_ = showsSeveral_ || shown() == Moment::kSeveral;
    if (moments_.begins_.empty() || moments_.begins_.back() != time) {
      moments_.begins_.push_back(time);
      moments_.shown_.push_back(shown());
    } else {
      moments_.shown_.back() = shown();
    }
  }

  /// No segment begins where a single cue ends.
  void endUntil(long long time) {
    while (!active_.empty() && active_.top().time <= time) {
      const bool isCut = shown() == Moment::kSeveral;
      const long long end = active_.top().time;
      while (!active_.empty() && active_.top().time == end) active_.pop();
      if (isCut) cutAt(end);
    }
  }

  Moments& moments_;
  std::priority_queue<Ending, std::vector<Ending>, std::greater<>> active_;
  bool showsSeveral_ = false;
};

Moments::Moments(std::span<const ksImportCue> cues) {
  begins_.reserve(cues.size());
  shown_.reserve(cues.size());
  Builder builder(*this);
  for (std::size_t i = 0; i < cues.size(); ++i) builder.add(cues[i], static_cast<int>(i));
  if (builder.finish()) groupEnds(cues);
}

std::optional<Moment> Moments::at(long long t, std::span<const ksImportCue> cues) const noexcept {
  const auto after = std::upper_bound(begins_.begin(), begins_.end(), t);
  if (after == begins_.begin()) return std::nullopt;
  auto i = static_cast<std::size_t>(after - begins_.begin()) - 1;
  // A cue is still shown at its end if nothing else is.
  if (shown_[i] == Moment::kNobody && begins_[i] == t) --i;
  if (shown_[i] == Moment::kNobody) return std::nullopt;
  long long end = i + 1 < begins_.size() ? begins_[i + 1] : std::numeric_limits<long long>::max();
  if (shown_[i] >= 0) end = std::min(end, cues[static_cast<std::size_t>(shown_[i])].end);
  return t <= end ? std::optional(Moment{begins_[i], end, shown_[i]}) : std::nullopt;
}

std::vector<int> Moments::cuesAt(const Moment& moment, std::span<const ksImportCue> cues) const {
  if (moment.shown >= 0) return {moment.shown};
  std::vector<int> found;
  const auto startsLater = [](long long time, const ksImportCue& cue) { return time < cue.start; };
  const auto begun = std::upper_bound(cues.begin(), cues.end(), moment.start, startsLater);
  const auto begunCues = cues.first(static_cast<std::size_t>(begun - cues.begin()));
  const std::size_t top = greatestEnds_.size() - 1;
  for (std::size_t group = 0; group < greatestEnds_[top].size(); ++group) {
    search(begunCues, top, group, moment.start, found);
  }
  std::sort(found.begin(), found.end(), [cues](int a, int b) {
    return cues[static_cast<std::size_t>(a)].index < cues[static_cast<std::size_t>(b)].index;
  });
  return found;
}

void Moments::groupEnds(std::span<const ksImportCue> cues) {
  std::size_t count = cues.size();
  for (std::size_t level = 0; level == 0 || count > 1; ++level) {
    const auto endOf = [&](std::size_t i) {
      return level == 0 ? cues[i].end : greatestEnds_[level - 1][i];
    };
    std::vector<long long> ends;
    for (std::size_t i = 0; i < count; ++i) {
      if (i % kGroup == 0) ends.push_back(endOf(i));
      ends.back() = std::max(ends.back(), endOf(i));
    }
    count = ends.size();
    greatestEnds_.push_back(std::move(ends));
  }
}

/// Finds those of `cues`, which have all begun, in one group of a level that are shown at `time`.
void Moments::search(std::span<const ksImportCue> cues, std::size_t level, std::size_t group,
                     long long time, std::vector<int>& found) const {
  if (greatestEnds_[level][group] <= time) return;
  const std::size_t first = group * kGroup;
  if (level == 0) {
    const std::size_t end = std::min(first + kGroup, cues.size());
    for (std::size_t i = first; i < end; ++i) {
      if (cues[i].end > time && !cues[i].isDuplicate) found.push_back(static_cast<int>(i));
    }
    return;
  }
  const std::size_t below = kGroup << (4 * (level - 1));  // cues in a group of the next level
  const std::size_t begun = (cues.size() + below - 1) / below;
  const std::size_t end = std::min(first + kGroup, begun);
  for (std::size_t i = first; i < end; ++i) search(cues, level - 1, i, time, found);
}

}  // namespace kssubtitle::importing
