// Puts subpicture units together: one may take several packets, with those of others between them.
#include "kssubtitle/import/pictures/subpicture_units.h"

#include <array>
#include <limits>
#include <optional>

#include "kssubtitle/import/pictures/pes_packets.h"

namespace kssubtitle::importing {
namespace {

/// How much of a unit has been read. A unit has one time: a packet with another one begins the next
/// unit, whether or not this one is whole.
class UnitProgress {
 public:
  bool hasBegun() const noexcept { return got_ > 0; }
  bool isWhole() const noexcept { return got_ >= kSizeBytes && got_ >= size_; }
  bool isCutBy(const SubpicturePacket& packet) const noexcept {
    return hasBegun() && packet.time && packet.time != time_;
  }
  std::size_t size() const noexcept { return size_; }

  void add(const SubpicturePacket& packet) noexcept {
    if (!hasBegun()) time_ = packet.time;
    for (std::size_t i = 0; got_ + i < kSizeBytes && i < packet.payload.size(); ++i) {
      size_ = size_ << 8 | packet.payload[i];
    }
    got_ += packet.payload.size();
  }

 private:
  static constexpr std::size_t kSizeBytes = 2;

  std::optional<std::uint64_t> time_;
  std::size_t got_ = 0;
  std::size_t size_ = 0;
};

}  // namespace

Unit readUnit(StreamBytes& bytes, std::uint64_t begin, std::uint64_t end, int stream) {
  Unit unit;
  UnitProgress progress;
  SubpicturePackets packets(bytes, begin, end);
  if (!isPacketAt(bytes, begin)) return {{}, "Nothing begins at its place in the stream."};
  while (!progress.isWhole()) {
    const auto packet = packets.next();
    if (!packet || (packet->stream == stream && progress.isCutBy(*packet))) break;
    if (packet->stream != stream) continue;
    progress.add(*packet);
    unit.bytes.insert(unit.bytes.end(), packet->payload.begin(), packet->payload.end());
  }
  unit.bytes.resize(progress.isWhole() ? progress.size() : 0);
  if (progress.isWhole()) return unit;
  unit.damage = progress.hasBegun() ? "The stream, or its part of it, ends inside it."
                                    : "There is no picture of its language at its place.";
  return unit;
}

std::vector<FoundUnit> findUnits(StreamBytes& bytes) {
  constexpr std::size_t kMostUnits = std::size_t{1} << 20;
  std::vector<FoundUnit> found;
  std::array<UnitProgress, kSubpictureStreams> progress;
  SubpicturePackets packets(bytes, 0, std::numeric_limits<std::uint64_t>::max());
  while (found.size() < kMostUnits) {
    const auto packet = packets.next();
    if (!packet) break;
    UnitProgress& unit = progress[static_cast<std::size_t>(packet->stream)];
    if (!unit.hasBegun() || unit.isWhole() || unit.isCutBy(*packet)) {
      unit = {};
      if (packet->time) found.push_back({packet->stream, packet->position, *packet->time});
    }
    unit.add(*packet);
  }
  return found;
}

}  // namespace kssubtitle::importing
