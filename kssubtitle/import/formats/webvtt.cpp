// WebVTT, by the parsing algorithm of the W3C's "WebVTT: The Web Video Text Tracks Format".
#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/webvtt_tags.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

constexpr std::string_view kArrow = "-->";
constexpr std::string_view kSignature = "WEBVTT";

/// What the standard calls ASCII white space; within a line it is no more than this.
constexpr std::string_view kWhiteSpace = " \t\f";

std::string_view withoutLeadingSpaces(std::string_view text) noexcept {
  return text.substr(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
}

/// How fractions are read.
enum class Fractions { kStandard, kTolerant };

bool consumeNext(std::string_view& text, char c) noexcept {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

/// Consumes a colon and two digits.
std::optional<long long> consumePair(std::string_view& text) noexcept {
  if (!consumeNext(text, ':')) return std::nullopt;
  const auto digits = consumeDigitsAtFront(text);
  if (!digits || digits->count != 2) return std::nullopt;
  return digits->value;
}

std::optional<long long> consumeFraction(std::string_view& text, Fractions fractions) noexcept {
  const bool isTolerant = fractions == Fractions::kTolerant;
  if (!consumeNext(text, '.') && !(isTolerant && consumeNext(text, ','))) {
    return isTolerant ? std::optional(0LL) : std::nullopt;
  }
  auto digits = consumeDigitsAtFront(text);
  if (!digits || digits->count > 3 || (digits->count < 3 && !isTolerant)) return std::nullopt;
  for (; digits->count < 3; ++digits->count) digits->value *= 10;
  return digits->value;
}

/// Consumes a time; its milliseconds.
std::optional<long long> consumeTimestamp(std::string_view& text, Fractions fractions) noexcept {
  const auto first = consumeDigitsAtFront(text);
  if (!first) return std::nullopt;
  const auto second = consumePair(text);
  if (!second) return std::nullopt;
  const bool hasHours = first->count != 2 || first->value > 59 || text.starts_with(':');
  const auto third = hasHours ? consumePair(text) : second;
  if (!third) return std::nullopt;
  const auto fraction = consumeFraction(text, fractions);
  const long long hours = hasHours ? first->value : 0;
  const long long minutes = hasHours ? *second : first->value;
  if (!fraction || minutes > 59 || *third > 59) return std::nullopt;
  return ((hours * 60 + minutes) * 60 + *third) * 1000 + *fraction;
}

/// Whether a line begins with the signature.
bool isSignature(std::string_view line) noexcept {
  if (!line.starts_with(kSignature)) return false;
  line.remove_prefix(kSignature.size());
  return line.empty() || line.front() == ' ' || line.front() == '\t';
}

/// Whether a line begins a comment, a style sheet or a region.
bool beginsNoCue(std::string_view line) noexcept {
  const std::string_view name = line.substr(0, line.find_first_of(" \t"));
  return name == "NOTE" || name == "STYLE" || name == "REGION";
}

struct Times {
  long long start = 0;
  long long end = 0;
  std::string_view settings;
};

/// Reads the times of a cue, with what follows them; false if `line` has none.
bool readTimes(std::string_view line, Fractions fractions, Times& times) noexcept {
  line = withoutLeadingSpaces(line);
  const auto start = consumeTimestamp(line, fractions);
  line = withoutLeadingSpaces(line);
  if (!start || !line.starts_with(kArrow)) return false;
  line = withoutLeadingSpaces(line.substr(kArrow.size()));
  const auto end = consumeTimestamp(line, fractions);
  if (!end) return false;
  times = {*start, *end, line};
  return true;
}

/// The row that a line setting means, from the bottom: a percentage, or the number of a line, of
/// which a picture has about eighteen; the last one is -1.
int rowOf(std::string_view value) noexcept {
  constexpr int kLines = 18;
  int number = 0;
  const auto read = std::from_chars(value.data(), value.data() + value.size(), number);
  if (read.ec != std::errc()) return 0;
  const bool isPercentage = value.find('%') != value.npos;
  if (number < 0) number = isPercentage ? 100 : std::max(0, kLines + number);
  return 2 - std::min(2, number / ((isPercentage ? 100 : kLines) / 3));
}

int columnOf(std::string_view value) noexcept {
  if (value == "start" || value == "left") return 0;
  return value == "end" || value == "right" ? 2 : 1;
}

/// The place in the picture that settings ask for.
int alignmentOf(std::string_view settings) noexcept {
  int row = 0;
  int column = 1;
  while (!(settings = withoutLeadingSpaces(settings)).empty()) {
    const std::size_t end = std::min(settings.find_first_of(kWhiteSpace), settings.size());
    const std::string_view setting = settings.substr(0, end);
    const std::string_view value = setting.substr(std::min(setting.find(':') + 1, setting.size()));
    if (setting.starts_with("line:")) row = rowOf(value);
    if (setting.starts_with("align:")) column = columnOf(value);
    settings.remove_prefix(end);
  }
  return 3 * row + column + 1;
}

/// Whether one time at least, on either side of an arrow, is written as the standard has it.
bool hasStandardTime(std::string_view text, std::size_t begin) noexcept {
  for (const Line& line : Lines(text, begin)) {
    const std::size_t arrow = line.text.find(kArrow);
    if (arrow == line.text.npos) continue;
    std::string_view start = withoutLeadingBlanks(line.text.substr(0, arrow));
    std::string_view end = withoutLeadingBlanks(line.text.substr(arrow + kArrow.size()));
    if (consumeTimestamp(start, Fractions::kStandard) && withoutBlanks(start).empty()) return true;
    if (consumeTimestamp(end, Fractions::kStandard)) return true;
  }
  return false;
}

class WebVttReader {
 public:
  WebVttReader(const FormatInput& input, CueSink& sink)
      : input_(input),
        sink_(sink),
        fractions_(hasStandardTime(input.text, input.begin) ? Fractions::kStandard
                                                            : Fractions::kTolerant) {}

  /// The header is a block in which no cue can be, up to the first line with an arrow.
  void read() {
    bool isAtBegin = true;
    for (const Line& line : input_.lines()) {
      if (isAtBegin && withoutBlanks(line.text).empty()) continue;
      if (!isAtBegin || !isSignature(line.text)) readLine(line);
      isAtBegin = false;
    }
    finishBlock(input_.text.size());
  }

 private:
  void readLine(const Line& line) {
    const bool hasArrow = line.text.find(kArrow) != line.text.npos;
    if (!hasArrow && !line.text.empty()) {
      if (linesInBlock_++ == 0) beginBlock(line);
      return;
    }
    const bool mayFollowIdentifier = !isHeader_ && !hasSeenArrow_ && linesInBlock_ <= 1;
    if (!hasArrow || !mayFollowIdentifier) finishBlock(line.begin);
    if (hasArrow) beginCue(line);
  }

  void beginBlock(const Line& line) noexcept {
    blockLine_ = line.number;
    mayBeCue_ = !isHeader_ && !beginsNoCue(line.text);
  }

  void beginCue(const Line& line) {
    hasSeenArrow_ = true;
    ++linesInBlock_;
    isInCue_ = readTimes(line.text, fractions_, times_);
    line_ = line.number;
    textBegin_ = std::min(line.next, input_.text.size());
    if (!isInCue_) sink_.notes().add(ksImportProblem::kTimeUnreadable, line.number);
  }

  void finishBlock(std::size_t end) {
    if (isInCue_) {
      if (fractions_ == Fractions::kTolerant) {
        sink_.notes().add(ksImportProblem::kTimeRepaired, line_);
      }
      sink_.begin(times_.start, times_.end, line_).alignment = alignmentOf(times_.settings);
      const std::string_view text = input_.text.substr(textBegin_, end - textBegin_);
      if (!writeWebVttText(text, sink_.text())) {
        sink_.notes().add(ksImportProblem::kTagUnclosed, line_);
      }
      sink_.finish();
    } else if (!hasSeenArrow_ && linesInBlock_ > 0 && mayBeCue_) {
      sink_.notes().add(ksImportProblem::kLineIgnored, blockLine_);
    }
    isHeader_ = false;
    hasSeenArrow_ = false;
    linesInBlock_ = 0;
    isInCue_ = false;
  }

  const FormatInput& input_;
  CueSink& sink_;
  Fractions fractions_;
  // The block that is being read.
  bool isHeader_ = true;
  bool hasSeenArrow_ = false;
  int linesInBlock_ = 0;
  int blockLine_ = 0;
  bool mayBeCue_ = false;  // if an arrow follows
  bool isInCue_ = false;
  Times times_;  // of the cue
  int line_ = 0;
  std::size_t textBegin_ = 0;
};

Likelihood likelihoodOf(std::string_view text) noexcept {
  for (const Line& line : Lines(text)) {
    if (withoutBlanks(line.text).empty()) continue;
    if (!isSignature(line.text)) break;
    return text.starts_with(kSignature) ? Likelihood::kCertain : Likelihood::kLikely;
  }
  return Likelihood::kNone;
}

/// Whether there is an arrow in `text`, and every one is between two times of the standard's form.
bool hasStandardTimesAlone(std::string_view text) noexcept {
  bool hasTimes = false;
  for (const Line& line : Lines(text)) {
    if (line.text.find(kArrow) == line.text.npos) continue;
    Times times;
    if (!readTimes(line.text, Fractions::kStandard, times)) return false;
    hasTimes = true;
  }
  return hasTimes;
}

}  // namespace

constinit const Format kWebVtt = {
    .info = {.name = "webvtt", .extensions = "vtt webvtt", .target = ksImportTarget::kWebVtt},
    .likelihood = likelihoodOf,
    .read = readWith<WebVttReader>,
    .lacksSignature = hasStandardTimesAlone,
    .signatureMissing = "The file is named and written as WebVTT, but does not begin with WEBVTT.",
    .keepsNuls = true,
};

}  // namespace kssubtitle::importing
