// Lines of two times, below which the text of a cue stands.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/times.h"

namespace kssubtitle::importing {

struct PairOfTimes {
  WrittenTime start;
  WrittenTime end;
};

/// The two times of three fields that `line` is, with a comma between them and nothing else.
std::optional<PairOfTimes> pairOfTimes(std::string_view line) noexcept;

}  // namespace kssubtitle::importing
