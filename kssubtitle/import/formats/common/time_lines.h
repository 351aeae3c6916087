// Lines of two times, below which the text of a cue stands.
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

/// Whether `line` is such a pair or holds an arrow: the text of a cue may stand below, and that may
/// quote any other format.
inline bool mayPrecedeText(std::string_view line) noexcept {
  line = withoutTrailingBlanks(line);
  const bool endsInDigit = !line.empty() && isDigit(line.back());
  if (endsInDigit && line.find(',') != line.npos && pairOfTimes(line)) return true;
  return line.find("-->") != line.npos;
}

}  // namespace kssubtitle::importing
