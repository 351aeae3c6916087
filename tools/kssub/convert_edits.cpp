// The edits of the command `convert` that change times.
#include "tools/kssub/convert_edits.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace kssub {
namespace {

using Magnitude = unsigned long long;

/// Times are limited to this, far beyond any film, so that their sums fit.
constexpr long long kFarthest = 2'000'000'000'000'000'000;

long long limited(long long time) { return std::clamp(time, -kFarthest, kFarthest); }

/// value * numerator / denominator, rounded, at most kFarthest: a long multiplication, because the
/// product has up to 128 bits. Requires: value <= 2 * kFarthest, and the others as well.
long long scaled(Magnitude value, Magnitude numerator, Magnitude denominator) {
  Magnitude quotient = 0;
  Magnitude remainder = 0;
  for (int bit = 62; bit >= 0; --bit) {
    const bool isSet = (numerator >> bit & 1) != 0;
    quotient = 2 * quotient + (isSet ? value / denominator : 0);
    remainder = 2 * remainder + (isSet ? value % denominator : 0);
    quotient += remainder / denominator;
    remainder %= denominator;
    if (quotient >= kFarthest) return kFarthest;
  }
  return static_cast<long long>(quotient) + (remainder >= denominator - remainder ? 1 : 0);
}

/// Calls `act` with each cue, last first, and the start of the next one that begins later.
template <typename Act>
void forEachWithNextStart(EditedCues& cues, Act act) {
  long long next = std::numeric_limits<long long>::max();
  for (std::size_t i = cues.size(); i-- > 0;) {
    if (i + 1 < cues.size() && cues[i + 1].start > cues[i].start) next = cues[i + 1].start;
    act(cues[i], next);
  }
}

}  // namespace

long long TimeChange::operator()(long long time) const {
  const long long distance = limited(time) - limited(before);
  const auto change =
      scaled(static_cast<Magnitude>(std::abs(distance)), static_cast<Magnitude>(numerator),
             static_cast<Magnitude>(denominator));
  return limited(limited(after) + (distance < 0 ? -change : change));
}

TimeChange changeThrough(const std::vector<TimePair>& pairs) {
  TimeChange change{pairs[0].before, pairs[0].after};
  if (pairs.size() == 1) return change;
  const auto span = [&](long long TimePair::*time) {
    return std::max(std::abs(limited(pairs[1].*time) - limited(pairs[0].*time)), 1LL);
  };
  change.numerator = span(&TimePair::after);
  change.denominator = span(&TimePair::before);
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
  forEachWithNextStart(apart,
                       [](EditedCue& cue, long long next) { cue.end = std::min(cue.end, next); });
  return apart;
}

EditedCues lasting(EditedCues cues, long long least) {
  forEachWithNextStart(cues, [least](EditedCue& cue, long long next) {
    cue.end = std::max(cue.end, std::min(cue.start + least, next));
  });
  return cues;
}

}  // namespace kssub
