// Breaks long lines of texts.
#include <algorithm>
#include <string_view>

#include "tools/kssub/convert_edits.h"
#include "tools/kssub/tagged_text.h"

namespace kssub {
namespace {

/// In code points.
std::size_t lengthOf(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

struct Word {
  std::size_t end;  // in the text
  std::size_t length;
};
using Words = std::vector<Word>;

Words wordsIn(std::string_view text, std::size_t begin, std::size_t end) {
  Words words;
  while (begin < end) {
    const std::size_t wordEnd = std::min(text.find_first_of(" \n", begin), end);
    words.push_back({wordEnd, lengthOf(text.substr(begin, wordEnd - begin))});
    begin = wordEnd + 1;
  }
  return words;
}

/// Calls `breakAfter` with each word that ends a line, except the last, if lines have at most
/// `width` characters where the words permit.
template <typename BreakAfter>
void breakLines(const Words& words, std::size_t width, BreakAfter breakAfter) {
  std::size_t length = 0;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    length += words[i].length + 1;
    if (length + words[i + 1].length <= width) continue;
    breakAfter(words[i]);
    length = 0;
  }
}

std::size_t countBreaks(const Words& words, std::size_t width) {
  std::size_t count = 0;
  breakLines(words, width, [&count](const Word&) { ++count; });
  return count;
}

/// The least width that needs no more lines than `width`, so that lines are about equally long.
std::size_t evenWidth(const Words& words, std::size_t width) {
  const std::size_t breaks = countBreaks(words, width);
  std::size_t tooNarrow = 0;
  while (width - tooNarrow > 1) {
    const std::size_t middle = tooNarrow + (width - tooNarrow) / 2;
    (countBreaks(words, middle) > breaks ? tooNarrow : width) = middle;
  }
  return width;
}

/// The end of the lines that may be joined with the one at `begin`: a line with a dash is separate.
std::size_t paragraphEnd(std::string_view text, std::size_t begin) {
  for (std::size_t at = text.find('\n', begin); at != text.npos; at = text.find('\n', at + 1)) {
    if (text.substr(at + 1).starts_with('-')) return at;
  }
  return text.size();
}

bool hasLongLine(std::string_view text, std::size_t width) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (lengthOf(text.substr(0, end)) > width) return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

void wrap(EditedCue& cue, std::size_t width) {
  TaggedText text(cue.text);
  if (!hasLongLine(text.characters(), width)) return;
  for (std::size_t begin = 0; begin < text.characters().size();) {
    const std::size_t end = paragraphEnd(text.characters(), begin);
    const Words words = wordsIn(text.characters(), begin, end);
    for (const Word& word : words) {
      if (word.end < end) text.replace(word.end, ' ');
    }
    breakLines(words, evenWidth(words, width),
               [&text](const Word& word) { text.replace(word.end, '\n'); });
    begin = end + 1;
  }
  cue.text = text.html();
}

}  // namespace

EditedCues wrapped(EditedCues cues, std::size_t width) {
  for (EditedCue& cue : cues) wrap(cue, width);
  return cues;
}

}  // namespace kssub
