// Finds the cues that exceed the limits of the command `check`.
#include "tools/kssub/check_limits.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>

#include "tools/kssub/reading_speed.h"
#include "tools/kssub/report_text.h"

namespace kssub {
namespace {

std::size_t longestLine(std::string_view text) {
  std::size_t longest = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    longest = std::max(longest, countCharacters(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return longest;
}

class LimitChecker {
 public:
  explicit LimitChecker(const CheckLimits& limits) : limits_(limits) {}

  void check(const ksImportCue& cue) {
    checkGap(cue);
    checkSpeed(cue);
    checkLines(cue);
    latestEnd_ = std::max(latestEnd_.value_or(cue.end), cue.end);
  }

  std::vector<Finding> findings;

 private:
  void add(Flaw flaw, const ksImportCue& cue, std::string sentence) {
    findings.push_back({flaw, cue.line, std::move(sentence)});
  }

  void checkGap(const ksImportCue& cue) {
    if (!latestEnd_) return;
    constexpr long long kNone = 1;  // some files give the last millisecond of a cue as its end
    const long long gap = cue.start - *latestEnd_;
    if (gap <= kNone || gap >= limits_.leastGap) return;
    add(Flaw::kShortGap, cue,
        "The cue begins only " + std::to_string(gap) + " ms after the previous one ends.");
  }

  /// A cue that is too short to be seen is not reported as too long to read, too.
  void checkSpeed(const ksImportCue& cue) {
    const long long duration = cue.end - cue.start;
    if (duration < limits_.leastDuration) {
      return add(Flaw::kFlash, cue,
                 "The cue is shown for only " + std::to_string(duration) + " ms.");
    }
    const double speed = charactersPerSecond(cue);
    if (limits_.mostSpeed <= 0 || speed <= limits_.mostSpeed) return;
    add(Flaw::kTooFast, cue,
        "The cue must be read at " + std::to_string(std::llround(std::ceil(speed))) +
            " characters per second.");
  }

  void checkLines(const ksImportCue& cue) {
    const std::size_t longest = longestLine(cue.text);
    if (limits_.mostCharacters <= 0 ||
        longest <= static_cast<std::size_t>(limits_.mostCharacters)) {
      return;
    }
    add(Flaw::kLongLine, cue, "The cue has a line of " + counted(longest, "character") + ".");
  }

  const CheckLimits& limits_;
  std::optional<long long> latestEnd_;
};

bool isShown(const ksImportCue& cue) {
  return cue.end > std::max(cue.start, 0LL) && !cue.isDuplicate;
}

/// Cues that begin before one that precedes them in the file.
void findOutOfOrder(std::span<const ksImportCue> cues, std::vector<Finding>& findings) {
  std::vector<ksImportCue> inFile;
  std::ranges::copy_if(cues, std::back_inserter(inFile), isShown);
  std::ranges::sort(inFile, {}, &ksImportCue::index);
  long long latestStart = std::numeric_limits<long long>::min();
  for (const ksImportCue& cue : inFile) {
    if (cue.start < latestStart) {
      findings.push_back(
          {Flaw::kOutOfOrder, cue.line, "The cue begins before one that precedes it in the file."});
    }
    latestStart = std::max(latestStart, cue.start);
  }
}

}  // namespace

std::vector<Finding> findingsIn(std::span<const ksImportCue> cues, const CheckLimits& limits) {
  LimitChecker checker(limits);
  for (const ksImportCue& cue : cues) {
    if (isShown(cue)) checker.check(cue);
  }
  if (limits.ordersCount) findOutOfOrder(cues, checker.findings);
  return std::move(checker.findings);
}

}  // namespace kssub
