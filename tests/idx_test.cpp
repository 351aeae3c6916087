// The units that VobSub indexes lead to.
#include <memory>

#include "support.h"

namespace {

/// A unit of `size` bytes: its size, its control offset, then a pattern.
std::string unit(int size, int controlOffset) {
  std::string bytes;
  for (const int word : {size, controlOffset}) {
    bytes += {static_cast<char>(word >> 8), static_cast<char>(word)};
  }
  while (bytes.size() < static_cast<std::size_t>(size)) {
    bytes += static_cast<char>(bytes.size() * 7 % 251);
  }
  return bytes;
}

class IdxUnits : public testing::Test {
 protected:
  IdxUnits() { parser.sessions[0] = {1000, 0}; }

  /// The unit found in a stream of this content; "null" if there is none.
  std::string fetch(std::string_view stream) {
    parser.subFilePath = ksString(dir.write("film.sub", stream).c_str());
    size = ctrlOffset = -1;
    const int leftOpen = nextDescriptor();
    const std::unique_ptr<unsigned char[]> bytes(parser.GetPacket(1000, size, ctrlOffset));
    EXPECT_EQ(close(leftOpen), 0);
    return bytes ? std::string(bytes.get(), bytes.get() + size) : "null";
  }

  TempDir dir;
  ksIdxParser parser;
  int size = 0;
  int ctrlOffset = 0;
};

TEST_F(IdxUnits, units_areGatheredFromTheirPacks) {
  for (const int headerDataLength : {5, 6, 14, 254, 255}) {
    const std::size_t room = static_cast<std::size_t>(2024 - headerDataLength);
    for (const std::size_t length : {std::size_t{4}, room, room + 1, 5 * room + 17}) {
      const std::string whole = unit(static_cast<int>(length), 321);
      std::string stream;
      for (std::size_t at = 0; at < length; at += room) {
        stream += pack(headerDataLength, ' ', whole.substr(at, room));
        stream += pack(3, '\x21', "another stream");
      }
      EXPECT_EQ(fetch(stream), whole) << headerDataLength << " " << length;
      EXPECT_EQ(ctrlOffset, 321);
    }
  }
}

TEST_F(IdxUnits, aStreamThatEndsEarly_givesNullOrAUnitOfItsSize) {
  const std::string stream = pack(5, ' ', unit(5000, 1));
  for (std::size_t length = 0; length < 64; ++length) {
    const std::string found = fetch(stream.substr(0, length));
    // "null", then a size that is cut short, then the whole unit.
    const std::size_t expected = length < 29 ? 4 : length < 31 ? (length - 29) * 0x1300 : 5000;
    EXPECT_EQ(found.size(), expected) << length;
    EXPECT_EQ(size == -1, found == "null") << length;
  }
}

}  // namespace
