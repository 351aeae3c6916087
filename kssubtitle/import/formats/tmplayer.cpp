// TMPlayer and VPlayer: lines such as "00:00:10:text". No cue says when it ends.
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/common/time_lines.h"
#include "kssubtitle/import/formats/common/times.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/bar_separated_text.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

constexpr BarMarkup kMarkup{BarMarkup::Signs::kSlashes, false, true};

struct TimedLine {
  long long start = 0;
  bool goesOn = false;       ///< "00:00:10,2=text": one more line of the cue before.
  bool isAmbiguous = false;  ///< Only a blank follows the time, as it may in any text.
  std::string_view text;
};

/// Consumes the fraction of VPlayer, or the line number of TMPlayer.
bool consumeFractionOrNumber(std::string_view& text, TimedLine& line) noexcept {
  const bool mayBeNumber = text.front() == ',';
  text.remove_prefix(1);
  const auto digits = consumeDigitsAtFront(text);
  if (!digits) return false;
  if (mayBeNumber && text.starts_with('=')) {
    line.goesOn = digits->value > 1;
  } else {
    line.start += millisecondsOfFraction(*digits);
  }
  return true;
}

std::optional<TimedLine> timedLineOf(std::string_view text) noexcept {
  const bool isNegative = consumeCharacter(text, '-');
  const auto clock = consumeClock(text);
  if (!clock || clock->fields != 3 || clock->isLong || text.empty()) return std::nullopt;
  TimedLine line;
  line.start = clock->seconds * 1000;
  const bool hasMore = text.front() == '.' || text.front() == ',';
  if (hasMore && !consumeFractionOrNumber(text, line)) return std::nullopt;
  if (isNegative) line.start = -line.start;
  line.isAmbiguous = text.starts_with(' ');
  if (!line.isAmbiguous && !text.starts_with(':') && !text.starts_with('=')) return std::nullopt;
  line.text = text.substr(1);
  if (withoutLeadingBlanks(line.text).starts_with("-->")) return std::nullopt;
  return line;
}

class TmPlayerReader {
 public:
  TmPlayerReader(const FormatInput& input, CueSink& sink)
      : input_(input), sink_(sink), writer_(kMarkup, sink.text()) {}

  void read() {
    for (const Line& line : input_.lines()) {
      readLine(line);
    }
    finishCue();
  }

 private:
  void readLine(const Line& line) {
    if (withoutBlanks(line.text).empty()) return;
    const auto timed = timedLineOf(line.text);
    if (!timed) return sink_.notes().add(ksImportProblem::kLineIgnored, line.number);
    if (cue_ == nullptr || !timed->goesOn || timed->start != cue_->start) {
      finishCue();
      cue_ = &sink_.beginWithoutEnd(timed->start, line.number);
    }
    writer_.write(timed->text, cue_->alignment);
    if (writer_.closeTags()) sink_.notes().add(ksImportProblem::kTagUnclosed, line.number);
  }

  void finishCue() {
    if (cue_ != nullptr) sink_.finishOrMark();
    cue_ = nullptr;
  }

  const FormatInput& input_;
  CueSink& sink_;
  BarWriter writer_;
  ksImportCue* cue_ = nullptr;  // to which the next line may add
};

/// Prose may hold such a line: several are needed, among few others.
Likelihood likelihoodOf(std::string_view text) noexcept {
  int clear = 0;
  int ambiguous = 0;
  int others = 0;
  for (const Line& line : Lines(text)) {
    if (withoutBlanks(line.text).empty()) continue;
    const auto timed = timedLineOf(line.text);
    // The first of two times on a line, up to its separator, looks like the time of a text.
    const bool isOwn = timed && (timed->text.empty() || !isDigit(timed->text.front()));
    if (!isOwn && mayPrecedeText(line.text)) break;
    ++(!timed ? others : timed->isAmbiguous ? ambiguous : clear);
  }
  constexpr int kFew = 3;
  if (others > clear + ambiguous) return Likelihood::kNone;
  if (clear > 1) return Likelihood::kLikely;
  return clear + ambiguous >= kFew || (clear == 1 && others == 0) ? Likelihood::kPossible
                                                                  : Likelihood::kNone;
}

}  // namespace

constinit const Format kTmPlayer = {
    .info = {.name = "tmplayer", .extensions = "txt sub", .hasEnds = false},
    .likelihood = likelihoodOf,
    .read = readWith<TmPlayerReader>,
    .longestAssumed = 10000,
};

}  // namespace kssubtitle::importing
