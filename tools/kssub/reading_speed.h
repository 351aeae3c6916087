// How fast a cue is to be read.
#pragma once

#include "kssubtitle/import/ksImportCue.h"

namespace kssub {

/// The characters of the cue's plain text, line feeds not counted, for each second that it is
/// shown; 0 if it is never shown.
double charactersPerSecond(const ksImportCue& cue);

}  // namespace kssub
