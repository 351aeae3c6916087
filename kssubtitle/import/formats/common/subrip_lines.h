// What a line of a SubRip file may be read as.
#pragma once

#include <string_view>

namespace kssubtitle::importing {

/// Whether `line`, in the text of a cue, begins another cue, or one whose times cannot be read.
/// `isBelowNumber`: whether the line above it is made of digits.
bool isSubRipTimeLine(std::string_view line, bool isBelowNumber) noexcept;

}  // namespace kssubtitle::importing
