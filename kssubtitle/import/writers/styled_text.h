// The text of a cue with the style of each part, on its way into a file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/markup/style.h"

namespace kssubtitle::importing {

/// Lines that neither begin nor end in white space, none of them empty, separated by line feeds.
struct StyledText {
  struct Run {
    std::size_t end;  ///< In `characters`.
    Style style;
  };

  std::string characters;
  std::vector<Run> runs;  ///< One behind the other, up to the end; neighbours differ in style.
};

/// Any text: what is not UTF-8 becomes U+FFFD, and in kHtml anything but the tags and entities of
/// the small set is text.
StyledText styledText(std::string_view text, ksImportMarkup markup);

/// Calls `write` with the style of each run, where it begins and ends, and whether a line feed
/// follows that belongs to neither run beside it.
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
