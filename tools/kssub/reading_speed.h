// How fast a cue must be read.
#pragma once

#include <cstddef>
#include <string_view>

#include "kssubtitle/import/ksImportCue.h"

namespace kssub {

/// The code points of `text`, which is UTF-8, without line feeds.
std::size_t countCharacters(std::string_view text);

/// The characters of the cue, which is plain text, per second that it is shown; 0 if its end is not
/// after its start.
double charactersPerSecond(const ksImportCue& cue);

}  // namespace kssub
