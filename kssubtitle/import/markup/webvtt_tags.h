// The tags that stand in the texts of WebVTT cues.
#pragma once

#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// Writes a cue's lines without tags, of which `<i> <b> <u>` and classes that name a colour leave a
/// style. Character references become characters; the text of ruby stays where it is. False if a
/// tag does not end, which takes all that follows.
bool writeWebVttText(std::string_view text, CueText& out);

}  // namespace kssubtitle::importing
