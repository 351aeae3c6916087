// What a viewer would notice of the cues of a film.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "kssubtitle/import/ksImportCue.h"

namespace kssub {

/// From where on something is noticed; 0 of anything: never.
struct CheckLimits {
  long long leastDuration = 500;  ///< Milliseconds that a cue is shown.
  long long leastGap = 80;        ///< Milliseconds between two cues: two frames of 25 a second.
  double mostSpeed = 25;          ///< Characters to read in a second.
  int mostCharacters = 42;        ///< Characters in a line.
  bool ordersCount = true;        ///< Whether cues should stand in the file by time.
};

enum class Flaw { kFlash, kShortGap, kTooFast, kLongLine, kOutOfOrder };

struct Finding {
  Flaw flaw;
  int line;  ///< Of the cue in its file.
  std::string sentence;
};

/// Of a parser's cues in plain text. Those that are never shown do not count.
std::vector<Finding> findingsIn(std::span<const ksImportCue> cues, const CheckLimits& limits);

}  // namespace kssub
