// What the units of a language say of themselves.
#pragma once

#include <cstdint>
#include <vector>

#include "kssubtitle/import/ksImportPictures.h"
#include "kssubtitle/import/pictures/index.h"
#include "kssubtitle/import/pictures/stream_bytes.h"
#include "kssubtitle/import/report/notes.h"

namespace kssubtitle::importing {

/// An entry, and where its unit stands in the stream.
struct Surveyed {
  ksImportPictureEntry entry;
  std::uint64_t begin = 0;
  std::uint64_t end = 0;  // where the next one's begins
};

/// Reads the units of one language of an index, in the order of the stream, and notes what is wrong
/// with them. The entries are sorted by start, then as the index has them.
std::vector<Surveyed> surveyStream(StreamBytes& bytes, const PictureIndex& index,
                                   const IndexStream& stream, Notes& notes);

/// The size of the frame: that of the index, or the least of the usual ones that holds all entries.
Pair frameOf(const PictureIndex& index, const std::vector<Surveyed>& entries) noexcept;

}  // namespace kssubtitle::importing
