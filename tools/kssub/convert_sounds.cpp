// Finds descriptions of sounds in texts, and takes them out.
#include <algorithm>
#include <clocale>
#include <cwctype>
#include <iterator>
#include <string_view>
#include <utility>

#include "tools/kssub/convert_edits.h"
#include "tools/kssub/tagged_text.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

using Ranges = std::vector<TextRange>;

locale_t unicodeLocale() {
  const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return unicode != nullptr ? unicode : newlocale(LC_CTYPE_MASK, "C", nullptr);
}

/// What a test such as iswupper_l() says of a character of any script.
bool isOf(int (*test)(std::wint_t, locale_t), char32_t c) {
  static const locale_t locale = unicodeLocale();
  return test(static_cast<std::wint_t>(c), locale) != 0;
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::size_t behindBlanks(std::string_view text, std::size_t at) {
  while (at < text.size() && isBlank(text[at])) ++at;
  return at;
}

/// Whether only blanks and dashes stand between the beginning of the line and `at`.
bool isAtFront(std::string_view text, std::size_t at) {
  while (at > 0 && (isBlank(text[at - 1]) || text[at - 1] == '-')) --at;
  return at == 0 || text[at - 1] == '\n';
}

/// With what follows a description at the front of a line: a colon, or the dash of what is said.
std::size_t behindSeparator(std::string_view text, std::size_t at) {
  if (text.substr(at).starts_with(':')) return at + 1;
  const std::size_t dash = behindBlanks(text, at);
  return text.substr(dash).starts_with("- ") ? dash + 1 : at;
}

/// With what would part nothing.
TextRange widened(std::string_view text, TextRange range) {
  constexpr std::string_view kPunctuation = ".,;:!?\n";
  if (isAtFront(text, range.begin)) range.end = behindSeparator(text, range.end);
  const char before = range.begin == 0 ? '\n' : text[range.begin - 1];
  if (isBlank(before) || before == '\n') range.end = behindBlanks(text, range.end);
  const bool partsNothing =
      range.end == text.size() || kPunctuation.find(text[range.end]) != kPunctuation.npos;
  while (partsNothing && range.begin > 0 && isBlank(text[range.begin - 1])) --range.begin;
  return range;
}

/// What stands in brackets of one kind, and those. Without a letter within, as in "[1 0]", or
/// directly behind one, as in "f(x)", they are no description, and if they are not closed, text.
Ranges bracketsIn(std::string_view text, char32_t open, char32_t close) {
  struct Begun {
    std::size_t at;
    std::size_t lettersBefore;
    bool isBehindWord;
  };
  Ranges found;
  std::vector<Begun> begun;
  std::size_t letters = 0;
  bool isBehindWord = false;
  for (std::size_t at = 0; at < text.size();) {
    const auto [c, size] = decodeUtf8(text.substr(at));
    if (c == open) begun.push_back({at, letters, isBehindWord});
    at += size;
    if (c == close && !begun.empty()) {
      const Begun& last = begun.back();
      const bool isDescription = letters > last.lettersBefore && !last.isBehindWord;
      if (isDescription) found.push_back(widened(text, {last.at, at}));
      begun.pop_back();
    }
    if (isOf(iswalpha_l, c)) ++letters;
    isBehindWord = open < 0x80 && isOf(iswalnum_l, c);  // scripts with wide brackets have no blanks
  }
  return found;
}

Ranges bracketsIn(std::string_view text) {
  constexpr std::u32string_view kKinds = U"[]()\uFF3B\uFF3D\uFF08\uFF09";
  Ranges found;
  for (std::size_t i = 0; i < kKinds.size(); i += 2) {
    std::ranges::copy(bracketsIn(text, kKinds[i], kKinds[i + 1]), std::back_inserter(found));
  }
  return found;
}

/// Where a name in capitals with its colon ends, which begins at `begin`; `begin` if none does.
std::size_t behindName(std::string_view text, std::size_t begin) {
  constexpr std::size_t kLongest = 40;
  constexpr std::u32string_view kMarks = U" .'\u2019-#&/0123456789";
  const std::size_t limit = std::min(text.size(), begin + kLongest);
  int capitals = 0;
  for (std::size_t at = begin; at < limit;) {
    const auto [c, size] = decodeUtf8(text.substr(at));
    at += size;
    if (c == ':') {
      const bool isEnd = at == text.size() || isBlank(text[at]) || text[at] == '\n';
      return capitals > 1 && isEnd ? behindBlanks(text, at) : begin;
    }
    const bool isCapital = isOf(iswupper_l, c);
    if (isCapital) ++capitals;
    if (!isCapital && kMarks.find(c) == kMarks.npos) return begin;
  }
  return begin;
}

/// Calls `look` with where each line begins, behind dashes and blanks, and where it ends.
template <typename Look>
void forEachLine(std::string_view text, Look look) {
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::size_t content = begin;
    while (content < end && (isBlank(text[content]) || text[content] == '-')) ++content;
    look(begin, content, end);
    begin = end + 1;
  }
}

Ranges namesIn(std::string_view text) {
  Ranges found;
  forEachLine(text, [&](std::size_t /*begin*/, std::size_t content, std::size_t /*end*/) {
    const std::size_t nameEnd = behindName(text, content);
    if (nameEnd > content) found.push_back({content, nameEnd});
  });
  return found;
}

bool hasWords(std::string_view text) {
  while (!text.empty()) {
    const auto [c, size] = decodeUtf8(text);
    if (isOf(iswalnum_l, c)) return true;
    text.remove_prefix(size);
  }
  return false;
}

/// What `ranges`, by where they begin, leave of the part from `begin` to `end`.
std::string rest(std::string_view text, const Ranges& ranges, std::size_t begin, std::size_t end) {
  std::string kept;
  for (const TextRange& range : ranges) {
    if (range.begin >= end) break;
    if (range.begin > begin) kept += text.substr(begin, range.begin - begin);
    begin = std::max(begin, std::min(range.end, end));
  }
  return kept.append(text.substr(begin, end - begin));
}

/// Takes out the ranges, and the lines from which they take all letters and digits.
void takeOut(TaggedText& text, Ranges ranges) {
  const std::string_view all = text.characters();
  std::ranges::sort(ranges, {}, &TextRange::begin);
  Ranges lines;
  forEachLine(all, [&](std::size_t begin, std::size_t /*content*/, std::size_t end) {
    const std::string kept = rest(all, ranges, begin, end);
    const bool isWhole = kept.size() == end - begin;
    if (!isWhole && !hasWords(kept)) lines.push_back({begin, std::min(end + 1, all.size())});
  });
  std::ranges::copy(lines, std::back_inserter(ranges));
  text.erase(std::move(ranges));
}

void takeSoundsOut(EditedCue& cue) {
  TaggedText text(cue.text);
  const std::size_t size = text.characters().size();
  takeOut(text, bracketsIn(text.characters()));
  takeOut(text, namesIn(text.characters()));
  if (text.characters().size() == size) return;
  cue.text = text.characters().empty() ? "" : text.html();
}

}  // namespace

EditedCues withoutSounds(EditedCues cues) {
  for (EditedCue& cue : cues) takeSoundsOut(cue);
  std::erase_if(cues, [](const EditedCue& cue) { return cue.text.empty(); });
  return cues;
}

}  // namespace kssub
