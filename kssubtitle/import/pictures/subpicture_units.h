// Puts subpicture units together from the packets that carry them.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "kssubtitle/import/pictures/stream_bytes.h"

namespace kssubtitle::importing {

/// A whole unit, which begins with its two size bytes; empty if it is damaged.
struct Unit {
  std::vector<unsigned char> bytes;
  std::string_view damage;  ///< How it is damaged, a sentence.
};

/// Reads the unit whose first packet is the first of subpicture stream `stream` from `begin` on,
/// out of packets that begin before `end`.
Unit readUnit(StreamBytes& bytes, std::uint64_t begin, std::uint64_t end, int stream);

/// Where a unit begins.
struct FoundUnit {
  int stream;
  std::uint64_t position;
  std::uint64_t time;  ///< In units of 1/90 ms.
};

/// All units of a stream that have a time, in the order of the file; of very many the first ones.
std::vector<FoundUnit> findUnits(StreamBytes& bytes);

}  // namespace kssubtitle::importing
