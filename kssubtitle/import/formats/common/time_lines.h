// Lines of two times, which announce the text of a cue below them.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/times.h"

namespace kssubtitle::importing {

struct PairOfTimes {
  WrittenTime start;
  WrittenTime end;
};

/// The two times of three fields that `line` is, with a comma between them and nothing else.
std::optional<PairOfTimes> pairOfTimes(std::string_view line) noexcept;

/// Whether `line` is such a pair or holds an arrow: the text of a cue may follow, and that may
/// quote any other format.
bool mayPrecedeText(std::string_view line) noexcept;

}  // namespace kssubtitle::importing
