// Which cues are shown at a moment.
#include "kssubtitle/import/moments/moments.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kssubtitle::importing {
namespace {

constexpr std::size_t kGroup = 16;

}  // namespace

void Moments::Active::addBesideOthers(const Ending& ending) {
  ++count_;
  others_.push(next_ > ending ? std::exchange(next_, ending) : ending);
}

void Moments::Active::dropBesideOthers() {
  next_ = others_.top();
  others_.pop();
}

void Moments::reserve(std::size_t cues) {
  begins_.reserve(cues);
  shown_.reserve(cues);
}

void Moments::add(const ksImportCue& cue) {
  const int place = count_++;
  const long long start = std::max(cue.start, 0LL);
  if (cue.end <= start || cue.isDuplicate) return;
  if (begins_.size() > settled_) dropUnsettled();
  if (active_.isSingle() && active_.firstEnd() <= start) {
    active_.replaceAll(cue.end, place);  // as most cues follow each other
    begins_.push_back(start);
    shown_.push_back(place);
  } else {
    endUntil(start);
    active_.add(cue.end, place);
    cutAt(start);
  }
  settled_ = begins_.size();
}

void Moments::settle(std::span<const ksImportCue> cues) {
  if (!showsSeveral_) return;
  Active active = active_;
  endUntil(std::numeric_limits<long long>::max());
  active_ = std::move(active);
  groupEnds(cues);
}

std::optional<Moment> Moments::at(long long t, std::span<const ksImportCue> cues) const noexcept {
  const auto after = std::upper_bound(begins_.begin(), begins_.end(), t);
  if (after == begins_.begin()) return std::nullopt;
  auto i = static_cast<std::size_t>(after - begins_.begin()) - 1;
  // What ends is still shown at the moment of its end if nothing else is.
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

void Moments::dropUnsettled() {
  begins_.resize(settled_);
  shown_.resize(settled_);
}

/// From `time` on those are shown that are active now.
void Moments::cutAt(long long time) {
  const int shown = active_.shown();
  showsSeveral_ = showsSeveral_ || shown == Moment::kSeveral;
  if (!begins_.empty() && begins_.back() == time) {
    shown_.back() = shown;
  } else {
    begins_.push_back(time);
    shown_.push_back(shown);
  }
}

/// Where a single cue ends no segment begins.
void Moments::endUntil(long long time) {
  while (!active_.empty() && active_.firstEnd() <= time) {
    const bool isCut = active_.shown() == Moment::kSeveral;
    const long long end = active_.firstEnd();
    while (!active_.empty() && active_.firstEnd() == end) active_.drop();
    if (isCut) cutAt(end);
  }
}

/// Sees to the groups that are not up to date.
void Moments::groupEnds(std::span<const ksImportCue> cues) {
  std::size_t first = grouped_;
  std::size_t count = cues.size();
  for (std::size_t level = 0; level == 0 || count > 1; ++level) {
    if (level == greatestEnds_.size()) greatestEnds_.emplace_back();
    const auto endOf = [&](std::size_t i) {
      return level == 0 ? cues[i].end : greatestEnds_[level - 1][i];
    };
    std::vector<long long>& ends = greatestEnds_[level];
    ends.resize(first);
    for (std::size_t i = first * kGroup; i < count; ++i) {
      if (i % kGroup == 0) ends.push_back(endOf(i));
      ends.back() = std::max(ends.back(), endOf(i));
    }
    count = ends.size();
    first /= kGroup;
  }
  grouped_ = cues.size() / kGroup;
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
