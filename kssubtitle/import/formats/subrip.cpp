// SubRip. Cues are found by their time lines: everything else in a file may be missing or wrong.
#include <optional>
#include <string_view>
#include <vector>

#include "kssubtitle/import/formats/common/subrip_time_lines.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/subrip_tags.h"
#include "kssubtitle/import/markup/white_space.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

/// A line of digits, which may be the number of a cue.
struct NumberLine {
  int line;
  std::size_t begin;
  long long value;
  bool hasBlankAbove;
};

/// The value of digits, of which the first eighteen count.
long long valueOf(std::string_view digits) noexcept {
  constexpr std::size_t kMostDigits = 18;
  long long value = 0;
  for (const char c : digits.substr(0, kMostDigits)) value = value * 10 + (c - '0');
  return value;
}

/// Notes what is wrong with the numbers of the cues.
class Numbering {
 public:
  explicit Numbering(Notes& notes) noexcept : notes_(notes) {}

  void count(const NumberLine& number) {
    if (hasAny_ && number.value == last_) {
      notes_.add(ksImportProblem::kNumberRepeated, number.line);
    } else if (hasAny_ && number.value < last_) {
      notes_.add(ksImportProblem::kNumberDecreasing, number.line);
    }
    last_ = number.value;
    hasAny_ = true;
  }
  void countMissing(int line) { missing_.push_back(line); }
  bool isContinuedBy(const NumberLine& number) const noexcept {
    return hasAny_ && number.value == last_ + 1;
  }
  /// A file without any number lacks none.
  void finish() {
    if (!hasAny_) return;
    for (const int line : missing_) notes_.add(ksImportProblem::kNumberMissing, line);
  }

 private:
  Notes& notes_;
  bool hasAny_ = false;
  long long last_ = 0;
  std::vector<int> missing_;
};

class SubRipReader {
 public:
  SubRipReader(const FormatInput& input, CueSink& sink)
      : input_(input), sink_(sink), numbering_(sink.notes()) {}

  void read() {
    for (const Line& line : input_.lines()) readLine(line);
    finishLastCue();
    numbering_.finish();
  }

 private:
  void readLine(const Line& line) {
    const std::string_view text = fromFirstVisible(line.text);
    if (text.empty()) {
      above_ = Above::kBlank;
      return;
    }
    const auto digits = text.substr(0, text.size() - trailingWhiteSpace(text));
    if (isNumber(digits)) return readNumber(line, digits);
    if (const auto timeLine = subRipTimeLineOf(text, above_)) return beginCue(line, *timeLine);
    readText(line);
  }

  void readText(const Line& line) {
    if (!isInCue_) sink_.notes().add(ksImportProblem::kLineIgnored, line.number);
    number_.reset();
    above_ = Above::kOther;
  }

  /// A number that continues the numbering may announce a cue that was cut off.
  void readNumber(const Line& line, std::string_view digits) {
    const NumberLine number{line.number, line.begin, valueOf(digits), above_ == Above::kBlank};
    if (number.hasBlankAbove && !cutOff_ && numbering_.isContinuedBy(number)) cutOff_ = number;
    number_ = number;
    above_ = Above::kNumber;
  }

  /// Whether the last number is that of the time line here. It may be further up, but then it must
  /// follow a blank line.
  bool isAnnounced() const noexcept {
    return number_ && (above_ == Above::kNumber || number_->hasBlankAbove);
  }

  void beginCue(const Line& line, const SubRipTimeLine& times) {
    const bool isNumbered = isAnnounced();
    finishCue(isNumbered ? number_->begin : line.begin);
    if (isNumbered) {
      numbering_.count(*number_);
    } else {
      numbering_.countMissing(line.number);
    }
    isInCue_ = true;
    isReadable_ = times.isReadable;
    line_ = isNumbered ? number_->line : line.number;
    if (isReadable_) {
      sink_.begin(times.start, times.end, line_);
      if (!times.isUsual) sink_.notes().add(ksImportProblem::kTimeRepaired, line.number);
    } else {
      sink_.notes().add(ksImportProblem::kTimeUnreadable, line.number);
    }
    textBegin_ = std::min(line.next, input_.text.size());
    number_.reset();
    cutOff_.reset();
    above_ = Above::kOther;
  }

  void finishCue(std::size_t textEnd) {
    if (!isInCue_ || !isReadable_) return;
    const std::string_view source = input_.text.substr(textBegin_, textEnd - textBegin_);
    const TextTraits traits = writeSubRipText(source, sink_.text());
    ksImportCue& cue = sink_.cues().back();
    if (traits.alignment) cue.alignment = *traits.alignment;
    if (traits.isUnclosed) sink_.notes().add(ksImportProblem::kTagUnclosed, line_);
    sink_.finish();
  }

  /// A number at the end, after a blank line, announces a cue that is missing.
  void finishLastCue() {
    const bool isAlone = number_ && number_->hasBlankAbove;
    const std::optional<NumberLine>& end = cutOff_ ? cutOff_ : number_;
    if (isInCue_ && (cutOff_ || isAlone)) {
      sink_.notes().add(ksImportProblem::kCueCutOff, end->line);
      finishCue(end->begin);
    } else {
      finishCue(input_.text.size());
    }
  }

  const FormatInput& input_;
  CueSink& sink_;
  Numbering numbering_;
  Above above_ = Above::kBlank;
  std::optional<NumberLine> number_;  // the last line that is not blank, if it is a number
  std::optional<NumberLine>
      cutOff_;  // the first in the cue's text that may be the number of the next cue
  // The cue that is being read.
  bool isInCue_ = false;
  bool isReadable_ = false;
  int line_ = 0;
  std::size_t textBegin_ = 0;
};

Likelihood likelihoodOf(std::string_view text) noexcept {
  Likelihood likelihood = Likelihood::kNone;
  Above above = Above::kBlank;
  for (const Line& line : Lines(text)) {
    const std::string_view content = withoutTrailingBlanks(fromFirstVisible(line.text));
    if (content.empty()) {
      above = Above::kBlank;
    } else if (isNumber(content)) {
      above = Above::kNumber;
    } else {
      const auto times = subRipTimeLineOf(content, above);
      if (times && times->isUsual) return Likelihood::kLikely;
      if (times) likelihood = Likelihood::kPossible;
      above = Above::kOther;
    }
  }
  return likelihood;
}

}  // namespace

constinit const Format kSubRip = {
    .info = {.name = "subrip", .extensions = "srt", .target = ksImportTarget::kSubRip},
    .likelihood = likelihoodOf,
    .read = readWith<SubRipReader>,
};

}  // namespace kssubtitle::importing
