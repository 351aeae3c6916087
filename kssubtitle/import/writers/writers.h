// The writers of all formats, each in a source of its own.
#pragma once

#include <span>
#include <string>

#include "kssubtitle/import/ksImportWriter.h"
#include "kssubtitle/import/writers/styled_text.h"

namespace kssubtitle::importing {

/// A cue that every format can express: 0 <= start < end.
struct OutgoingCue {
  long long start;
  long long end;
  int alignment;  ///< As on a numeric keypad.
  StyledText text;
};
using OutgoingCues = std::span<const OutgoingCue>;

std::string writeSubRip(OutgoingCues cues);
std::string writeWebVtt(OutgoingCues cues, ksImportColors colors);
std::string writeAss(OutgoingCues cues);
std::string writeText(OutgoingCues cues);

}  // namespace kssubtitle::importing
