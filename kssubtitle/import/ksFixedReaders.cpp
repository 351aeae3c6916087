// Compares the fixed readers' answers with the import library's, and says why they differ.
#include "kssubtitle/import/ksFixedReaders.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "kssubtitle/import/ksImportParser.h"
#include "kssubtitle/import/report/report_data.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/bytes.h"
#include "kssubtitle/import/text/file_text.h"
#include "kssubtitle/import/text/lines.h"
#include "kssubtitle/manager/ksSubtitleManager.h"

namespace kssubtitle::importing {
namespace {

using Code = ksImportConditionCode;

constexpr ksImportCondition kConditions[] = {
    {Code::kReadable, "readable", "The file cannot be read as subtitles."},
    {Code::kFormat, "format", "The file is neither SubRip nor an ASS or SSA script."},
    {Code::kExtension, "extension",
     "The file's name does not end in its format's extension in lower case."},
    {Code::kEncoding, "encoding",
     "The text is neither UTF-8 without a BOM nor UTF-16LE with one, or not all of it can be "
     "decoded."},
    {Code::kLineEnds, "line ends",
     "A line ends in something other than a single line feed, or the last one in nothing."},
    {Code::kLineCount, "line count", "The file has more than 20,000 lines."},
    {Code::kCuesAlone, "cues alone",
     "The file has no cues, or something besides whole cues with text, each occurring once."},
    {Code::kScript, "script",
     "The script is not of type v4.00+ with the usual columns, has attached files, or a key in an "
     "unusual spelling."},
    {Code::kNumbers, "numbers",
     "The cues are not numbered 1, 2, 3 and so on, each directly above its times."},
    {Code::kTimes, "times",
     "A time is not of the form 00:00:00,000 in SubRip, 0:00:00.00 in a script."},
    {Code::kOrder, "order",
     "The cues do not follow one another in time, each ending later than it begins."},
    {Code::kVerbatim, "verbatim",
     "A text is not shown as it is written: tags, entities, empty lines or white space at the ends "
     "of lines are removed."},
    {Code::kTwoLines, "two lines", "A cue has more than two lines."},
    {Code::kSigns, "signs", "A text contains one of < > { } & \\ or a no-break space."},
    {Code::kDigits, "digits", "A line of text consists of digits alone."},
    {Code::kAnswers, "answers", "The fixed readers give other times or texts."},
};
static_assert(std::ranges::is_sorted(kConditions, {}, &ksImportCondition::code));
static_assert(std::size(kConditions) == static_cast<std::size_t>(Code::kAnswers) + 1);

using Codes = std::set<Code>;

std::vector<ksImportCondition> conditionsOf(const Codes& codes) {
  std::vector<ksImportCondition> conditions;
  for (const Code code : codes) conditions.push_back(kConditions[static_cast<std::size_t>(code)]);
  return conditions;
}

/// A file that the import library has read as SubRip or as a script.
struct ReadFile {
  std::string_view path;
  bool isSubRip;
  std::string_view bytes;
  std::vector<std::string_view> lines;  // decoded, without their ends
  bool endsInLineFeed;
  bool hasEndMark;  // Ctrl-Z, which the import library removes
  ksImportParser& parser;

  bool hasExtension() const noexcept {
    return isSubRip ? path.ends_with(".srt") : path.ends_with(".ass") || path.ends_with(".ssa");
  }
  bool isWide() const noexcept { return bytes.starts_with("\xFF\xFE"); }
};

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (const Line& line : Lines(text)) lines.push_back(line.text);
  return lines;
}

// Whether the answers are equal.

template <typename Record>
void addTimes(const Record& record, std::set<long long>& times) {
  if constexpr (requires { record.startTime; }) {
    times.insert({record.startTime, record.endTime});
  } else {
    times.insert({record.start, record.end});
  }
}

/// The times around which the answers of a fixed reader change.
template <typename Parser>
void addBoundaries(const char* path, std::set<long long>& times) {
  Parser parser;
  parser.Open(path);
  for (const auto& [key, record] : parser.sessions) addTimes(record, times);
}

std::set<long long> boundariesOf(const char* path, const ReadFile& file) {
  std::set<long long> times{0};
  for (const ksImportCue& cue : file.parser.cues()) times.insert({cue.start, cue.end});
  if (file.isSubRip) {
    file.isWide() ? addBoundaries<ksSrtParserU>(path, times)
                  : addBoundaries<ksSrtParser>(path, times);
  } else {
    file.isWide() ? addBoundaries<ksAssParserU>(path, times)
                  : addBoundaries<ksAssParser>(path, times);
  }
  return times;
}

template <typename Answer>
bool areEqual(const Answer& a, const Answer& b) {
  return a.start == b.start && a.end == b.end && a.text == b.text;
}

bool answersAgree(const char* path, const ReadFile& file) {
  ksSubtitleManager manager;
  if (!manager.Open(path)) return false;
  const auto agreeAt = [&](long long t) {
    return file.isWide() ? areEqual(manager.GetSubTitleU(t), file.parser.GetSubTitleU(t))
                         : areEqual(manager.GetSubTitle(t), file.parser.GetSubTitle(t));
  };
  const std::set<long long> times = boundariesOf(path, file);
  return std::ranges::all_of(
      times, [&](long long t) { return agreeAt(t - 1) && agreeAt(t) && agreeAt(t + 1); });
}

/// A SubRip text takes the square of its lines, and a script's text can take that of its brackets.
bool isAffordable(const ReadFile& file) noexcept {
  constexpr std::size_t kMostBytesMoved = std::size_t{1} << 26;
  std::size_t moved = 0;
  std::size_t textLines = 0;
  std::size_t textBytes = 0;
  for (const std::string_view line : file.lines) {
    if (!file.isSubRip) {
      const auto isOpening = [](char c) { return c == '{' || c == '<'; };
      moved += static_cast<std::size_t>(std::ranges::count_if(line, isOpening)) * line.size();
    } else if (isNumber(line)) {
      textLines = textBytes = 0;
    } else if (!line.empty()) {
      textBytes += line.size();
      moved += ++textLines + textBytes;
    }
    if (moved > kMostBytesMoved) return false;
  }
  return true;
}

// Why they differ.

bool isEncodingOfFixedReaders(const ReadFile& file, std::string_view encoding) noexcept {
  constexpr std::size_t kProbed = 256;  // how far wide readers look for a NUL byte
  if (encoding == "UTF-8") return !file.bytes.starts_with("\xEF\xBB\xBF");
  return encoding == "UTF-16LE" && file.isWide() &&
         file.bytes.substr(0, kProbed).find('\0') != file.bytes.npos;
}

void checkForm(const ReadFile& file, Codes& unmet) {
  constexpr std::size_t kMostLines = 20000;
  const ksImportReport& report = file.parser.report();
  if (!file.hasExtension()) unmet.insert(Code::kExtension);
  if (!isEncodingOfFixedReaders(file, report.encoding())) unmet.insert(Code::kEncoding);
  if (report.lineEnds() != ksImportLineEnds::kLf || !file.endsInLineFeed) {
    unmet.insert(Code::kLineEnds);
  }
  if (file.lines.size() > kMostLines) unmet.insert(Code::kLineCount);
  if (file.hasEndMark || file.parser.cues().empty()) unmet.insert(Code::kCuesAlone);
}

/// What a problem that the report counts says about the conditions.
std::optional<Code> codeOf(ksImportProblem problem) noexcept {
  switch (problem) {
    case ksImportProblem::kNumberMissing:
    case ksImportProblem::kNumberRepeated:
    case ksImportProblem::kNumberDecreasing:
      return Code::kNumbers;
    case ksImportProblem::kEndNotAfterStart:
    case ksImportProblem::kOverlap:
      return Code::kOrder;
    case ksImportProblem::kTimeRepaired:
    case ksImportProblem::kTimeUnreadable:
      return Code::kTimes;
    case ksImportProblem::kTagUnclosed:
      return Code::kVerbatim;
    case ksImportProblem::kUndecodable:
    case ksImportProblem::kNulCharacter:
      return Code::kEncoding;
    case ksImportProblem::kUnknownStyle:
      return std::nullopt;  // the fixed readers do not look at it
    default:
      return Code::kCuesAlone;
  }
}

void checkProblems(const ksImportReport& report, Codes& unmet) {
  for (const ksImportProblem problem : ksImportProblems()) {
    if (report.count(problem) == 0) continue;
    if (const auto code = codeOf(problem)) unmet.insert(*code);
  }
}

void checkText(std::string_view text, Codes& unmet) {
  constexpr std::string_view kNoBreakSpace = "\xC2\xA0";
  const bool hasSigns = text.find_first_of("<>{}&\\") != text.npos;
  if (hasSigns || text.find(kNoBreakSpace) != text.npos) unmet.insert(Code::kSigns);
  const std::vector<std::string_view> lines = linesOf(text);
  if (lines.size() > 2) unmet.insert(Code::kTwoLines);
  if (std::ranges::any_of(lines, isNumber)) unmet.insert(Code::kDigits);
}

void checkCues(std::span<const ksImportCue> cues, Codes& unmet) {
  const auto isOutOfOrder = [](const ksImportCue& a, const ksImportCue& b) {
    return b.start < a.end || b.index < a.index;
  };
  if (std::ranges::adjacent_find(cues, isOutOfOrder) != cues.end()) unmet.insert(Code::kOrder);
  for (const ksImportCue& cue : cues) checkText(cue.text, unmet);
}

/// The cues in the order of the file.
std::vector<const ksImportCue*> inFileOrder(std::span<const ksImportCue> cues) {
  std::vector<const ksImportCue*> ordered;
  ordered.reserve(cues.size());
  for (const ksImportCue& cue : cues) ordered.push_back(&cue);
  std::ranges::sort(ordered, {}, &ksImportCue::index);
  return ordered;
}

/// Whether `text` has the form of `sample`, where '0' stands for any digit.
bool hasForm(std::string_view text, std::string_view sample) noexcept {
  return std::ranges::equal(text, sample,
                            [](char c, char form) { return form == '0' ? isDigit(c) : c == form; });
}

/// SubRip by its strict grammar: a number, a line of times, lines of text, empty lines.
class SubRipGrammar {
 public:
  SubRipGrammar(const ReadFile& file, Codes& unmet) noexcept
      : lines_(file.lines), parser_(file.parser), unmet_(unmet) {}

  void check() {
    const std::vector<const ksImportCue*> cues = inFileOrder(parser_.cues());
    for (std::size_t i = 0; i < cues.size(); ++i) {
      checkCue(*cues[i], i + 1 < cues.size() ? lineOf(*cues[i + 1]) : endOfTexts());
    }
  }

 private:
  static std::size_t lineOf(const ksImportCue& cue) noexcept {
    return static_cast<std::size_t>(cue.line) - 1;
  }

  /// A number at the very end announces a cue that was cut off.
  std::size_t endOfTexts() const noexcept {
    const auto notes = parser_.report().notes();
    const auto cut = std::ranges::find(notes, ksImportProblem::kCueCutOff, &ksImportNote::problem);
    return cut == notes.end() ? lines_.size() : static_cast<std::size_t>(cut->line) - 1;
  }

  void checkCue(const ksImportCue& cue, std::size_t end) {
    std::size_t at = lineOf(cue);
    end = std::min(end, lines_.size());
    if (at >= end) return;  // the file has changed since it was opened
    if (cue.index == 0 && at > 0) unmet_.insert(Code::kCuesAlone);
    const bool isNumbered = lines_[at] == std::to_string(cue.index + 1);
    if (isNumbered) ++at;
    const auto isTimeLine = [this](std::size_t i) {
      return lines_[i].find('>') != std::string::npos;
    };
    if (!isNumbered || at == end || !isTimeLine(at)) unmet_.insert(Code::kNumbers);
    while (at < end && !isTimeLine(at)) ++at;
    if (at == end) return;
    if (!hasForm(lines_[at], "00:00:00,000 --> 00:00:00,000")) unmet_.insert(Code::kTimes);
    if (textBetween(at + 1, end) != cue.text) unmet_.insert(Code::kVerbatim);
  }

  std::string textBetween(std::size_t begin, std::size_t end) const {
    while (end > begin && lines_[end - 1].empty()) --end;
    std::string text;
    for (std::size_t i = begin; i < end; ++i) {
      if (i > begin) text += '\n';
      text += lines_[i];
    }
    return text;
  }

  const std::vector<std::string_view>& lines_;
  const ksImportParser& parser_;
  Codes& unmet_;
};

/// A script by its strict grammar: type v4.00+, the standard columns, and keys as programs write
/// them.
class AssGrammar {
 public:
  AssGrammar(const ReadFile& file, Codes& unmet)
      : lines_(file.lines), cues_(inFileOrder(file.parser.cues())), unmet_(unmet) {}

  void check() {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      const std::string_view line = withoutLeadingBlanks(lines_[i]);
      if (!line.empty()) checkLine(lines_[i], line, cueOn(static_cast<int>(i) + 1));
    }
  }

 private:
  static constexpr std::size_t kColumns = 10;

  const ksImportCue* cueOn(int line) noexcept {
    while (next_ < cues_.size() && cues_[next_]->line < line) ++next_;
    return next_ < cues_.size() && cues_[next_]->line == line ? cues_[next_] : nullptr;
  }

  void checkLine(std::string_view whole, std::string_view line, const ksImportCue* cue) {
    constexpr std::string_view kDottedI = "\xC4\xB0";  // in lower case it may be an 'i'
    const std::string_view key = line.substr(0, line.find(':'));
    if (whole.starts_with("Dialogue:")) {
      checkEvent(whole.substr(9), cue);
    } else if (lowerOf(line.front()) == 'd' || key.find(kDottedI) != key.npos ||
               startsWithNoCase(line, "[Fonts]") || startsWithNoCase(line, "[Graphics]")) {
      unmet_.insert(Code::kScript);
    } else if (equalNoCase(key, "ScriptType")) {
      isV4Plus_ = whole.starts_with("ScriptType:") && line.ends_with("4.00+");
    } else if (equalNoCase(key, "Format") && findNoCase(line, "Start") != line.npos) {
      hasUsualColumns_ = areUsual(line.substr(key.size() + 1));
    }
  }

  static bool areUsual(std::string_view format) noexcept {
    constexpr std::string_view kUsual[kColumns] = {"", "Start", "End", "Style", "",
                                                   "", "",      "",    "",      "Text"};
    for (std::size_t i = 0; i < kColumns; ++i) {
      const std::size_t end = std::min(format.find(','), format.size());
      if (!kUsual[i].empty() && !equalNoCase(withoutBlanks(format.substr(0, end)), kUsual[i])) {
        return false;
      }
      if ((end == format.size()) != (i + 1 == kColumns)) return false;
      format.remove_prefix(std::min(end + 1, format.size()));
    }
    return true;
  }

  void checkEvent(std::string_view event, const ksImportCue* cue) {
    if (!isV4Plus_ || !hasUsualColumns_) unmet_.insert(Code::kScript);
    event = withoutLeadingBlanks(event);
    for (std::size_t column = 0; column + 1 < kColumns && event.find(',') != event.npos; ++column) {
      const std::string_view value = event.substr(0, event.find(','));
      if ((column == 1 || column == 2) && !isTime(value)) unmet_.insert(Code::kTimes);
      event.remove_prefix(value.size() + 1);
    }
    if (cue != nullptr && hasUsualColumns_ && !isVerbatim(event, cue->text))
      unmet_.insert(Code::kVerbatim);
  }

  static bool isTime(std::string_view value) noexcept {
    return hasForm(value, "0:00:00.00") || hasForm(value, "00:00:00.00");
  }

  /// One line break is written as `\N`.
  static bool isVerbatim(std::string_view source, std::string_view text) {
    std::string expected(text);
    if (const std::size_t end = text.find('\n'); end != text.npos) expected.replace(end, 1, "\\N");
    return source == expected;
  }

  const std::vector<std::string_view>& lines_;
  std::vector<const ksImportCue*> cues_;
  std::size_t next_ = 0;
  Codes& unmet_;
  bool isV4Plus_ = false;
  bool hasUsualColumns_ = true;
};

Codes reasonsWhyAnswersDiffer(const ReadFile& file) {
  Codes unmet;
  checkForm(file, unmet);
  checkProblems(file.parser.report(), unmet);
  checkCues(file.parser.cues(), unmet);
  file.isSubRip ? SubRipGrammar(file, unmet).check() : AssGrammar(file, unmet).check();
  if (unmet.empty()) unmet.insert(Code::kAnswers);
  return unmet;
}

}  // namespace
}  // namespace kssubtitle::importing

std::vector<ksImportCondition> ksWhyFixedReadersDiffer(const char* path,
                                                       const ksImportOptions& options) {
  using namespace kssubtitle::importing;
  ksImportOptions plain = options;
  plain.markup = ksImportMarkup::kPlain;
  ksImportParser parser;
  if (!parser.Open(path, plain)) return conditionsOf({Code::kReadable});
  const std::string_view format = parser.report().format();
  if (format != "subrip" && format != "ass") return conditionsOf({Code::kFormat});

  const std::string bytes = readFile(path, plain.maxBytes).bytes;
  ReportData data;
  std::string text = textOf(bytes, plain, data).value_or(std::string());
  std::erase(text, '\0');
  const ReadFile file{path,          format == "subrip",   bytes,
                      linesOf(text), text.ends_with('\n'), bytes.ends_with('\x1A'),
                      parser};
  // A script without events answers at 0 once its duration has been asked for.
  const bool canBeAsked = !parser.cues().empty() && file.hasExtension() &&
                          parser.report().lineEnds() == ksImportLineEnds::kLf && isAffordable(file);
  if (canBeAsked && answersAgree(path, file)) return {};
  return conditionsOf(reasonsWhyAnswersDiffer(file));
}
