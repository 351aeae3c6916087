// Draws when the subtitles of a film are shown.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/kssub/drawing.h"

namespace kssub {

/// A cue or picture. Times are in milliseconds.
struct Bar {
  long long start;
  long long end;
  std::optional<double> speed;  ///< Characters per second; none for a picture.
  std::string hint;
};

/// A note on the file, placed in time.
struct NoteMark {
  long long time;
  std::string hint;
};

/// The contents of one file.
struct Track {
  std::string name;
  std::string summary;
  std::vector<Bar> bars;  ///< By start.
  std::vector<NoteMark> marks;
};

/// Draws rows of a minute, or longer ones if there would be too many. In a row the tracks are below
/// one another, and so are bars of a track that overlap. Runs of empty rows are left out. Throws
/// std::runtime_error if there are too many tracks for one drawing.
Drawing drawTimeline(const std::vector<Track>& tracks);

}  // namespace kssub
