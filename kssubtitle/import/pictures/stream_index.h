// The index that a stream without one would have.
#pragma once

#include "kssubtitle/import/pictures/index.h"
#include "kssubtitle/import/pictures/stream_bytes.h"

namespace kssubtitle::importing {

/// An entry for every unit in the stream, at the time of its packet; no streams if there are none.
PictureIndex indexOfStream(StreamBytes& bytes);

}  // namespace kssubtitle::importing
