// The entries of a language: when and where each picture is shown.
#pragma once

#include <cstdint>
#include <vector>

#include "kssubtitle/import/ksImportPictures.h"
#include "kssubtitle/import/pictures/index.h"
#include "kssubtitle/import/pictures/stream_bytes.h"
#include "kssubtitle/import/report/notes.h"

namespace kssubtitle::importing {

/// The part of the stream in which a unit is.
struct UnitPlace {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;  // where the unit of another entry begins
};

struct PlacedEntry {
  ksImportPictureEntry entry;
  UnitPlace place;
};

/// Reads the units of one language of an index, in the order of the stream, for what they say about
/// their pictures, and notes what is wrong with them. The entries are sorted by start, then as in
/// the index.
std::vector<PlacedEntry> readEntries(StreamBytes& bytes, const PictureIndex& index,
                                     const IndexStream& stream, Notes& notes);

/// The size of the frame: that of the index, or the smallest usual one that contains all entries.
Pair frameOf(const PictureIndex& index, const std::vector<PlacedEntry>& entries) noexcept;

}  // namespace kssubtitle::importing
