// Writes the text of a cue.
#include "kssubtitle/import/markup/cue_text.h"

#include <algorithm>

#include "kssubtitle/import/markup/html_output.h"
#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {

void CueText::appendToHtml(std::string_view characters) {
  line_ += characters;
  if (!runs_.empty() && runs_.back().style == style_) {
    runs_.back().end = line_.size();
  } else {
    runs_.push_back({line_.size(), style_});
  }
}

void CueText::append(char32_t c) {
  if (c == '\n' || c == '\r') return endLine();
  char bytes[4];
  append(std::string_view(bytes, static_cast<std::size_t>(writeUtf8(c, bytes) - bytes)));
}

void CueText::endHtml() {
  closeTags();
  style_ = Style();
}

void CueText::endHtmlLine() {
  const std::string_view line(line_);
  const std::size_t begin = leadingWhiteSpace(line);
  const std::size_t end = line.size() - trailingWhiteSpace(line.substr(begin));
  std::size_t at = begin;
  for (const Run& run : runs_) {
    const std::size_t runEnd = std::min(run.end, end);
    if (runEnd <= at) continue;
    putRun(run.style, line.substr(at, runEnd - at), at == begin);
    at = runEnd;
  }
  line_.clear();
  runs_.clear();
}

/// The line feed goes between the tags of two runs, or within those of a single one.
void CueText::putRun(const Style& style, std::string_view characters, bool isFirst) {
  const bool beginsLine = isFirst && !arena_.text().empty();
  const bool isNew = style != written_;
  if (isNew) closeTags();
  if (beginsLine) put("\n");
  if (isNew) {
    written_ = style;
    openTags();
  }
  putEscaped(characters, [this](std::string_view piece) { put(piece); });
}

void CueText::openTags() {
  putOpeningTags(written_, [this](std::string_view tag) { put(tag); });
}

void CueText::closeTags() {
  putClosingTags(written_, [this](std::string_view tag) { put(tag); });
  written_ = Style();
}

}  // namespace kssubtitle::importing
