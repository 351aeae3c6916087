// Which cues are shown at a moment.
#include "kssubtitle/import/moments/moments.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kssubtitle::importing {
namespace {

constexpr std::size_t kGroup = 16;

bool isDuplicate(const ksImportCue& cue) noexcept { return (cue.flags & kImportDuplicate) != 0; }

}  // namespace

void Moments::Active::add(const Ending& ending) {
  if (count_++ == 0) {
    next_ = ending;
  } else if (next_ > ending) {
    others_.push(std::exchange(next_, ending));
  } else {
    others_.push(ending);
  }
}

void Moments::Active::drop() {
  if (--count_ == 0) return;
  next_ = others_.top();
  others_.pop();
}

int Moments::Active::shown() const noexcept {
  if (empty()) return Moment::kNobody;
  return count_ == 1 ? next_.cue : Moment::kSeveral;
}

void Moments::reserve(std::size_t cues) {
  begins_.resize(std::max(begins_.size(), 2 * cues));
  shown_.resize(begins_.size());
}

void Moments::add(const ksImportCue& cue) {
  const int place = count_++;
  const long long start = std::max(cue.start, 0LL);
  const bool isShown = cue.end > start && !isDuplicate(cue);
  noteEnd(place, isShown ? cue.end : std::numeric_limits<long long>::min());
  if (!isShown) return;
  segments_ = settled_;
  endUntil(start);
  active_.add({cue.end, place});
  cutAt(start);
  settled_ = segments_;
}

void Moments::settle() {
  Active active = active_;
  endUntil(std::numeric_limits<long long>::max());
  active_ = std::move(active);
  groupEnds();
}

std::optional<Moment> Moments::at(long long t) const noexcept {
  const auto after = std::upper_bound(begins().begin(), begins().end(), t);
  if (after == begins().begin()) return std::nullopt;
  auto i = static_cast<std::size_t>(after - begins().begin()) - 1;
  // What ends is still shown at the moment of its end if nothing else is.
  if (shown_[i] == Moment::kNobody && begins_[i] == t && i > 0) --i;
  if (shown_[i] == Moment::kNobody) return std::nullopt;
  return Moment{begins_[i], begins_[i + 1], shown_[i]};
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

/// From `time` on those are shown that are active now.
void Moments::cutAt(long long time) {
  if (segments_ == 0 || begins_[segments_ - 1] != time) {
    if (segments_ == begins_.size()) reserve(segments_ + 1);
    begins_[segments_++] = time;
  }
  shown_[segments_ - 1] = active_.shown();
}

void Moments::endUntil(long long time) {
  while (!active_.empty() && active_.firstEnd() <= time) {
    const long long end = active_.firstEnd();
    while (!active_.empty() && active_.firstEnd() == end) active_.drop();
    cutAt(end);
  }
}

void Moments::noteEnd(int cue, long long end) {
  std::vector<long long>& ends = greatestEnds_.front();
  if (static_cast<std::size_t>(cue) % kGroup == 0) {
    ends.push_back(end);
  } else {
    ends.back() = std::max(ends.back(), end);
  }
}

/// Sees to the groups of groups that are not up to date.
void Moments::groupEnds() {
  std::size_t first = grouped_;
  for (std::size_t level = 0; greatestEnds_[level].size() > 1; ++level) {
    if (level + 1 == greatestEnds_.size()) greatestEnds_.emplace_back();
    const std::vector<long long>& below = greatestEnds_[level];
    std::vector<long long>& ends = greatestEnds_[level + 1];
    first /= kGroup;
    ends.resize(first);
    for (std::size_t at = first * kGroup; at < below.size(); at += kGroup) {
      const auto group = std::span(below).subspan(at, std::min(kGroup, below.size() - at));
      ends.push_back(*std::max_element(group.begin(), group.end()));
    }
  }
  grouped_ = std::max<std::size_t>(greatestEnds_.front().size(), 1) - 1;
}

/// Finds those of `cues` in one group of a level that are shown at `time`. Groups behind `cues`
/// were added later and are passed over.
void Moments::search(std::span<const ksImportCue> cues, std::size_t level, std::size_t group,
                     long long time, std::vector<int>& found) const {
  if (greatestEnds_[level][group] <= time) return;
  const std::size_t first = group * kGroup;
  if (level == 0) {
    const std::size_t end = std::min(first + kGroup, cues.size());
    for (std::size_t i = first; i < end; ++i) {
      if (cues[i].end > time && !isDuplicate(cues[i])) found.push_back(static_cast<int>(i));
    }
    return;
  }
  const std::size_t below = kGroup << (4 * (level - 1));  // cues in a group of the next level
  const std::size_t begun = (cues.size() + below - 1) / below;
  const std::size_t end = std::min(first + kGroup, begun);
  for (std::size_t i = first; i < end; ++i) search(cues, level - 1, i, time, found);
}

}  // namespace kssubtitle::importing
