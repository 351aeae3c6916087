// SubRip: cues are found by their time lines.
#include <optional>
#include <string_view>
#include <vector>

#include "kssubtitle/import/formats/common/subrip_lines.h"
#include "kssubtitle/import/formats/common/times.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/subrip_tags.h"
#include "kssubtitle/import/markup/white_space.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/lines.h"
#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

/// What stands above a line tells how freely it may be read.
enum class Above { kBlank, kNumber, kOther };

struct TimeLine {
  long long start = 0;
  long long end = 0;
  bool isReadable = false;  // not if one of the times is missing
  bool isUsual = false;
};

constexpr std::string_view kArrow = "-->";
// Other spellings of the arrow, the longest first.
constexpr std::string_view kOtherArrows[] = {"--&gt;", "-- >", "\xE2\x80\x94>", "\xE2\x80\x93>",
                                             "->"};

/// Takes an arrow off, and the blanks before it; 0 if there is none, 1 for the usual one, else 2.
int takeArrow(std::string_view& text) noexcept {
  const std::string_view rest = withoutLeadingBlanks(text);
  if (rest.starts_with(kArrow)) {
    text = rest.substr(kArrow.size());
    return 1;
  }
  for (const std::string_view arrow : kOtherArrows) {
    if (rest.starts_with(arrow)) {
      text = rest.substr(arrow.size());
      return 2;
    }
  }
  return 0;
}

/// White space apart, characters that are not seen: most of them only set the direction of text,
/// and some editors put them in front of every line.
constexpr bool isInvisible(char32_t c) noexcept {
  return (c >= 0x200B && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

/// What begins above ASCII, from its first character on that is seen.
std::string_view withoutUnseen(std::string_view line) noexcept {
  while (!line.empty() && static_cast<unsigned char>(line.front()) >= 0x80) {
    std::size_t unseen = leadingWhiteSpace(line);
    const std::size_t length = unseen > 0 ? 0 : sequenceLength(line);
    if (length > 0 && isInvisible(codePointOf(line.substr(0, length)))) unseen = length;
    if (unseen == 0) break;
    line.remove_prefix(unseen);
  }
  return line;
}

/// `line` from its first character on that is seen.
inline std::string_view fromFirstSeen(std::string_view line) noexcept {
  line = withoutLeadingBlanks(line);
  const bool isAscii = line.empty() || static_cast<unsigned char>(line.front()) < 0x80;
  return isAscii ? line : withoutUnseen(line);
}

/// Whether a line with an arrow has a time at its front or behind the arrow.
bool isBrokenTimeLine(std::string_view text) noexcept {
  const std::size_t arrow = text.find(kArrow);
  if (arrow == text.npos) return false;
  std::string_view end = text.substr(arrow + kArrow.size());
  return consumeTime(text) || consumeTime(end);
}

/// Whether what follows a time without a fraction says that it was meant to be another one.
bool isCutShort(const WrittenTime& time, std::string_view rest) noexcept {
  return !time.isUsual && !rest.empty() && (rest.front() == ':' || isLetter(rest.front()));
}

/// The time line that `text` is. Two times of three fields with the usual arrow between them are
/// one anywhere; other spellings, and lines with one time only, where `above` announces a cue.
std::optional<TimeLine> timeLineOf(std::string_view text, Above above) noexcept {
  const std::string_view whole = text;
  const auto start = consumeTime(text);
  if (!start && above != Above::kNumber) return std::nullopt;
  const int arrow = takeArrow(text);
  if (arrow == 0) {
    return above == Above::kNumber && isBrokenTimeLine(whole) ? std::optional(TimeLine())
                                                              : std::nullopt;
  }
  auto end = consumeTime(text);
  if (end && isCutShort(*end, text)) end.reset();
  if (!start && !end) return std::nullopt;
  const bool isStrict = start && end && arrow == 1 && start->fields == 3 && end->fields == 3;
  if (!isStrict && above == Above::kOther) return std::nullopt;
  if (!(start && end) && above != Above::kNumber) return std::nullopt;
  TimeLine line;
  line.isReadable = start && end;
  if (!line.isReadable) return line;
  line.start = start->milliseconds;
  line.end = end->milliseconds;
  line.isUsual = isStrict && start->isUsual && end->isUsual;
  return line;
}

/// A line of digits, which may be the number of a cue.
struct NumberLine {
  int line = 0;
  std::size_t begin = 0;
  std::size_t next = 0;
  long long value = 0;
  bool hasBlankAbove = false;
};

/// The value of digits; those beyond the eighteenth do not count.
long long valueOf(std::string_view digits) noexcept {
  constexpr std::size_t kMostDigits = 18;
  long long value = 0;
  for (const char c : digits.substr(0, kMostDigits)) value = value * 10 + (c - '0');
  return value;
}

/// Compares the numbers of the cues with what they should be.
class Numbering {
 public:
  explicit Numbering(Notes& notes) noexcept : notes_(notes) {}

  void take(const NumberLine& number) {
    if (hasAny_ && number.value == last_) {
      notes_.add(ksImportProblem::kNumberRepeated, number.line);
    } else if (hasAny_ && number.value < last_) {
      notes_.add(ksImportProblem::kNumberDecreasing, number.line);
    }
    last_ = number.value;
    hasAny_ = true;
  }
  void miss(int line) { missing_.push_back(line); }
  bool isContinuedBy(const NumberLine& number) const noexcept {
    return hasAny_ && number.value == last_ + 1;
  }
  /// In a file without any number none is missing.
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
      : input_(input), sink_(sink), marks_(input.text), numbering_(sink.notes()) {}

  void read() {
    for (const Line& line : input_.lines()) readLine(line);
    finishLastCue();
    numbering_.finish();
  }

 private:
  void readLine(const Line& line) {
    const std::string_view text = fromFirstSeen(line.text);
    if (text.empty()) {
      above_ = Above::kBlank;
      return;
    }
    const auto digits = text.substr(0, text.size() - trailingWhiteSpace(text));
    if (isNumber(digits)) return takeNumber(line, digits);
    if (const auto timeLine = timeLineOf(text, above_)) return beginCue(line, *timeLine);
    takeText(line);
  }

  void takeText(const Line& line) {
    if (!isInCue_) sink_.notes().add(ksImportProblem::kLineIgnored, line.number);
    number_.reset();
    above_ = Above::kOther;
  }

  /// The one that continues the numbering may announce a cue that was cut off.
  void takeNumber(const Line& line, std::string_view digits) {
    NumberLine number{line.number, line.begin, line.next, valueOf(digits)};
    number.hasBlankAbove = above_ == Above::kBlank;
    if (number.hasBlankAbove && !cutOff_ && numbering_.isContinuedBy(number)) cutOff_ = number;
    number_ = number;
    above_ = Above::kNumber;
  }

  /// The line of digits above a time line, unless a blank line and text part the two.
  bool isAnnounced() const noexcept {
    return number_ && (above_ == Above::kNumber || number_->hasBlankAbove);
  }

  void beginCue(const Line& line, const TimeLine& times) {
    const bool isNumbered = isAnnounced();
    finishCue(isNumbered ? number_->begin : line.begin);
    if (isNumbered) {
      numbering_.take(*number_);
    } else {
      numbering_.miss(line.number);
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
    const TextTraits traits = writeSubRipText(source, marks_, sink_.text());
    ksImportCue& cue = sink_.cues().back();
    if (traits.alignment) cue.alignment = *traits.alignment;
    if (traits.isUnclosed) sink_.notes().add(ksImportProblem::kTagUnclosed, line_);
    sink_.finish();
  }

  /// A number at the end, behind a blank line, announces a cue that is not there any more.
  void finishLastCue() {
    const bool standsAlone = number_ && number_->hasBlankAbove;
    const std::optional<NumberLine>& end = cutOff_ ? cutOff_ : number_;
    if (isInCue_ && (cutOff_ || standsAlone)) {
      sink_.notes().add(ksImportProblem::kCueCutOff, end->line);
      finishCue(end->begin);
    } else {
      finishCue(input_.text.size());
    }
  }

  const FormatInput& input_;
  CueSink& sink_;
  SubRipMarks marks_;
  Numbering numbering_;
  Above above_ = Above::kBlank;
  std::optional<NumberLine> number_;  // the last line that is not blank, if it is one
  std::optional<NumberLine> cutOff_;  // the first in this cue's text that may be the next one's
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
    const std::string_view content = withoutTrailingBlanks(fromFirstSeen(line.text));
    if (content.empty()) {
      above = Above::kBlank;
    } else if (isNumber(content)) {
      above = Above::kNumber;
    } else {
      const auto times = timeLineOf(content, above);
      if (times && times->isUsual) return Likelihood::kLikely;
      if (times) likelihood = Likelihood::kPossible;
      above = Above::kOther;
    }
  }
  return likelihood;
}

void read(const FormatInput& input, CueSink& sink) { SubRipReader(input, sink).read(); }

}  // namespace

bool isSubRipTimeLine(std::string_view line, bool isBelowNumber) noexcept {
  return timeLineOf(fromFirstSeen(line), isBelowNumber ? Above::kNumber : Above::kOther)
      .has_value();
}

constinit const Format kSubRip = {
    .info = {.name = "subrip", .extensions = "srt", .target = ksImportTarget::kSubRip},
    .likelihood = likelihoodOf,
    .read = read,
};

}  // namespace kssubtitle::importing
