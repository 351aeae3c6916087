// VobSub indexes of any content, and the streams that they lead to.
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>

#include "fuzz/excluded.h"
#include "fuzz/support.h"

namespace {

using namespace std::string_literals;

const std::string kPackStart = "\0\0\1\xBA"s;
constexpr std::size_t kPackSize = 2048;

/// Fills each pack but the last, so that short inputs hold units of several packs.
std::string streamOf(std::string_view packs) {
  std::string stream;
  while (!packs.empty()) {
    const std::string_view pack = packs.substr(0, packs.find(kPackStart, 1));
    packs.remove_prefix(pack.size());
    stream += pack.substr(0, kPackSize);
    while (!packs.empty() && stream.size() % kPackSize != 0) stream += '\xFF';
  }
  return stream;
}

/// Times at both ends of what the first entries are found by.
template <typename Map>
std::set<int> times(const Map& entries) {
  constexpr std::size_t kEnough = 40;
  std::set<int> result{-1, 0, 1, INT_MAX};
  for (const auto& [key, entry] : entries) {
    for (const int distance : {-1000, -999, -500, -499, 0, 499, 500, 999, 1000}) {
      const long long t = entry.startTime + distance;
      if (result.size() < kEnough && t == static_cast<int>(t)) result.insert(static_cast<int>(t));
    }
  }
  return result;
}

/// The unit that begins at `position` of a stream; nothing if none does.
std::optional<std::string> unitAt(const std::string& stream, std::size_t position) {
  std::string pack(kPackSize, '\0');
  const auto byte = [&](int i) {
    return static_cast<unsigned char>(pack[static_cast<std::size_t>(i)]);
  };
  const auto read = [&] {
    const std::string bytes = stream.substr(std::min(position, stream.size()), kPackSize);
    pack.replace(0, bytes.size(), bytes);
    position += bytes.size();
    return !bytes.empty();
  };
  read();
  const bool begins = pack.starts_with(kPackStart) && pack.substr(14, 4) == "\0\0\1\xBD"s &&
                      byte(21) >= 0x80 && byte(23) / 16 == 2 && byte(23 + byte(22)) == 0x20;
  if (!begins) return std::nullopt;
  const std::size_t size = byte(24 + byte(22)) * 256U + byte(25 + byte(22));
  std::string unit;
  while (unit.size() < size) {
    unit += pack.substr(24U + byte(22));
    while (read() && byte(23 + byte(22)) != 0x20) continue;
  }
  unit.resize(size);
  return unit;
}

// ---- The library's side ----

template <typename Char>
using Index = std::conditional_t<std::is_same_v<Char, char>, ksIdxParser, ksIdxParserU>;

bool open(ksIdxParser& index, const std::string& path) { return index.Open(path.c_str()); }

/// The wide class opens the file that the bytes of its path name.
bool open(ksIdxParserU& index, const std::string& path) {
  std::vector<wchar_t> storage(path.size() / sizeof(wchar_t) + 2);
  std::memcpy(storage.data(), path.data(), path.size());
  return index.Open(storage.data());
}

/// Whether the file was opened; true for one with a line that is cut short, too.
template <typename Parser>
bool isRead(Parser& index, const std::string& path) {
  try {
    return open(index, path);
  } catch (const std::out_of_range&) {
    return true;
  }
}

/// GetPacket(), and the end of the stream that it leaves open: in the C library's list of streams
/// it is between two that are opened here.
template <typename Parser>
std::unique_ptr<unsigned char[]> packetAt(Parser& index, int t, int& size, int& controlOffset) {
  std::FILE* const before = std::fopen("/dev/null", "rb");
  std::unique_ptr<unsigned char[]> packet(index.GetPacket(t, size, controlOffset));
  std::FILE* const after = std::fopen("/dev/null", "rb");
  if (after->_chain != before) std::fclose(after->_chain);
  std::fclose(after);
  std::fclose(before);
  return packet;
}

template <typename Parser>
void checkUnit(Parser& index, int t, const std::optional<std::string>& expected) {
  int size = 0;
  int controlOffset = 0;
  const auto unit = packetAt(index, t, size, controlOffset);
  check((unit != nullptr) == expected.has_value(), "a unit is found where one begins");
  if (!unit) return;
  check(std::string(unit.get(), unit.get() + size) == *expected, "a unit is that of the stream");
}

template <typename Char>
void checkLookups(Index<Char>& index, const std::string& stream) {
  constexpr bool kIsWide = sizeof(Char) > 1;
  for (const int t : times(index.sessions)) {
    const auto position = static_cast<std::size_t>(index.GetFilePos(t));
    checkUnit(index, t, kIsWide ? std::nullopt : unitAt(stream, position));
  }
}

template <typename Char>
void checkIndex(Input input) {
  static const TempDir dir;
  const std::size_t end = std::min(input.text.find(kPackStart), input.text.size());
  const std::string stream = streamOf(input.text.substr(end));
  input.text = input.text.substr(0, end);
  const std::string file = input.file().substr(input.isWide() ? 2 : 0);  // without a mark
  const std::string path = dir.write("film.idx", file);
  const auto lines = streamLines<Char, Index<Char>>(path, file, 0);
  if (neverEndsOrGrows(lines)) return;
  Index<Char> index;
  check(isRead(index, path) == !file.empty(), "all files but the empty one are read");
  if (file.empty()) std::fclose(index.file);
  check(index.lines == lines, "Open() reads the lines that ReadString() gives");
  if (!stream.empty()) index.subFilePath = wide<Char>(dir.write("film.sub", stream));
  checkLookups<Char>(index, stream);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input(data, size);
  input.isWide() ? checkIndex<wchar_t>(input) : checkIndex<char>(input);
  return 0;
}
