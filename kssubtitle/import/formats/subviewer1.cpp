// SubViewer 1: "[00:00:10]" on a line, below it the text, and below that the time of its end.
#include <optional>
#include <string_view>
#include <utility>

#include "kssubtitle/import/formats/common/bar_cue.h"
#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/common/time_lines.h"
#include "kssubtitle/import/formats/common/times.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

constexpr BarMarkup kMarkup{BarMarkup::Signs::kNone, true};

/// The milliseconds of a time in brackets that is all of a line.
std::optional<long long> timeOf(std::string_view line) noexcept {
  if (!consumeCharacter(line, '[')) return std::nullopt;
  const auto time = consumeTime(line);
  if (!time || time->fields != 3 || !consumeCharacter(line, ']')) return std::nullopt;
  return withoutBlanks(line).empty() ? std::optional(time->milliseconds) : std::nullopt;
}

/// "[END]", or a line of asterisks with or without words.
bool isFrame(std::string_view line) noexcept {
  return line.starts_with("***") || equalNoCase(line, "[END]");
}

class SubViewer1Reader {
 public:
  SubViewer1Reader(const FormatInput& /*input*/, CueSink& sink)
      : sink_(sink), cue_(kMarkup, sink) {}

  void readLine(std::string_view line, int number) {
    const bool isBelowKey = std::exchange(isKey_, line.starts_with('['));
    if (line.empty() || isFrame(line)) return;
    if (const auto time = timeOf(line)) {
      endCue(*time);
      start_ = *time;
      startLine_ = number;
    } else if (startLine_ > 0) {
      readText(line);
    } else if (!isKey_ && !isBelowKey) {
      sink_.notes().add(ksImportProblem::kLineIgnored, number);
    }
  }

  void finish() { cue_.finish(); }

 private:
  /// Every time ends the text above it, and begins the one below it if there is any.
  void endCue(long long end) {
    if (cue_.cue() == nullptr) return;
    cue_.cue()->end = end;
    cue_.cue()->isEndAssumed = false;
    cue_.finish();
  }

  void readText(std::string_view line) {
    if (cue_.cue() == nullptr) cue_.begin(sink_.beginWithoutEnd(start_, startLine_));
    cue_.readLine(line);
  }

  CueSink& sink_;
  long long start_ = 0;  // the last time
  int startLine_ = 0;    // 0: there was none
  bool isKey_ = false;   // the last line was in brackets: in a header its value is on the next
  BarCue cue_;
};

Likelihood likelihoodOf(std::string_view text) noexcept {
  bool isBelowTime = false;
  for (const Line& line : Lines(text)) {
    const std::string_view content = withoutBlanks(line.text);
    if (content.empty()) continue;
    if (content.starts_with("***") && findNoCase(content, "START SCRIPT") != content.npos) {
      return Likelihood::kCertain;
    }
    const bool isTime = timeOf(content).has_value();
    if (isBelowTime && !isTime && content.front() != '[') return Likelihood::kLikely;
    if (mayPrecedeText(content)) return Likelihood::kNone;
    isBelowTime = isTime;
  }
  return Likelihood::kNone;
}

}  // namespace

constinit const Format kSubViewer1 = {
    .info = {.name = "subviewer1", .extensions = "sub"},
    .likelihood = likelihoodOf,
    .read = readByLine<SubViewer1Reader>,
    .longestAssumed = kUpToTheNext,
};

}  // namespace kssubtitle::importing
