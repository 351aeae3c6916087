// Removes descriptions of sounds from texts.
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

/// The result of a test such as iswupper_l() for a character of any script.
bool isOf(int (*test)(std::wint_t, locale_t), char32_t c) {
  static const locale_t locale = unicodeLocale();
  return test(static_cast<std::wint_t>(c), locale) != 0;
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::size_t afterBlanks(std::string_view text, std::size_t at) {
  while (at < text.size() && isBlank(text[at])) ++at;
  return at;
}

/// Whether only blanks and dashes precede `at` on its line.
bool isAtLineStart(std::string_view text, std::size_t at) {
  while (at > 0 && (isBlank(text[at - 1]) || text[at - 1] == '-')) --at;
  return at == 0 || text[at - 1] == '\n';
}

/// The end of a description at the start of a line, including a colon or a dash that follows it.
std::size_t afterSeparator(std::string_view text, std::size_t at) {
  if (text.substr(at).starts_with(':')) return at + 1;
  const std::size_t dash = afterBlanks(text, at);
  return text.substr(dash).starts_with("- ") ? dash + 1 : at;
}

/// The range, extended by white space and separators that would separate nothing.
TextRange widened(std::string_view text, TextRange range) {
  constexpr std::string_view kPunctuation = ".,;:!?\n";
  if (isAtLineStart(text, range.begin)) range.end = afterSeparator(text, range.end);
  const char before = range.begin == 0 ? '\n' : text[range.begin - 1];
  if (isBlank(before) || before == '\n') range.end = afterBlanks(text, range.end);
  const bool separatesNothing =
      range.end == text.size() || kPunctuation.find(text[range.end]) != kPunctuation.npos;
  while (separatesNothing && range.begin > 0 && isBlank(text[range.begin - 1])) --range.begin;
  return range;
}

/// The texts in brackets of one kind, with the brackets. Brackets without a letter inside, as in
/// "[1 0]", or directly after one, as in "f(x)", do not hold descriptions; unclosed ones are text.
Ranges bracketsIn(std::string_view text, char32_t open, char32_t close) {
  struct Opened {
    std::size_t at;
    std::size_t lettersBefore;
    bool followsWord;
  };
  Ranges found;
  std::vector<Opened> opened;
  std::size_t letters = 0;
  bool followsWord = false;
  for (std::size_t at = 0; at < text.size();) {
    const auto [c, size] = decodeUtf8(text.substr(at));
    if (c == open) opened.push_back({at, letters, followsWord});
    at += size;
    if (c == close && !opened.empty()) {
      const Opened& last = opened.back();
      const bool isDescription = letters > last.lettersBefore && !last.followsWord;
      if (isDescription) found.push_back(widened(text, {last.at, at}));
      opened.pop_back();
    }
    if (isOf(iswalpha_l, c)) ++letters;
    followsWord =
        open < 0x80 && isOf(iswalnum_l, c);  // scripts with wide brackets do not use spaces
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

/// The end of the name in capitals, colon included, that begins at `begin`; `begin` if none does.
std::size_t afterName(std::string_view text, std::size_t begin) {
  constexpr std::size_t kLongest = 40;
  constexpr std::u32string_view kNameCharacters = U" .'\u2019-#&/0123456789";
  const std::size_t limit = std::min(text.size(), begin + kLongest);
  int capitals = 0;
  for (std::size_t at = begin; at < limit;) {
    const auto [c, size] = decodeUtf8(text.substr(at));
    at += size;
    if (c == ':') {
      const bool isEnd = at == text.size() || isBlank(text[at]) || text[at] == '\n';
      return capitals > 1 && isEnd ? afterBlanks(text, at) : begin;
    }
    const bool isCapital = isOf(iswupper_l, c);
    if (isCapital) ++capitals;
    if (!isCapital && kNameCharacters.find(c) == kNameCharacters.npos) return begin;
  }
  return begin;
}

/// Calls `look` with the beginning of each line, that of its content after dashes and blanks, and
/// its end.
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
    const std::size_t nameEnd = afterName(text, content);
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

/// The part from `begin` to `end` without `ranges`, which are sorted.
std::string rest(std::string_view text, const Ranges& ranges, std::size_t begin, std::size_t end) {
  std::string kept;
  for (const TextRange& range : ranges) {
    if (range.begin >= end) break;
    if (range.begin > begin) kept += text.substr(begin, range.begin - begin);
    begin = std::max(begin, std::min(range.end, end));
  }
  return kept.append(text.substr(begin, end - begin));
}

/// Removes the ranges, and the lines that lose all letters and digits by that.
void remove(TaggedText& text, Ranges ranges) {
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

void removeSounds(EditedCue& cue) {
  TaggedText text(cue.text);
  const std::size_t size = text.characters().size();
  remove(text, bracketsIn(text.characters()));
  remove(text, namesIn(text.characters()));
  if (text.characters().size() == size) return;
  cue.text = text.characters().empty() ? "" : text.html();
}

}  // namespace

EditedCues withoutSounds(EditedCues cues) {
  for (EditedCue& cue : cues) removeSounds(cue);
  std::erase_if(cues, [](const EditedCue& cue) { return cue.text.empty(); });
  return cues;
}

}  // namespace kssub
