// MPEG program streams: the packets of their subpictures, and the units that these carry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "kssubtitle/import/pictures/stream_bytes.h"
#include "kssubtitle/import/pictures/unit_reader.h"

namespace kssubtitle::importing {

/// How many subpicture streams a program stream may have.
inline constexpr int kSubpictureStreams = 32;

/// A packet of one of them.
struct SubpicturePacket {
  int stream;                         ///< Its number, from 0.
  std::uint64_t position;             ///< Where the packet begins.
  std::optional<std::uint64_t> time;  ///< In units of 1/90 ms, if it says one.
  UnitBytes payload;                  ///< Valid until the stream's bytes are asked for again.
};

/// The packets of subpictures that begin within a part of a program stream, one after the other.
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

/// A whole unit, its two size bytes first; empty if it is damaged.
struct Unit {
  std::vector<unsigned char> bytes;
  std::string_view damage;  ///< Why it is, a sentence.
};

/// Puts the unit together whose first packet is the first of subpicture stream `stream` behind
/// `begin`, from packets that begin before `end`.
Unit readUnit(StreamBytes& bytes, std::uint64_t begin, std::uint64_t end, int stream);

struct FoundUnit {
  int stream;
  std::uint64_t position;
  std::uint64_t time;  ///< In units of 1/90 ms.
};

/// The beginnings of all units of a stream that have a time, as they follow each other in the file;
/// of very many the first ones.
std::vector<FoundUnit> findUnits(StreamBytes& bytes);

}  // namespace kssubtitle::importing
