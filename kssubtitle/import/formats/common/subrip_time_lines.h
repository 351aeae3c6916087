// Lines such as "00:00:01,000 --> 00:00:02,000", at which the cues of SubRip begin.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

/// What is above a line decides how freely it may be read.
enum class Above { kBlank, kNumber, kOther };

struct SubRipTimeLine {
  long long start = 0;
  long long end = 0;
  bool isReadable = false;  // false if one of the times is missing
  bool isUsual = false;
};

/// The time line that `text` is, whose first character is visible. Two times of three fields with
/// the usual arrow between them are one anywhere; other spellings, and lines with a single time,
/// where `above` announces a cue.
std::optional<SubRipTimeLine> subRipTimeLineOf(std::string_view text, Above above) noexcept;

/// `text` without the white space and the invisible characters at its front, if it begins with one
/// that is not ASCII.
std::string_view withoutLeadingInvisible(std::string_view text) noexcept;

/// `line` from its first visible character on.
inline std::string_view fromFirstVisible(std::string_view line) noexcept {
  line = withoutLeadingBlanks(line);
  const bool isAscii = line.empty() || static_cast<unsigned char>(line.front()) < 0x80;
  return isAscii ? line : withoutLeadingInvisible(line);
}

}  // namespace kssubtitle::importing
