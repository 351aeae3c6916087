// LRC: lyrics, "[00:10.50]text" on a line each, no cue with an end of its own.
#include <algorithm>
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/common/time_lines.h"
#include "kssubtitle/import/formats/common/times.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/text/lines.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

/// "[00:10.50]" or, between those brackets, its like at the front of `text`: of no fields if there
/// is none.
WrittenTime stampAtFront(std::string_view text, char opening, char closing) noexcept {
  if (!text.starts_with(opening)) return {};
  std::string_view rest = text.substr(1);
  const auto time = consumeTime(rest);
  if (!time || !consumeCharacter(rest, closing)) return {};
  const auto length = static_cast<int>(text.size() - rest.size());
  return {time->milliseconds, length, time->fields, time->form};
}

WrittenTime stampAtFront(std::string_view text) noexcept { return stampAtFront(text, '[', ']'); }

/// What stands behind the colon of "[name:value]"; nothing if the line is no such tag.
std::optional<std::string_view> tagValue(std::string_view line, std::string_view& name) noexcept {
  if (!line.starts_with('[') || !line.ends_with(']')) return std::nullopt;
  const std::size_t colon = line.find(':');
  if (colon == line.npos) return std::nullopt;
  name = withoutBlanks(line.substr(1, colon - 1));
  if (name.empty() || !std::all_of(name.begin(), name.end(), isLetter)) return std::nullopt;
  return withoutBlanks(line.substr(colon + 1, line.size() - colon - 2));
}

/// The integer that `value` is and nothing else: templates of tags stand there as they were.
std::optional<long long> offsetOf(std::string_view value) noexcept {
  const auto offset = consumeInteger(value);
  return withoutBlanks(value).empty() ? offset : std::nullopt;
}

/// The length of the stamp of a word at the front of `text`; 0 if there is none.
std::size_t wordStampLength(std::string_view text) noexcept {
  const bool isAngular = text.starts_with('<');
  if (!isAngular && !text.starts_with('[')) return 0;
  const WrittenTime stamp = isAngular ? stampAtFront(text, '<', '>') : stampAtFront(text);
  return stamp.fields > 0 ? static_cast<std::size_t>(stamp.length) : 0;
}

/// Whether a stamp stands in `text`.
bool hasStamp(std::string_view text) noexcept {
  for (std::size_t at = text.find('['); at != text.npos; at = text.find('[', at + 1)) {
    if (stampAtFront(text.substr(at)).fields > 0) return true;
  }
  return false;
}

/// `line` from the stamp on that stands behind blanks at its front, if that repeats the line too:
/// where words have stamps as well, it is of the first one. Sets `areRepeats` if it does, and so do
/// further ones. Hardly any line has such, and the others are read faster without this among them.
[[gnu::noinline]] std::string_view behindBlanks(std::string_view line, bool& areRepeats) noexcept {
  const std::string_view stamps = withoutLeadingBlanks(line);
  if (areRepeats) return stamps;
  std::string_view text = stamps;
  for (WrittenTime stamp; (stamp = stampAtFront(text)).fields > 0;) {
    text = withoutLeadingBlanks(text.substr(static_cast<std::size_t>(stamp.length)));
  }
  areRepeats = !hasStamp(text);
  return areRepeats ? stamps : line;
}

/// Writes a line without the stamps of its words. Between two blanks one stays. "[br]" ends a line:
/// DKS, of which the times are the same, has several in a cue.
void writeLyrics(std::string_view text, CueText& out) {
  constexpr std::string_view kBreak = "[br]";
  bool isBehindBlank = true;
  while (!text.empty()) {
    if (const std::size_t stamp = wordStampLength(text); stamp > 0) {
      text.remove_prefix(stamp);
      if (isBehindBlank) text = withoutLeadingBlanks(text);
      continue;
    }
    if (text.front() == '[' && startsWithNoCase(text, kBreak)) {
      out.endLine();
      text.remove_prefix(kBreak.size());
      continue;
    }
    const std::size_t length = 1 + findAny<'<', '['>(text.substr(1));
    out.append(text.substr(0, length));
    isBehindBlank = isBlank(text[length - 1]);
    text.remove_prefix(length);
  }
}

class LrcReader {
 public:
  LrcReader(const FormatInput& input, CueSink& sink) : input_(input), sink_(sink) {}

  void read() {
    for (const Line& line : input_.lines()) {
      readLine(withoutBlanks(line.text), line.number);
    }
    for (ksImportCue& cue : sink_.cues()) {
      cue.start -= offset_;
      cue.end -= offset_;
    }
  }

 private:
  void readLine(std::string_view line, int number) {
    if (line.empty()) return;
    std::string_view name;
    if (const std::size_t stamps = beginCues(line, number); stamps > 0) {
      writeLyrics(line, sink_.text());
      sink_.finishOrMark(stamps);
    } else if (const auto value = tagValue(line, name)) {
      if (equalNoCase(name, "offset")) offset_ = offsetOf(*value).value_or(offset_);
    } else {
      sink_.notes().add(ksImportProblem::kLineIgnored, number);
    }
  }

  /// Takes the stamps off the front of a line, each of which repeats it.
  std::size_t beginCues(std::string_view& line, int number) {
    // More would let a short file grow into many long cues.
    constexpr std::size_t kMostStamps = 100;
    std::size_t count = 0;
    bool areRepeats = false;
    while (line.starts_with('[')) {
      const WrittenTime stamp = stampAtFront(line);
      if (stamp.fields == 0) break;
      line.remove_prefix(static_cast<std::size_t>(stamp.length));
      if (line.starts_with(' ')) line = behindBlanks(line, areRepeats);
      if (count == kMostStamps) {
        sink_.notes().add(ksImportProblem::kUnsupported, number);
        continue;
      }
      sink_.beginWithoutEnd(stamp.milliseconds, number);
      ++count;
    }
    return count;
  }

  const FormatInput& input_;
  CueSink& sink_;
  long long offset_ = 0;  // in milliseconds; all is that much earlier
};

Likelihood likelihoodOf(std::string_view text) noexcept {
  Likelihood likelihood = Likelihood::kNone;
  for (const Line& line : Lines(text)) {
    const std::string_view content = withoutBlanks(line.text);
    std::string_view name;
    if (const WrittenTime stamp = stampAtFront(content); stamp.fields > 0) {
      // Of three fields and nothing else are the times of another format as well.
      if (stamp.fields == 2) return Likelihood::kLikely;
      likelihood = Likelihood::kPossible;
    } else if (mayPrecedeText(content)) {
      break;
    } else if (tagValue(content, name) && name.size() == 2) {
      likelihood = Likelihood::kPossible;
    }
  }
  return likelihood;
}

void read(const FormatInput& input, CueSink& sink) { LrcReader(input, sink).read(); }

}  // namespace

constinit const Format kLrc = {
    .info = {.name = "lrc", .extensions = "lrc", .isSequential = false, .hasEnds = false},
    .likelihood = likelihoodOf,
    .read = read,
    .longestAssumed = kUpToTheNext,
};

}  // namespace kssubtitle::importing
