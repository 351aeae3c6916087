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

/// Consumes the characters before the next tag. Those of texts are escaped in html, so that every
/// angle bracket is a tag's.
std::string_view consumeVisible(std::string_view& html) noexcept {
  while (html.starts_with('<')) html.remove_prefix(html.find('>') + 1);
  const std::string_view visible = html.substr(0, html.find('<'));
  html.remove_prefix(visible.size());
  return visible;
}

/// Compares two texts without their tags.
int compareVisible(std::string_view a, std::string_view b) noexcept {
  std::string_view pieceOfA;
  std::string_view pieceOfB;
  while (true) {
    if (pieceOfA.empty()) pieceOfA = consumeVisible(a);
    if (pieceOfB.empty()) pieceOfB = consumeVisible(b);
    const std::size_t common = std::min(pieceOfA.size(), pieceOfB.size());
    if (common == 0) return pieceOfA.compare(pieceOfB);
    if (const int order = pieceOfA.compare(0, common, pieceOfB, 0, common); order != 0) {
      return order;
    }
    pieceOfA.remove_prefix(common);
    pieceOfB.remove_prefix(common);
  }
}

/// Orders cues by what they show and when they end.
class ByContent {
 public:
  explicit ByContent(ksImportMarkup markup) noexcept : isHtml_(markup == ksImportMarkup::kHtml) {}

  int compare(const ksImportCue& a, const ksImportCue& b) const noexcept {
    if (a.end != b.end) return a.end < b.end ? -1 : 1;
    return isHtml_ ? compareVisible(a.text, b.text) : a.text.compare(b.text);
  }
  bool operator()(const ksImportCue& a, const ksImportCue& b) const noexcept {
    const int order = compare(a, b);
    return order != 0 ? order < 0 : a.index < b.index;
  }

 private:
  bool isHtml_;
};

using CueIterator = std::vector<ksImportCue>::iterator;

/// Requires: the cues have the same start.
void markDuplicatesOfOneStart(CueIterator begin, CueIterator end, const ByContent& byContent,
                              Notes& notes) {
  std::sort(begin, end, byContent);  // so that equal ones are neighbours
  for (auto cue = begin + 1; cue != end; ++cue) {
    if (byContent.compare(*(cue - 1), *cue) != 0) continue;
    cue->isDuplicate = true;
    notes.add(ksImportProblem::kDuplicate, cue->line);
  }
  std::sort(begin, end, isBefore);
}

/// Of cues with the same start, end and visible text, marks all but the first. Requires: they are
/// sorted.
void markDuplicates(std::vector<ksImportCue>& cues, const ByContent& byContent, Notes& notes) {
  const auto sameStart = [](const ksImportCue& a, const ksImportCue& b) {
    return a.start == b.start;
  };
  auto begin = std::adjacent_find(cues.begin(), cues.end(), sameStart);
  while (begin != cues.end()) {
    const auto end = std::find_if_not(
        begin, cues.end(), [&](const ksImportCue& cue) { return cue.start == begin->start; });
    markDuplicatesOfOneStart(begin, end, byContent, notes);
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

void arrange(std::vector<ksImportCue>& cues, long long longestAssumed, ksImportMarkup markup,
             Notes& notes) {
  if (!std::is_sorted(cues.begin(), cues.end(), isBefore)) {
    std::sort(cues.begin(), cues.end(), isBefore);
  }
  if (std::ranges::any_of(cues, &ksImportCue::isEndAssumed)) {
    assumeEnds(cues, longestAssumed, notes);
  }
  std::erase_if(cues, [](const ksImportCue& cue) { return cue.text.empty(); });
  markDuplicates(cues, ByContent(markup), notes);
  noteTimes(cues, notes);
  if (cues.capacity() - cues.size() > cues.size() / 4) cues.shrink_to_fit();
}

}  // namespace kssubtitle::importing
