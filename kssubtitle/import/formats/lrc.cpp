// LRC: lyrics, lines such as "[00:10.50]text". No cue says when it ends.
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

/// Consumes "[00:10.50]" or, between those brackets, its like.
std::optional<WrittenTime> consumeStamp(std::string_view& text, char opening = '[',
                                        char closing = ']') noexcept {
  if (!text.starts_with(opening)) return std::nullopt;
  std::string_view rest = text.substr(1);
  const auto time = consumeTime(rest);
  if (!time || !consumeCharacter(rest, closing)) return std::nullopt;
  text = rest;
  return time;
}

/// A line such as "[ar:name]".
struct Tag {
  std::string_view name;
  std::string_view value;
};

std::optional<Tag> tagOf(std::string_view line) noexcept {
  if (!line.starts_with('[') || !line.ends_with(']')) return std::nullopt;
  const std::size_t colon = line.find(':');
  if (colon == line.npos) return std::nullopt;
  const std::string_view name = withoutBlanks(line.substr(1, colon - 1));
  if (name.empty() || !std::all_of(name.begin(), name.end(), isLetter)) return std::nullopt;
  return Tag{name, withoutBlanks(line.substr(colon + 1, line.size() - colon - 2))};
}

/// The integer that is all of `value`: the tags of templates may be left as they were.
std::optional<long long> offsetOf(std::string_view value) noexcept {
  const auto offset = consumeInteger(value);
  return withoutBlanks(value).empty() ? offset : std::nullopt;
}

/// Consumes the stamp of a word; false if there is none.
bool consumeWordStamp(std::string_view& text) noexcept {
  return consumeStamp(text, '<', '>') || consumeStamp(text);
}

bool hasStamp(std::string_view text) noexcept {
  for (std::size_t at = text.find('['); at != text.npos; at = text.find('[', at + 1)) {
    std::string_view rest = text.substr(at);
    if (consumeStamp(rest)) return true;
  }
  return false;
}

/// Whether all stamps in `text` are at its front, with or without blanks before them. Otherwise
/// they are those of words.
bool hasLeadingStampsAlone(std::string_view text) noexcept {
  do text = withoutLeadingBlanks(text);
  while (consumeStamp(text));
  return !hasStamp(text);
}

/// Writes a line without the stamps of its words, which leave no second blank behind. "[br]" ends
/// a line: files of DKS, whose times are the same, have several lines in a cue.
void writeLyrics(std::string_view text, CueText& out) {
  constexpr std::string_view kBreak = "[br]";
  bool isAfterBlank = true;
  while (!text.empty()) {
    if (consumeWordStamp(text)) {
      if (isAfterBlank) text = withoutLeadingBlanks(text);
    } else if (startsWithNoCase(text, kBreak)) {
      out.endLine();
      text.remove_prefix(kBreak.size());
    } else {
      const std::size_t length = 1 + findAny<'<', '['>(text.substr(1));
      out.append(text.substr(0, length));
      isAfterBlank = isBlank(text[length - 1]);
      text.remove_prefix(length);
    }
  }
}

class LrcReader {
 public:
  LrcReader(const FormatInput& /*input*/, CueSink& sink) : sink_(sink) {}

  void readLine(std::string_view line, int number) {
    if (line.empty()) return;
    if (const std::size_t count = beginCues(line, number); count > 0) {
      writeLyrics(line, sink_.text());
      sink_.finishOrMark(count);
    } else if (const auto tag = tagOf(line)) {
      if (equalNoCase(tag->name, "offset")) offset_ = offsetOf(tag->value).value_or(offset_);
    } else {
      sink_.notes().add(ksImportProblem::kLineIgnored, number);
    }
  }

  void finish() {
    for (ksImportCue& cue : sink_.cues()) {
      cue.start -= offset_;
      cue.end -= offset_;
    }
  }

 private:
  /// Consumes the stamps at the front of a line, each of which shows it once more.
  std::size_t beginCues(std::string_view& line, int number) {
    // More would let a short file grow into many long cues.
    constexpr std::size_t kMostStamps = 100;
    std::size_t count = 0;
    bool mayFollowBlanks = false;
    while (const auto stamp = consumeStamp(line)) {
      if (line.starts_with(' ')) {
        mayFollowBlanks = mayFollowBlanks || hasLeadingStampsAlone(line);
        if (mayFollowBlanks) line = withoutLeadingBlanks(line);
      }
      if (count == kMostStamps) {
        sink_.notes().add(ksImportProblem::kUnsupported, number);
        continue;
      }
      sink_.beginWithoutEnd(stamp->milliseconds, number);
      ++count;
    }
    return count;
  }

  CueSink& sink_;
  long long offset_ = 0;  // how much earlier all cues are, in milliseconds
};

Likelihood likelihoodOf(std::string_view text) noexcept {
  Likelihood likelihood = Likelihood::kNone;
  for (const Line& line : Lines(text)) {
    std::string_view content = withoutBlanks(line.text);
    if (const auto stamp = consumeStamp(content)) {
      // Another format has times of three fields in brackets as well.
      if (stamp->fields == 2) return Likelihood::kLikely;
      likelihood = Likelihood::kPossible;
    } else if (mayPrecedeText(content)) {
      break;
    } else if (const auto tag = tagOf(content); tag && tag->name.size() == 2) {
      likelihood = Likelihood::kPossible;
    }
  }
  return likelihood;
}

}  // namespace

constinit const Format kLrc = {
    .info = {.name = "lrc", .extensions = "lrc", .isSequential = false, .hasEnds = false},
    .likelihood = likelihoodOf,
    .read = readByLine<LrcReader>,
    .longestAssumed = kUpToTheNext,
};

}  // namespace kssubtitle::importing
