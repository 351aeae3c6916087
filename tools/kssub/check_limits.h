// The limits of the command `check`, and which cues exceed them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "kssubtitle/import/ksImportCue.h"

namespace kssub {

/// What is reported, and from which value on; 0: never.
struct CheckLimits {
  long long leastDuration = 500;  ///< Milliseconds that a cue is shown.
  long long leastGap = 80;        ///< Milliseconds between two cues: two frames at 25 per second.
  double mostSpeed = 25;          ///< Characters per second.
  int mostCharacters = 42;        ///< Characters in a line.
  bool ordersCount = true;        ///< Whether cues that are not in order of time are reported.
};

enum class Flaw { kFlash, kShortGap, kTooFast, kLongLine, kOutOfOrder };

struct Finding {
  Flaw flaw;
  int line;  ///< Of the cue in its file.
  std::string sentence;
};

/// What is wrong with the cues of a parser, in plain text. Cues that are never shown do not count.
std::vector<Finding> findingsIn(std::span<const ksImportCue> cues, const CheckLimits& limits);

}  // namespace kssub
