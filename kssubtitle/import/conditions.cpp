// What a file must be for the fixed readers to answer it as it is meant: the table, and what is
// looked at after the file is read.
#include "kssubtitle/import/conditions.h"

#include <algorithm>
#include <iterator>

#include "kssubtitle/import/report/report_data.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

// In the order of Condition.
constexpr ksImportCondition kRows[] = {
    {"readable", "The file cannot be read as subtitles."},
    {"format", "The file is neither SubRip nor an ASS or SSA script."},
    {"extension", "The file's name does not end in its format's extension in lower case."},
    {"encoding",
     "The text is neither UTF-8 without a mark nor UTF-16LE behind one, or not all of it can be "
     "decoded."},
    {"line ends", "A line ends in something else than one line feed, or the last one in nothing."},
    {"line count", "The file has more than 20,000 lines."},
    {"cues alone",
     "The file holds no cues, or something beside whole cues with text, each there once."},
    {"script",
     "The script is not of type v4.00+ with the usual columns, holds attached files, or a key in "
     "an unusual spelling."},
    {"numbers", "The cues are not numbered 1, 2, 3 and so on, each directly above its times."},
    {"times", "A time is not of the form 00:00:00,000 in SubRip, 0:00:00.00 in a script."},
    {"order", "The cues do not follow one another in time, each ending later than it begins."},
    {"verbatim",
     "A text is not shown as it stands in the file: tags, entities, empty lines or white space at "
     "the ends of lines are left out."},
    {"two lines", "A cue has more than two lines."},
    {"signs", "A text holds one of < > { } & \\ or a no-break space."},
    {"digits", "A line of text is made of digits alone."},
};
static_assert(std::size(kRows) == kConditions);

/// What a problem says about the conditions.
std::optional<Condition> conditionOf(ksImportProblem problem) noexcept {
  switch (problem) {
    case ksImportProblem::kNumberMissing:
    case ksImportProblem::kNumberRepeated:
    case ksImportProblem::kNumberDecreasing:
      return Condition::kNumbers;
    case ksImportProblem::kEndNotAfterStart:
    case ksImportProblem::kOverlap:
      return Condition::kOrder;
    case ksImportProblem::kTimeRepaired:
    case ksImportProblem::kTimeUnreadable:
      return Condition::kTimes;
    case ksImportProblem::kTagUnclosed:
      return Condition::kVerbatim;
    case ksImportProblem::kUndecodable:
    case ksImportProblem::kNulCharacter:
      return Condition::kEncoding;
    case ksImportProblem::kUnknownStyle:
      return std::nullopt;  // they do not look at it
    default:
      return Condition::kCuesAlone;
  }
}

void checkProblems(const Notes& notes, FailedConditions& failed) noexcept {
  for (const ksImportProblem problem : ksImportProblems()) {
    if (notes.count(problem) == 0) continue;
    if (const auto condition = conditionOf(problem)) failed.add(*condition);
  }
}

/// Where they touch, both ways of reading show the later one.
void checkOrder(std::span<const ksImportCue> cues, FailedConditions& failed) noexcept {
  const auto isOutOfOrder = [](const ksImportCue& a, const ksImportCue& b) {
    return b.start < a.end || b.index < a.index;
  };
  if (std::adjacent_find(cues.begin(), cues.end(), isOutOfOrder) != cues.end()) {
    failed.add(Condition::kOrder);
  }
}

void checkLines(std::string_view text, FailedConditions& failed) noexcept {
  std::size_t lines = 0;
  for (bool isMore = true; isMore; ++lines) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (isNumber(text.substr(0, end))) failed.add(Condition::kDigits);
    isMore = end < text.size();
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (lines > 2) failed.add(Condition::kTwoLines);
}

void checkText(std::string_view text, FailedConditions& failed) noexcept {
  constexpr std::string_view kNoBreakSpace = "\xC2\xA0";
  const bool hasSigns = text.find_first_of("<>{}&\\") != text.npos;
  if (hasSigns || text.find(kNoBreakSpace) != text.npos) failed.add(Condition::kSigns);
  checkLines(text, failed);
}

}  // namespace

bool isEncodingOfFixedReaders(std::string_view bytes, std::string_view encoding) noexcept {
  constexpr std::size_t kLooked = 256;  // that far wide readers look for a zero byte
  if (encoding == "UTF-8") return !bytes.starts_with("\xEF\xBB\xBF");
  return encoding == "UTF-16LE" && bytes.starts_with("\xFF\xFE") &&
         bytes.substr(0, kLooked).find('\0') != bytes.npos;
}

bool isExtensionOfFixedReaders(std::string_view path, std::string_view format) noexcept {
  if (path.empty()) return true;
  if (format == "subrip") return path.ends_with(".srt");
  return path.ends_with(".ass") || path.ends_with(".ssa");
}

FailedConditions failedConditions(const ReportData& data) noexcept {
  FailedConditions failed = data.notes.failed();
  const bool isRead = data.refusal == ksImportRefusal::kNone;
  if (!isRead || (data.format != "subrip" && data.format != "ass")) {
    failed = {};
    failed.add(isRead ? Condition::kFormat : Condition::kReadable);
    return failed;
  }
  checkProblems(data.notes, failed);
  if (data.cues.empty()) failed.add(Condition::kCuesAlone);
  checkOrder(data.cues, failed);
  for (const ksImportCue& cue : data.cues) checkText(cue.text, failed);
  return failed;
}

const ksImportCondition& rowOf(Condition condition) noexcept {
  return kRows[static_cast<std::size_t>(condition)];
}

}  // namespace kssubtitle::importing
