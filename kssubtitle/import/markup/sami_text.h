// The texts of SAMI, which are HTML.
#pragma once

#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// Writes the lines of a paragraph: white space between words becomes one space, `<br>` ends a
/// line, and tags are removed. Returns false if a tag that sets style is not closed.
bool writeSamiText(std::string_view text, CueText& out);

}  // namespace kssubtitle::importing
