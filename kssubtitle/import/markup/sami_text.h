// The texts of SAMI, which are HTML.
#pragma once

#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// Writes the lines of a paragraph: white space between words is one space, `<br>` ends a line, and
/// no tag is text. False if a tag that sets style is not closed.
bool writeSamiText(std::string_view text, CueText& out);

}  // namespace kssubtitle::importing
