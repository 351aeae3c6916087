// What a line of a SubRip file may be taken for.
#pragma once

#include <string_view>

namespace kssubtitle::importing {

/// Whether `line`, in the text of a cue, begins another one, or one whose times cannot be read.
/// `isBelowNumber` tells of a line of digits directly above.
bool isSubRipTimeLine(std::string_view line, bool isBelowNumber) noexcept;

}  // namespace kssubtitle::importing
