// MPsub: how long to wait after the cue before and how long to show the text on the lines below.
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/bar_cue.h"
#include "kssubtitle/import/formats/common/frames.h"
#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/common/time_lines.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

constexpr BarMarkup kMarkup;

struct WaitLine {
  double wait;
  double duration;
};

constexpr bool isComment(std::string_view line) noexcept { return line.starts_with('#'); }

/// Two numbers, and nothing else but a comment.
std::optional<WaitLine> waitLineOf(std::string_view line) noexcept {
  const auto wait = consumeDecimal(line);
  if (!wait || line.empty() || !isBlank(line.front())) return std::nullopt;
  const auto duration = consumeDecimal(line);
  line = withoutLeadingBlanks(line);
  if (!duration || !(line.empty() || isComment(line))) return std::nullopt;
  return WaitLine{*wait, *duration};
}

/// The units in a second that a FORMAT line states: 1 for TIME, or a number of frames. Nothing if
/// it is not such a line, 0 if its value makes no sense. A value ends at white space or '#'.
std::optional<double> unitsOf(std::string_view line) noexcept {
  constexpr std::string_view kFormat = "FORMAT";
  if (!startsWithNoCase(line, kFormat)) return std::nullopt;
  line.remove_prefix(kFormat.size());
  if (!consumeCharacter(line, '=')) return std::nullopt;
  line = withoutLeadingBlanks(line);
  if (equalNoCase(line.substr(0, line.find_first_of(" \t\r\v\f#")), "TIME")) return 1;
  const auto rate = consumeDecimal(line);
  return rate ? usableFrameRate(*rate).value_or(0) : 0;
}

class MpsubReader {
 public:
  MpsubReader(const FormatInput& input, CueSink& sink)
      : input_(input), sink_(sink), cue_(kMarkup, sink) {}

  void readLine(std::string_view line, int number) {
    if (line.empty()) return cue_.finish();
    if (cue_.cue() != nullptr) return cue_.readLine(line);
    if (const auto times = waitLineOf(line)) {
      beginCue(*times, number);
    } else if (const auto units = unitsOf(line)) {
      perSecond_ = *units > 0 ? *units : assumedFrameRate(input_.options, sink_.notes());
    } else if (!isComment(line) && (hasBegun_ || line.find('=') == line.npos)) {
      sink_.notes().add(ksImportProblem::kLineIgnored, number);
    }
  }

  void finish() { cue_.finish(); }

 private:
  /// Sums are kept in the file's own unit, so that rounding errors do not add up.
  void beginCue(const WaitLine& times, int number) {
    hasBegun_ = true;
    const double start = end_ + times.wait;
    end_ = start + times.duration;
    const auto from = millisecondsOf(start, perSecond_);
    const auto to = millisecondsOf(end_, perSecond_);
    if (!from || !to) return sink_.notes().add(ksImportProblem::kTimeUnreadable, number);
    cue_.begin(sink_.begin(*from, *to, number));
  }

  const FormatInput& input_;
  CueSink& sink_;
  double perSecond_ = 1;
  double end_ = 0;  // of the previous cue
  bool hasBegun_ = false;
  BarCue cue_;
};

Likelihood likelihoodOf(std::string_view text) noexcept {
  std::optional<double> units;
  bool hasCue = false;
  for (const Line& line : Lines(text)) {
    const std::string_view content = withoutBlanks(line.text);
    if (const auto stated = unitsOf(content)) {
      units = stated;
    } else if (waitLineOf(content)) {
      if (units.value_or(0) > 0) return Likelihood::kCertain;
      hasCue = true;
    } else if (mayPrecedeText(content)) {
      break;
    }
  }
  return units && hasCue ? Likelihood::kPossible : Likelihood::kNone;
}

}  // namespace

constinit const Format kMpsub = {
    .info = {.name = "mpsub", .extensions = "sub"},
    .likelihood = likelihoodOf,
    .read = readByLine<MpsubReader>,
};

}  // namespace kssubtitle::importing
