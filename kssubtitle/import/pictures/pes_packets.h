// The PES packets of subpictures in an MPEG program stream, and the times in their headers.
#pragma once

#include <cstdint>
#include <optional>

#include "kssubtitle/import/pictures/stream_bytes.h"
#include "kssubtitle/import/pictures/unit_reader.h"

namespace kssubtitle::importing {

/// The most subpicture streams that a program stream may have.
inline constexpr int kSubpictureStreams = 32;

/// A packet of one of them.
struct SubpicturePacket {
  int stream;                         ///< Its number, from 0.
  std::uint64_t position;             ///< Where the packet begins.
  std::optional<std::uint64_t> time;  ///< Its presentation time stamp in units of 1/90 ms.
  UnitBytes payload;                  ///< Valid until the stream's bytes are asked for again.
};

/// Whether a pack or a packet, of whatever kind, begins at `position`.
bool isPacketAt(StreamBytes& bytes, std::uint64_t position);

/// Reads the subpicture packets that begin within a part of a program stream.
class SubpicturePackets {
 public:
  SubpicturePackets(StreamBytes& bytes, std::uint64_t begin, std::uint64_t end) noexcept
      : bytes_(bytes), at_(begin), end_(end) {}

  std::optional<SubpicturePacket> next();

 private:
  bool findPack();

  StreamBytes& bytes_;
  std::uint64_t at_;
  std::uint64_t end_;
};

}  // namespace kssubtitle::importing
