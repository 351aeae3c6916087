// The offsets of the fields of a pack.
#include "kssubtitle/parsers/vobsub/program_stream_pack.h"

#include <algorithm>

namespace kssubtitle::internal {
namespace {

constexpr std::size_t kPesHeader = 14;         // the pack header has no stuffing
constexpr std::size_t kPtsFlags = 21;          // the highest bit: a PTS is present
constexpr std::size_t kHeaderDataLength = 22;  // of the PES header data after it
constexpr std::size_t kHeaderData = 23;        // begins with the PTS; the sub-stream id follows
constexpr unsigned char kPackStart[] = {0, 0, 1, 0xBA};
constexpr unsigned char kPrivateStream1[] = {0, 0, 1, 0xBD};
constexpr unsigned char kPtsPresent = 0x80;
constexpr unsigned char kFirstSubStream = 0x20;

}  // namespace

bool ProgramStreamPack::beginsUnit() const noexcept {
  const auto holds = [this](std::size_t offset, std::span<const unsigned char> code) {
    return std::equal(code.begin(), code.end(), bytes_.begin() + offset);
  };
  constexpr unsigned char kPtsAlone = 0x2;  // the high nibble of a PTS without a DTS
  return holds(0, kPackStart) && holds(kPesHeader, kPrivateStream1) &&
         (bytes_[kPtsFlags] & kPtsPresent) != 0 && bytes_[kHeaderData] >> 4 == kPtsAlone &&
         isFirstSubStream();
}

bool ProgramStreamPack::isFirstSubStream() const noexcept {
  return bytes_[kHeaderData + headerDataLength()] == kFirstSubStream;
}

std::span<const unsigned char> ProgramStreamPack::payload() const noexcept {
  return std::span(bytes_).subspan(kHeaderData + headerDataLength() + 1);
}

std::size_t ProgramStreamPack::headerDataLength() const noexcept {
  return bytes_[kHeaderDataLength];
}

int ProgramStreamPack::word(std::size_t offset) const noexcept {
  return payload()[offset] << 8 | payload()[offset + 1];
}

}  // namespace kssubtitle::internal
