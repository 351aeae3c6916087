// The index that a stream without one would have.
#include "kssubtitle/import/pictures/stream_index.h"

#include <array>
#include <utility>

#include "kssubtitle/import/pictures/pes_packets.h"
#include "kssubtitle/import/pictures/subpicture_units.h"

namespace kssubtitle::importing {

PictureIndex indexOfStream(StreamBytes& bytes) {
  constexpr std::uint64_t kTicks = 90;  // in a millisecond
  PictureIndex index;
  std::array<IndexStream, kSubpictureStreams> streams;
  for (const FoundUnit& unit : findUnits(bytes)) {
    streams[static_cast<std::size_t>(unit.stream)].entries.push_back(
        {static_cast<long long>(unit.time / kTicks), unit.position, 0});
  }
  for (std::size_t i = 0; i < streams.size(); ++i) {
    streams[i].number = static_cast<int>(i);
    if (!streams[i].entries.empty()) index.streams.push_back(std::move(streams[i]));
  }
  return index;
}

}  // namespace kssubtitle::importing
