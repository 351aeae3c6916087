// MPEG program streams: packs, and in them packets of many streams, each with its length.
#include "kssubtitle/import/pictures/program_stream.h"

#include <algorithm>
#include <array>
#include <limits>

namespace kssubtitle::importing {
namespace {

// The last bytes of start codes, which begin with 00 00 01.
constexpr unsigned kLeastId = 0xB9;  // below are parts of pictures
constexpr unsigned kProgramEnd = 0xB9;
constexpr unsigned kPack = 0xBA;
constexpr unsigned kPrivateStream1 = 0xBD;

constexpr std::size_t kPacketHeader = 6;

constexpr unsigned kNoId = 0;

/// What begins at the front of `bytes`: kNoId if it is nothing of a program stream.
unsigned idOf(UnitBytes bytes) noexcept {
  const bool isCode = bytes.size() >= 4 && bytes[0] == 0 && bytes[1] == 0 && bytes[2] == 1;
  return isCode && bytes[3] >= kLeastId ? bytes[3] : kNoId;
}

/// MPEG-2 has stuffing behind the header of a pack, MPEG-1 has a shorter header.
std::size_t packHeaderLength(UnitBytes bytes) noexcept {
  constexpr std::size_t kLength = 14;
  constexpr std::size_t kLengthMpeg1 = 12;
  if (bytes.size() < kLength) return kLengthMpeg1;
  return (bytes[4] & 0xF0) == 0x20 ? kLengthMpeg1 : kLength + (bytes[kLength - 1] & 7U);
}

/// The length of what begins at the front of `bytes`, of a pack that of its header; 0 if it is
/// nothing of a program stream.
std::size_t lengthOf(UnitBytes bytes) noexcept {
  switch (idOf(bytes)) {
    case kNoId:
      return 0;
    case kProgramEnd:
      return 4;
    case kPack:
      return packHeaderLength(bytes);
    default:
      return kPacketHeader + UnitReader(bytes, 4).word();
  }
}

/// Of a packet's header, of 33 bits among markers.
std::uint64_t readTime(UnitReader reader) noexcept {
  const std::uint64_t high = reader.byte() >> 1 & 7;
  const std::uint64_t middle = reader.word() >> 1;
  return high << 30 | middle << 15 | reader.word() >> 1;
}

/// The packet that begins at the front of `bytes`, if it is one of a subpicture stream.
std::optional<SubpicturePacket> subpicturePacket(UnitBytes bytes, std::uint64_t position) noexcept {
  constexpr std::size_t kTime = 9;  // behind fixed fields of the header
  if (idOf(bytes) != kPrivateStream1 || bytes.size() <= kTime) return std::nullopt;
  const std::size_t dataLength = bytes[kTime - 1];
  const bool hasTime = (bytes[kTime - 2] & 0x80) != 0 && dataLength >= 5;
  const std::size_t subStream = kTime + dataLength;
  if (bytes.size() <= subStream || (bytes[subStream] & 0xE0) != 0x20) return std::nullopt;
  SubpicturePacket packet{bytes[subStream] & 0x1F, position, {}, bytes.subspan(subStream + 1)};
  if (hasTime) packet.time = readTime(UnitReader(bytes, kTime));
  return packet;
}

/// How far the unit of one stream is read. A unit has one time: where another one comes, the next
/// unit begins, whether or not this one is whole.
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

std::optional<SubpicturePacket> SubpicturePackets::next() {
  constexpr std::size_t kLongestHead = 14;
  while (at_ < end_) {
    const UnitBytes head = bytes_.at(at_, kLongestHead);
    const std::size_t length = lengthOf(head);
    if (length == 0) {
      if (!findPack()) break;
      continue;
    }
    const std::uint64_t position = at_;
    at_ += length;
    if (idOf(head) != kPrivateStream1) continue;
    if (auto packet = subpicturePacket(bytes_.at(position, length), position)) return packet;
  }
  return std::nullopt;
}

/// Goes on to where the next pack begins; false if none does.
bool SubpicturePackets::findPack() {
  constexpr std::array<unsigned char, 4> kCode{0, 0, 1, kPack};
  constexpr std::size_t kOverlap = kCode.size() - 1;
  while (at_ < end_) {
    const UnitBytes bytes = bytes_.at(at_, StreamBytes::kWindow);
    const auto found = std::search(bytes.begin(), bytes.end(), kCode.begin(), kCode.end());
    at_ += static_cast<std::uint64_t>(found - bytes.begin());
    if (found != bytes.end()) return at_ < end_;
    if (bytes.size() <= kOverlap) return false;
    at_ -= kOverlap;
  }
  return false;
}

Unit readUnit(StreamBytes& bytes, std::uint64_t begin, std::uint64_t end, int stream) {
  Unit unit;
  UnitProgress progress;
  SubpicturePackets packets(bytes, begin, end);
  if (idOf(bytes.at(begin, 4)) == kNoId) return {{}, "Nothing begins at its place in the stream."};
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
                                    : "No picture of its language stands at its place.";
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
