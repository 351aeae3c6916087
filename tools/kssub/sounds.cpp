// Finds descriptions of sounds in texts, and takes them out.
#include <algorithm>
#include <clocale>
#include <cwctype>
#include <string_view>
#include <utility>

#include "tools/kssub/edits.h"
#include "tools/kssub/marked_text.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

using Ranges = std::vector<TextRange>;

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

/// What stands in brackets of one kind, and those. Brackets that are not closed are text.
void findBrackets(std::string_view text, std::string_view open, std::string_view close,
                  Ranges& found) {
  Ranges begun;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view rest = text.substr(i);
    if (rest.starts_with(open)) {
      begun.push_back({i, i});
    } else if (!begun.empty() && rest.starts_with(close)) {
      found.push_back(widened(text, {begun.back().begin, i + close.size()}));
      begun.pop_back();
    }
  }
}

Ranges bracketsIn(std::string_view text) {
  Ranges found;
  findBrackets(text, "[", "]", found);
  findBrackets(text, "(", ")", found);
  findBrackets(text, "\uFF3B", "\uFF3D", found);
  findBrackets(text, "\uFF08", "\uFF09", found);
  return found;
}

bool isLowerCase(char32_t c) {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale == nullptr ? c >= 'a' && c <= 'z'
                           : iswlower_l(static_cast<std::wint_t>(c), locale) != 0;
}

bool isUpperCase(char32_t c) {
  static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return locale == nullptr ? c >= 'A' && c <= 'Z'
                           : iswupper_l(static_cast<std::wint_t>(c), locale) != 0;
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
    if (isUpperCase(c)) ++capitals;
    if (isLowerCase(c) || (!isUpperCase(c) && kMarks.find(c) == kMarks.npos)) return begin;
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

/// Lines of which only dashes are left.
Ranges emptyLinesIn(std::string_view text) {
  Ranges found;
  forEachLine(text, [&](std::size_t begin, std::size_t content, std::size_t end) {
    if (content == end) found.push_back({begin, std::min(end + 1, text.size())});
  });
  return found;
}

void takeSoundsOut(EditedCue& cue) {
  MarkedText text(cue.text);
  const std::size_t size = text.characters().size();
  text.erase(bracketsIn(text.characters()));
  text.erase(namesIn(text.characters()));
  if (text.characters().size() == size) return;
  text.erase(emptyLinesIn(text.characters()));
  cue.text = text.characters().empty() ? "" : text.html();
}

}  // namespace

EditedCues withoutSounds(EditedCues cues) {
  for (EditedCue& cue : cues) takeSoundsOut(cue);
  std::erase_if(cues, [](const EditedCue& cue) { return cue.text.empty(); });
  return cues;
}

}  // namespace kssub
