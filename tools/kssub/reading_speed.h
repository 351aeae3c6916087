// How fast a cue is to be read.
#pragma once

#include <cstddef>
#include <string_view>

#include "kssubtitle/import/ksImportCue.h"

namespace kssub {

/// Code points, line feeds not counted. `text` is UTF-8.
std::size_t countCharacters(std::string_view text);

/// The characters of the cue's plain text, line feeds not counted, for each second that it is
/// shown; 0 if it is never shown.
double charactersPerSecond(const ksImportCue& cue);

}  // namespace kssub
