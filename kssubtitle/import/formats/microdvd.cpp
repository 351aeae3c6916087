// MicroDVD: lines such as "{1}{25}text", with times counted in frames.
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/frames.h"
#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/common/spans.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/bar_separated_text.h"

namespace kssubtitle::importing {
namespace {

constexpr Brackets kBraces{'{', '}'};
constexpr BarMarkup kMarkup{BarMarkup::Signs::kSlashes};

/// The frame rate that the text at the first frame states: a number alone, before "fps", or with a
/// fraction before anything, so that "2 men" is text.
std::optional<double> rateOf(std::string_view text) noexcept {
  std::string_view rest = text;
  if (rest.empty() || !isDigit(rest.front())) return std::nullopt;
  const auto rate = consumeDecimal(rest);
  if (!rate) return std::nullopt;
  const std::string_view written = text.substr(0, text.size() - rest.size());
  rest = withoutLeadingBlanks(rest);
  const bool hasFraction = written.find_first_of(".,") < written.size() - 1;
  if (!hasFraction && !rest.empty() && !startsWithNoCase(rest, "fps")) return std::nullopt;
  return usableFrameRate(*rate);
}

class MicroDvdReader {
 public:
  MicroDvdReader(const FormatInput& input, CueSink& sink)
      : input_(input), sink_(sink), writer_(kMarkup, sink.text()) {}

  void readLine(std::string_view line, int number) {
    constexpr std::string_view kDefault = "{DEFAULT}";
    if (line.empty()) return;
    if (const auto span = spanLineOf(line, kBraces)) {
      readSpan(*span, number);
    } else if (startsWithNoCase(line, kDefault)) {
      base_ = styleOfCodes(line.substr(kDefault.size()));
    } else {
      sink_.notes().add(ksImportProblem::kLineIgnored, number);
    }
  }

  void finish() { settleTimes(rate_ ? *rate_ : assumedFrameRate(input_.options, sink_.notes())); }

 private:
  void readSpan(const SpanLine& span, int number) {
    const bool isAtFirstFrame = span.start == span.end && (span.start == 0 || span.start == 1);
    if (isAtFirstFrame && !rate_ && (rate_ = rateOf(span.text))) return;
    ksImportCue* const cue = beginSpan(span.start, span.end, number, sink_);
    if (cue == nullptr) return;
    writer_.write(span.text, cue->alignment, base_);
    if (writer_.closeTags()) sink_.notes().add(ksImportProblem::kTagUnclosed, number);
    sink_.finish();
  }

  /// Cues hold frames until the rate is known. Frames of 12 digits are in range.
  void settleTimes(double rate) {
    for (ksImportCue& cue : sink_.cues()) {
      cue.start = millisecondsOf(static_cast<double>(cue.start), rate).value_or(0);
      cue.end = millisecondsOf(static_cast<double>(cue.end), rate).value_or(0);
    }
  }

  const FormatInput& input_;
  CueSink& sink_;
  BarWriter writer_;
  std::optional<double> rate_;
  Style base_;
};

Likelihood likelihoodOf(std::string_view text) noexcept { return likelihoodOfSpans(text, kBraces); }

}  // namespace

constinit const Format kMicroDvd = {
    .info = {.name = "microdvd", .extensions = "sub txt"},
    .likelihood = likelihoodOf,
    .read = readByLine<MicroDvdReader>,
    .longestAssumed = kUpToTheNext,
};

}  // namespace kssubtitle::importing
