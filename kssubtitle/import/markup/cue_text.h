// Writes the text of a cue in its final form: lines without white space at their ends, none of them
// empty, in plain text or with the small set of tags.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/markup/style.h"
#include "kssubtitle/import/markup/text_arena.h"
#include "kssubtitle/import/markup/white_space.h"

namespace kssubtitle::importing {

/// Receives the text of one cue after the other. In kHtml each run of one style gets its own tags,
/// so that the result is well formed whatever the source.
class CueText {
 public:
  CueText(TextArena& arena, ksImportMarkup markup) noexcept
      : arena_(arena), isHtml_(markup == ksImportMarkup::kHtml) {}

  /// Whether style is kept. If not, nobody needs to determine it.
  bool isHtml() const noexcept { return isHtml_; }
  /// The style of what is appended next; a new text has none.
  void setStyle(const Style& style) noexcept { style_ = style; }
  /// Appends characters (valid UTF-8, no line feed) unchanged.
  void append(std::string_view characters) {
    if (isHtml_) return appendToHtml(characters);
    if (arena_.text().size() == lineBegin_) characters.remove_prefix(leadingWhiteSpace(characters));
    put(characters);
  }
  /// Appends a scalar value; a line feed or carriage return ends the line.
  void append(char32_t c);
  void endLine() {
    if (isHtml_) return endHtmlLine();
    const std::string_view line = arena_.text().substr(lineBegin_);
    if (line.empty()) return;
    arena_.cutTo(arena_.text().size() - trailingWhiteSpace(line));
    *arena_.room(1) = '\n';
    arena_.wrote(1);
    lineBegin_ = arena_.text().size();
  }
  /// Ends the text and begins a new one. Returns the ended text, empty if it has no line.
  std::string_view finish() {
    endLine();
    if (isHtml_) {
      endHtml();
    } else if (lineBegin_ > 0) {
      arena_.cutTo(lineBegin_ - 1);  // the line feed after the last line
    }
    lineBegin_ = 0;
    return arena_.finish();
  }

 private:
  struct Run {
    std::size_t end;  // in line_
    Style style;
  };

  void put(std::string_view characters) {
    characters.copy(arena_.room(characters.size()), characters.size());
    arena_.wrote(characters.size());
  }
  void appendToHtml(std::string_view characters);
  void endHtmlLine();
  void endHtml();
  void putRun(const Style& style, std::string_view characters, bool isFirst);
  void openTags();
  void closeTags();

  TextArena& arena_;
  bool isHtml_;
  std::size_t lineBegin_ = 0;  // of the current line, in plain text
  // In kHtml: the current line, with its runs.
  Style style_;
  std::string line_;
  std::vector<Run> runs_;
  Style written_;  // whose tags are open in the output
};

}  // namespace kssubtitle::importing
