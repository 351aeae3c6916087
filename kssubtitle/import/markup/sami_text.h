// The texts of SAMI, which are HTML.
#pragma once

#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/markup/subrip_tags.h"

namespace kssubtitle::importing {

/// Writes the lines of a paragraph: white space between words becomes one space, `<br>` ends a
/// line, tags are removed, and overrides such as "{\an8}" are read as in SubRip.
TextTraits writeSamiText(std::string_view text, CueText& out);

}  // namespace kssubtitle::importing
