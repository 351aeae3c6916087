// Puts the cues that a reader found into their final form.
#include "kssubtitle/import/formats/common/arrangement.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace kssubtitle::importing {
namespace {

bool isBefore(const ksImportCue& a, const ksImportCue& b) noexcept {
  return std::tie(a.start, a.index) < std::tie(b.start, b.index);
}

/// Requires: the cues are sorted; those without text count.
void assumeEnds(std::vector<ksImportCue>& cues, long long longest, Notes& notes) {
  constexpr long long kLastCue = 5000;
  long long nextStart = std::numeric_limits<long long>::max();
  for (std::size_t i = cues.size(); i-- > 0;) {
    ksImportCue& cue = cues[i];
    // Cues with the same start are shown together, until the next later one.
    if (i + 1 < cues.size() && cues[i + 1].start > cue.start) nextStart = cues[i + 1].start;
    if (!cue.isEndAssumed) continue;
    const bool isLast = nextStart == std::numeric_limits<long long>::max();
    cue.end = isLast ? cue.start + kLastCue : std::min(nextStart, cue.start + longest);
    if (isLast && !cue.text.empty()) notes.add(ksImportProblem::kEndAssumed, cue.line);
  }
}

bool hasSameContent(const ksImportCue& a, const ksImportCue& b) noexcept {
  return a.end == b.end && a.text == b.text;
}

bool isContentBefore(const ksImportCue& a, const ksImportCue& b) noexcept {
  const auto key = [](const ksImportCue& cue) {
    return std::make_tuple(cue.end, cue.text.size(), cue.text, cue.index);
  };
  return key(a) < key(b);
}

using CueIterator = std::vector<ksImportCue>::iterator;

/// Requires: the cues have the same start.
void markDuplicatesOfOneStart(CueIterator begin, CueIterator end, Notes& notes) {
  std::sort(begin, end, isContentBefore);  // so that equal ones are neighbours
  for (auto cue = begin + 1; cue != end; ++cue) {
    if (!hasSameContent(*(cue - 1), *cue)) continue;
    cue->isDuplicate = true;
    notes.add(ksImportProblem::kDuplicate, cue->line);
  }
  std::sort(begin, end, isBefore);
}

/// Of cues with the same start, end and text, marks all but the first. Requires: they are sorted.
void markDuplicates(std::vector<ksImportCue>& cues, Notes& notes) {
  const auto sameStart = [](const ksImportCue& a, const ksImportCue& b) {
    return a.start == b.start;
  };
  auto begin = std::adjacent_find(cues.begin(), cues.end(), sameStart);
  while (begin != cues.end()) {
    const auto end = std::find_if_not(
        begin, cues.end(), [&](const ksImportCue& cue) { return cue.start == begin->start; });
    markDuplicatesOfOneStart(begin, end, notes);
    begin = std::adjacent_find(end, cues.end(), sameStart);
  }
}

/// Requires: the cues are sorted.
void noteTimes(const std::vector<ksImportCue>& cues, Notes& notes) {
  long long greatestEnd = std::numeric_limits<long long>::min();
  for (const ksImportCue& cue : cues) {
    if (cue.isDuplicate) continue;
    if (cue.end <= std::max(cue.start, 0LL)) {
      notes.add(ksImportProblem::kEndNotAfterStart, cue.line);
    } else {
      if (cue.start < greatestEnd) notes.add(ksImportProblem::kOverlap, cue.line);
      greatestEnd = std::max(greatestEnd, cue.end);
    }
  }
}

}  // namespace

void arrange(std::vector<ksImportCue>& cues, long long longestAssumed, Notes& notes) {
  if (!std::is_sorted(cues.begin(), cues.end(), isBefore)) {
    std::sort(cues.begin(), cues.end(), isBefore);
  }
  if (std::ranges::any_of(cues, &ksImportCue::isEndAssumed)) {
    assumeEnds(cues, longestAssumed, notes);
  }
  std::erase_if(cues, [](const ksImportCue& cue) { return cue.text.empty(); });
  markDuplicates(cues, notes);
  noteTimes(cues, notes);
  if (cues.capacity() - cues.size() > cues.size() / 4) cues.shrink_to_fit();
}

}  // namespace kssubtitle::importing
