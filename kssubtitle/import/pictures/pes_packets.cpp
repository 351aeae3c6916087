// MPEG program streams, ISO/IEC 13818-1, section 2.5 and ISO/IEC 11172-1: packs, and in them PES
// packets of many streams, each of which gives its length.
#include "kssubtitle/import/pictures/pes_packets.h"

#include <algorithm>
#include <array>

namespace kssubtitle::importing {
namespace {

// The last bytes of start codes, which begin with 00 00 01.
constexpr unsigned kLeastId = 0xB9;  // lower ones are inside of video
constexpr unsigned kProgramEnd = 0xB9;
constexpr unsigned kPack = 0xBA;
constexpr unsigned kPrivateStream1 = 0xBD;

constexpr std::size_t kPacketHeader = 6;

constexpr unsigned kNoId = 0;

/// What `bytes` begin with; kNoId if it is not part of a program stream.
unsigned idOf(UnitBytes bytes) noexcept {
  const bool isCode = bytes.size() >= 4 && bytes[0] == 0 && bytes[1] == 0 && bytes[2] == 1;
  return isCode && bytes[3] >= kLeastId ? bytes[3] : kNoId;
}

/// In MPEG-2, stuffing follows the header of a pack; in MPEG-1, the header is shorter.
std::size_t packHeaderLength(UnitBytes bytes) noexcept {
  constexpr std::size_t kLength = 14;
  constexpr std::size_t kLengthMpeg1 = 12;
  if (bytes.size() < kLength) return kLengthMpeg1;
  return (bytes[4] & 0xF0) == 0x20 ? kLengthMpeg1 : kLength + (bytes[kLength - 1] & 7U);
}

/// The length of what `bytes` begin with, of a pack that of its header; 0 if it is not part of a
/// program stream.
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

/// A presentation time stamp: 33 bits with marker bits between them.
std::uint64_t readTimeStamp(UnitReader reader) noexcept {
  const std::uint64_t high = reader.byte() >> 1 & 7;
  const std::uint64_t middle = reader.word() >> 1;
  return high << 30 | middle << 15 | reader.word() >> 1;
}

/// The packet that `bytes` are, by its PES header, if it is one of a subpicture stream.
std::optional<SubpicturePacket> subpicturePacket(UnitBytes bytes, std::uint64_t position) noexcept {
  constexpr std::size_t kTime = 9;  // after the fixed fields of the header
  if (idOf(bytes) != kPrivateStream1 || bytes.size() <= kTime) return std::nullopt;
  const std::size_t dataLength = bytes[kTime - 1];
  const bool hasTime = (bytes[kTime - 2] & 0x80) != 0 && dataLength >= 5;
  const std::size_t subStream = kTime + dataLength;
  if (bytes.size() <= subStream || (bytes[subStream] & 0xE0) != 0x20) return std::nullopt;
  SubpicturePacket packet{bytes[subStream] & 0x1F, position, {}, bytes.subspan(subStream + 1)};
  if (hasTime) packet.time = readTimeStamp(UnitReader(bytes, kTime));
  return packet;
}

}  // namespace

bool isPacketAt(StreamBytes& bytes, std::uint64_t position) {
  return idOf(bytes.at(position, 4)) != kNoId;
}

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

/// Skips to the next pack; false if there is none.
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

}  // namespace kssubtitle::importing
