// A film's subtitles drawn over its time.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/kssub/drawing.h"

namespace kssub {

/// Something that is shown. Times are milliseconds.
struct Bar {
  long long start;
  long long end;
  std::optional<double> speed;  ///< Characters a second; nothing for a picture.
  std::string hint;
};

/// A place where something is noted.
struct Mark {
  long long time;
  std::string hint;
};

/// What one file has.
struct Track {
  std::string name;
  std::string summary;
  std::vector<Bar> bars;  ///< By start.
  std::vector<Mark> marks;
};

/// Rows of a minute, or of longer if there would be too many, in which the tracks stand one under
/// another, and the bars of one that overlap as well. Rows without anything are left out where
/// several follow each other. Throws std::runtime_error if there are too many tracks for a picture.
Drawing drawTimeline(const std::vector<Track>& tracks);

}  // namespace kssub
