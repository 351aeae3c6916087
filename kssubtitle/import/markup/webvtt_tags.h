// Tags and character references in the texts of WebVTT cues (W3C WebVTT, section 6.4).
#pragma once

#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// Writes a cue's lines without tags, of which `<i> <b> <u>` and classes that name a colour set the
/// style. Character references become characters; ruby text stays in place. Returns false if a tag
/// is not closed by '>', so that it extends to the end.
bool writeWebVttText(std::string_view text, CueText& out);

}  // namespace kssubtitle::importing
