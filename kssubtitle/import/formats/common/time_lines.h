// Lines of two times, which announce the text of a cue below them.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/times.h"

namespace kssubtitle::importing {

struct PairOfTimes {
  WrittenTime start;
  WrittenTime end;
  bool isAlone;  ///< The line has nothing else.
};

/// The two times of three fields at the front of `line`, with a comma between them. Signs before
/// them and anything after either do not matter.
std::optional<PairOfTimes> pairOfTimes(std::string_view line) noexcept;

/// Whether `line` is such a pair alone or holds an arrow: the text of a cue may follow, and that
/// may quote any other format.
bool mayPrecedeText(std::string_view line) noexcept;

}  // namespace kssubtitle::importing
