// What can be done to the times of cues.
#include "tools/kssub/edits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kssub {
namespace {

constexpr long double kLatest = 4e18L;  // beyond what any file can say

/// Where each cue is followed by a later one, from the last cue on.
template <typename Act>
void forEachBeforeALaterOne(EditedCues& cues, Act act) {
  long long next = std::numeric_limits<long long>::max();
  for (std::size_t i = cues.size(); i-- > 0;) {
    if (i + 1 < cues.size() && cues[i + 1].start > cues[i].start) next = cues[i + 1].start;
    act(cues[i], next);
  }
}

}  // namespace

long long TimeChange::operator()(long long time) const {
  const long double changed = static_cast<long double>(time) * factor + offset;
  return std::llroundl(std::clamp(changed, -kLatest, kLatest));
}

TimeChange changeThrough(const std::vector<TimePair>& pairs) {
  const auto before = [&](std::size_t i) { return static_cast<long double>(pairs[i].before); };
  const auto after = [&](std::size_t i) { return static_cast<long double>(pairs[i].after); };
  TimeChange change;
  if (pairs.size() > 1) change.factor = (after(1) - after(0)) / (before(1) - before(0));
  change.offset = after(0) - before(0) * change.factor;
  return change;
}

EditedCues retimed(EditedCues cues, const TimeChange& change) {
  for (EditedCue& cue : cues) {
    cue.start = change(cue.start);
    cue.end = change(cue.end);
  }
  return cues;
}

bool isNeverShown(const EditedCue& cue) { return cue.end <= std::max(cue.start, 0LL); }

EditedCues within(EditedCues cues, long long from, long long until) {
  std::erase_if(cues, [=](const EditedCue& cue) { return cue.end <= from || cue.start >= until; });
  return cues;
}

EditedCues withoutOverlaps(EditedCues cues) {
  EditedCues apart;
  for (EditedCue& cue : cues) {
    if (apart.empty() || apart.back().start != cue.start) {
      apart.push_back(std::move(cue));
    } else {
      apart.back().end = std::max(apart.back().end, cue.end);
      apart.back().text += '\n' + cue.text;
    }
  }
  forEachBeforeALaterOne(apart,
                         [](EditedCue& cue, long long next) { cue.end = std::min(cue.end, next); });
  return apart;
}

EditedCues lasting(EditedCues cues, long long least) {
  forEachBeforeALaterOne(cues, [least](EditedCue& cue, long long next) {
    cue.end = std::max(cue.end, std::min(cue.start + least, next));
  });
  return cues;
}

}  // namespace kssub
