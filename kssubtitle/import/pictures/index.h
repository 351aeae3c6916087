// The text of a VobSub index.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/pictures/index_values.h"
#include "kssubtitle/import/pictures/palette.h"
#include "kssubtitle/import/report/notes.h"

namespace kssubtitle::importing {

struct IndexEntry {
  long long time;          ///< Milliseconds, of either sign.
  std::uint64_t position;  ///< Where its unit begins in the stream.
  int line;                ///< In the index; 0 without one.
};

/// A language.
struct IndexStream {
  int number = 0;  ///< Of its subpicture stream.
  std::string language;
  std::string name;
  std::vector<IndexEntry> entries;
};

struct PictureIndex {
  Palette palette;
  Pair size;  ///< Of the frame in pixels; 0 if the index gives none.
  Pair origin;
  Pair scalePercent{100, 100};
  bool showsForcedOnly = false;
  std::optional<int> chosenStream;  ///< The number of the one that the index selects.
  std::vector<IndexStream> streams;
};

/// Reads an index line by line. What cannot be read is noted and ignored.
PictureIndex readIndex(std::string_view text, Notes& notes);

/// The position of the stream to select at first: that of the wanted language or name, else the one
/// that the index selects, else the first that has pictures; 0 without any.
std::size_t streamToSelect(const PictureIndex& index, std::string_view language);
/// Whether a stream has that language or name. True also if none is wanted, or no stream has any.
bool hasLanguage(const PictureIndex& index, std::string_view wanted);

}  // namespace kssubtitle::importing
