// The attributes of the elements of TTML that have times.
#pragma once

#include <algorithm>
#include <pugixml.hpp>
#include <string_view>

#include "kssubtitle/import/formats/ttml/styles.h"
#include "kssubtitle/import/formats/ttml/time_expressions.h"

namespace kssubtitle::importing {

/// Elements are read no deeper than this.
inline constexpr int kMostTtmlDepth = 100;

/// The attributes of an element. Times are in milliseconds, relative to whatever they count from,
/// and negative if they are not given.
struct TtmlElement {
  double begin = -1;
  double end = -1;
  double duration = -1;
  bool hasBadTime = false;       ///< One cannot be read.
  bool hasRepairedTime = false;  ///< One has a form that the standard does not.
  bool isSequential = false;
  bool isOwnLine = false;  ///< A translation or transcription of a line of lyrics.
  bool hasSpace = false;
  bool keepsSpace = false;
  std::string_view language;
  std::string_view region;
  std::string_view styleNames;
  TtmlStyle style;

  static constexpr bool isGiven(double time) noexcept { return time >= 0; }
  bool hasTimes() const noexcept { return isGiven(begin) || hasEnd(); }
  bool hasEnd() const noexcept { return isGiven(end) || isGiven(duration); }
  void dropEnd() noexcept { end = duration = -1; }
  /// Whether it ends where it begins, or earlier.
  bool isOverAtOnce() const noexcept {
    return duration == 0 || (isGiven(end) && end <= std::max(begin, 0.0));
  }
};

TtmlElement readTtmlElement(pugi::xml_node node, const TtmlRates& rates) noexcept;

}  // namespace kssubtitle::importing
