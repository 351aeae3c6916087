// SubViewer 2 and SBV: two times with a comma between them, and the text on the lines below.
#include <algorithm>
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/bar_cue.h"
#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/common/time_lines.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

constexpr BarMarkup kMarkup{BarMarkup::Signs::kNone, true};

/// Whether a line only says how texts look: "[COLF]&HFFFFFF,[STYLE]bd,...", in any case.
bool isStyleLine(std::string_view line) noexcept {
  constexpr std::string_view kKeys[] = {"[COLF]", "[STYLE]", "[SIZE]", "[FONT]"};
  if (line.front() != '[') return false;
  return std::any_of(std::begin(kKeys), std::end(kKeys),
                     [line](std::string_view key) { return startsWithNoCase(line, key); });
}

class SubViewerReader {
 public:
  SubViewerReader(const FormatInput& /*input*/, CueSink& sink) : sink_(sink), cue_(kMarkup, sink) {}

  void readLine(std::string_view line, int number) {
    if (line.empty() || isStyleLine(line)) return;
    if (const auto times = isLetter(line.front()) ? std::nullopt : pairOfTimes(line)) {
      cue_.finish();
      if (!times->isAlone || !times->start.isUsual || !times->end.isUsual) {
        sink_.notes().add(ksImportProblem::kTimeRepaired, number);
      }
      cue_.begin(sink_.begin(times->start.milliseconds, times->end.milliseconds, number));
    } else if (cue_.cue() != nullptr) {
      cue_.readLine(line);
    } else if (line.front() != '[') {
      sink_.notes().add(ksImportProblem::kLineIgnored, number);
    } else if (hasDelay(line)) {
      sink_.notes().add(ksImportProblem::kUnsupported, number);
    }
  }

  void finish() { cue_.finish(); }

 private:
  /// Files disagree about the unit of a delay, and hardly any has one other than 0.
  static bool hasDelay(std::string_view line) noexcept {
    constexpr std::string_view kDelay = "[DELAY]";
    if (!startsWithNoCase(line, kDelay)) return false;
    line.remove_prefix(kDelay.size());
    return consumeInteger(line).value_or(0) != 0;
  }

  CueSink& sink_;
  BarCue cue_;
};

/// By the first line of times and nothing else: fractions have three digits in SBV. Times without
/// one fit both formats.
Likelihood likelihoodByTimes(std::string_view text, bool isSbv) noexcept {
  Likelihood found = Likelihood::kNone;
  for (const Line& line : Lines(text)) {
    const std::string_view content = withoutBlanks(line.text);
    if (content.find("-->") != content.npos) return Likelihood::kNone;
    const auto times = pairOfTimes(content);
    if (!times) continue;
    found = Likelihood::kPossible;
    if (!times->isAlone) continue;
    const bool isOf = !times->end.isUsual || (times->end.fractionDigits == 3) == isSbv;
    return isOf ? Likelihood::kLikely : found;
  }
  return found;
}

Likelihood likelihoodOfSubViewer(std::string_view text) noexcept {
  if (startsWithNoCase(withoutBlanks(text), "[INFORMATION]")) return Likelihood::kCertain;
  return likelihoodByTimes(text, false);
}

Likelihood likelihoodOfSbv(std::string_view text) noexcept { return likelihoodByTimes(text, true); }

}  // namespace

constinit const Format kSubViewer = {
    .info = {.name = "subviewer", .extensions = "sub"},
    .likelihood = likelihoodOfSubViewer,
    .read = readByLine<SubViewerReader>,
};

constinit const Format kSbv = {
    .info = {.name = "sbv", .extensions = "sbv"},
    .likelihood = likelihoodOfSbv,
    .read = readByLine<SubViewerReader>,
};

}  // namespace kssubtitle::importing
