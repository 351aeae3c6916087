// The text of a cue that is to be written, with the style of each part.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/markup/style.h"

namespace kssubtitle::importing {

/// Non-empty lines without leading or trailing white space, separated by line feeds.
struct StyledText {
  struct Run {
    std::size_t end;  ///< In `characters`.
    Style style;
  };

  std::string characters;
  std::vector<Run> runs;  ///< Adjacent and complete; neighbours differ in style.
};

/// Accepts any text: invalid UTF-8 becomes U+FFFD, and in kHtml whatever is not a tag or an entity
/// of ksImportMarkup::kHtml is text.
StyledText styledText(std::string_view text, ksImportMarkup markup);

/// Calls `write` with the style of each run, where it begins and ends, and whether a line feed
/// follows. That line feed is in no run, so that tags are closed before it.
template <typename Write>
void forEachRun(const StyledText& text, Write write) {
  std::size_t begin = 0;
  for (const StyledText::Run& run : text.runs) {
    const bool endsLine = text.characters[run.end - 1] == '\n';
    write(run.style, begin, endsLine ? run.end - 1 : run.end, endsLine);
    begin = run.end;
  }
}

}  // namespace kssubtitle::importing
