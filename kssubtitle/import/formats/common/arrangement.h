// Puts the cues that a reader found into their final form.
#pragma once

#include <vector>

#include "kssubtitle/import/ksImportCue.h"
#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/report/notes.h"

namespace kssubtitle::importing {

/// Sorts the cues, gives an end to those that have none, drops those without text, and marks those
/// that are there twice, ignoring style: ASS draws borders and fills as layers of their own. An
/// assumed end is where the next cue begins, at most `longestAssumed`
/// milliseconds after the start; the last cue's is five seconds after its start.
void arrange(std::vector<ksImportCue>& cues, long long longestAssumed, ksImportMarkup markup,
             Notes& notes);

}  // namespace kssubtitle::importing
