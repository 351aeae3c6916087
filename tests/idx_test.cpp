// VobSub indexes and the units that they lead to.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <thread>

#include "support.h"

namespace {

/// Changes the working directory for a while.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::filesystem::path& path) {
    std::filesystem::current_path(path);
  }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;
  ~WorkingDirectory() { std::filesystem::current_path(before_); }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
};

/// Opens an index of this content; the wide class opens a file whose name is one character.
bool open(ksIdxParser& parser, const TempDir& dir, std::string_view content) {
  return parser.Open(dir.write("film.idx", content).c_str());
}

bool open(ksIdxParserU& parser, const TempDir& dir, std::string_view content) {
  dir.write("f", Width<wchar_t>::encode(content).substr(2));
  const WorkingDirectory inside(dir.path(""));
  wchar_t path[] = L"film.idx";
  return parser.Open(path);
}

template <typename Char>
class Idx : public testing::Test {
 protected:
  static constexpr bool kNarrow = std::is_same_v<Char, char>;
  using Parser = std::conditional_t<kNarrow, ksIdxParser, ksIdxParserU>;

  /// "key startTime filePos" of every entry.
  std::string entries() const {
    std::string all;
    for (const auto& [key, entry] : parser.sessions) {
      all += (all.empty() ? "" : "; ") + std::to_string(key) + " " +
             std::to_string(entry.startTime) + " " + std::to_string(entry.filePos);
    }
    return all;
  }

  std::string entries(std::string_view content) {
    EXPECT_TRUE(open(parser, dir, content));
    return entries();
  }

  TempDir dir;
  Parser parser;
};

TYPED_TEST_SUITE(Idx, Widths);

TYPED_TEST(Idx, timestamps_becomeEntries) {
  const char* const index =
      "# comment\n\nsize: 720x576\ntimestamp: 00:01:02:345, filepos: 000000a00\n"
      "langidx: 0\nTimeStamp: 00:00:01:000, filepos: 1FFFFFFFF\n"
      "timestamp: 00:00:03:000, filepos: 000000000";  // lost
  // Both the position's high half and the wide class's positions are lost.
  EXPECT_EQ(this->entries(index),
            this->kNarrow ? "2 62345 2560; 4 1000 4294967295" : "0 62345 0; 1 1000 0");
  EXPECT_EQ(this->entries("timestamp: 596:31:23:648, filepos: 10\n"),
            this->kNarrow ? "0 2147483648 16; 2 62345 2560; 4 1000 4294967295"
                          : "0 2147483648 0; 1 1000 0");
  this->parser.sessions.clear();
  EXPECT_EQ(this->entries("timestamp: 597:00:00:000, filepos: x\n"), "0 -2145767296 0");
  EXPECT_EQ(this->entries("timestamp: 0:0:99999999:5, filepos: x\n"), "0 99999999005 0");
  // Without "filepos:" the position is read further in front.
  EXPECT_EQ(this->entries("timestamp: 00:00:0a:00\n"), this->kNarrow ? "0 0 10" : "0 0 0");
  EXPECT_THROW(open(this->parser, this->dir, "timestamp: 1\n"), std::out_of_range);
}

TYPED_TEST(Idx, colours_areReadAsWritten) {
  auto& p = this->parser;
  this->entries(
      "palette: 000001, ffffff,80,xyz\n"
      "custom colors: ON, tridx: 1000, colors: 000000, ffffff, 808080, 000000\n");
  EXPECT_TRUE(p.useCustomColors);
  EXPECT_EQ(p.trIdx, 1U);
  EXPECT_EQ(testing::PrintToString(p.customColors), "{ 0, 16777215, 8421504, 0 }");
  EXPECT_EQ(p.palette[0] + p.palette[1] + p.palette[2] + p.palette[3], 1U + 0xFFFFFF + 0x80);
  for (const auto& [text, mask] : {std::pair{"0001", 8U}, {"0100", 2U}, {"0010", 4U}}) {
    this->entries("custom colors: 0, tridx: " + std::string(text) + ", colors: 1\n");
    EXPECT_EQ(p.trIdx, mask);
    EXPECT_FALSE(p.useCustomColors);
  }
  this->entries("custom colors: 1" + std::string(4000, '1') + " tridx:0 colors:0\n");
  EXPECT_TRUE(p.useCustomColors);
  this->entries("custom colors: off, tridx: 0, colors: 0\n");
  EXPECT_TRUE(p.useCustomColors);
  this->entries("custom colors: OFF, tridx: 0, colors: 0\n");
  EXPECT_FALSE(p.useCustomColors);
  EXPECT_THROW(open(p, this->dir, "custom colors: ON\n"), std::out_of_range);
}

TYPED_TEST(Idx, aLookup_addsTheKeysThatItVisits) {
  auto& p = this->parser;
  p.sessions[20].startTime = 1000;
  p.sessions[20].filePos = 7;
  EXPECT_EQ(p.GetFilePos(0) + p.GetFilePos(-5), 0);
  EXPECT_EQ(p.sessions.size(), 1U);
  EXPECT_EQ(p.GetFilePos(1499), this->kNarrow ? 7 : 0);
  EXPECT_EQ(p.sessions.size(), this->kNarrow ? 21U : 2U);
  EXPECT_EQ(p.GetFilePos(499), 0);  // one of the entries just added
  p.sessions.clear();
  p.sessions[0] = {1000, 7};
  for (const auto& [t, narrowHit, wideHit] : {std::tuple{1, 0, 7},
                                              {500, 0, 7},
                                              {501, 7, 7},
                                              {1499, 7, 7},
                                              {1500, 0, 7},
                                              {1999, 0, 7},
                                              {2000, 0, 0}}) {
    EXPECT_EQ(p.GetFilePos(t), this->kNarrow ? narrowHit : wideHit) << t;
  }
  p.sessions[0].startTime = std::numeric_limits<long long>::min();
  EXPECT_EQ(p.GetFilePos(std::numeric_limits<int>::max()), 0);
}

TYPED_TEST(Idx, fieldReaders_throwOnEmptyText) {
  auto text = ksBasicString<TypeParam>(wide<TypeParam>("  a,7, &h7"));
  EXPECT_EQ(narrow(this->parser.GetStr(text, ',')), " a");
  EXPECT_EQ(this->parser.GetInt(text, ','), 7);
  EXPECT_EQ(this->parser.GetInt(text, ','), -1);
  text = ksBasicString<TypeParam>(wide<TypeParam>(" "));
  EXPECT_THROW(this->parser.GetStr(text, ','), int);
  EXPECT_TRUE(text.isEmpty());
  EXPECT_THROW(this->parser.GetInt(text, ','), int);
}

TYPED_TEST(Idx, theCap_isFiveThousandLines) {
  const std::string lines(5000, '\n');
  EXPECT_TRUE(open(this->parser, this->dir, lines));
  EXPECT_FALSE(open(this->parser, this->dir, lines + "\n"));
  EXPECT_TRUE(this->parser.opened);
  EXPECT_FALSE(open(this->parser, this->dir, ""));
  ASSERT_NE(this->parser.file, nullptr);
  std::fclose(this->parser.file);
}

/// Whether the conversion of this line alone is still running after a while.
template <typename Parser, typename Char>
bool runsForEver(const char* line) {
  const pid_t child = fork();
  if (child == 0) {
    Parser parser;
    parser.lines.emplace_back(wide<Char>(line));
    parser.ConvertBufToIdxMap();
    _exit(0);
  }
  int status = 0;
  for (int i = 0; i < 30; ++i) {
    if (waitpid(child, &status, WNOHANG) == child) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return true;
}

TYPED_TEST(Idx, blankAndSemicolonLines_neverEnd) {
  using Index = std::conditional_t<std::is_same_v<TypeParam, char>, ksIdxParser, ksIdxParserU>;
  EXPECT_TRUE((runsForEver<Index, TypeParam>("   ")));
  EXPECT_TRUE((runsForEver<Index, TypeParam>(" ; comment")));
  EXPECT_FALSE((runsForEver<Index, TypeParam>("\t# ; comment")));
}

TEST(IdxPaths, theSubFile_isNamedAfterTheFirstDot) {
  const std::pair<const wchar_t*, std::pair<const char*, const char*>> cases[] = {
      {L"film.idx", {".idxsub", "film.sub"}},
      {L"/a/b.c/film.idx", {".c/film.idxsub", "/a/b.sub"}},
      {L"film", {"sub", "sub"}},
      {L"./film.idx", {"./film.idxsub", ".sub"}}};
  for (const auto& [path, expected] : cases) {
    ksIdxParser narrowParser;
    narrowParser.Open(narrow(ksWString(path)).c_str());
    EXPECT_EQ(narrow(narrowParser.subFilePath), expected.first);
    ksIdxParserU wideParser;
    std::wstring storage = path;
    wideParser.Open(storage.data());
    EXPECT_EQ(narrow(wideParser.subFilePath), expected.second);
  }
}

// ---- Units ----

/// A pack whose payload begins behind `headerDataLength` bytes of PES header data.
std::string pack(int headerDataLength, char subStream, std::string_view payload) {
  using namespace std::string_literals;
  std::string bytes = "\0\0\1\xBA"s + std::string(10, 'h') + "\0\0\1\xBD"s + "ll\x81\x80"s;
  bytes += static_cast<char>(headerDataLength);
  bytes += std::string(static_cast<std::size_t>(headerDataLength), '\x21');
  (bytes += subStream) += payload;
  bytes.resize(2048, '\xFF');
  return bytes;
}

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
    const std::unique_ptr<unsigned char[]> bytes(parser.GetPacket(1000, size, ctrlOffset));
    closeLastStream();
    return bytes ? std::string(bytes.get(), bytes.get() + size) : "null";
  }

  /// Closes the descriptor that the call has left open: the greatest one.
  static void closeLastStream() {
    const int next = dup(0);
    close(next);
    close(next - 1);
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
  // The continuation may have another header length; the end of the file repeats the last payload.
  const std::string whole = unit(3000, 1);
  const std::string first = pack(5, ' ', whole.substr(0, 2019));
  EXPECT_EQ(fetch(first + pack(9, ' ', whole.substr(2019))), whole);
  EXPECT_EQ(fetch(first), whole.substr(0, 2019) + whole.substr(0, 981));
  EXPECT_EQ(fetch(pack(5, ' ', std::string(4, '\0'))), "");
  EXPECT_EQ(size, 0);
}

TEST_F(IdxUnits, brokenStreams_giveNullOrAUnit) {
  const std::string whole = unit(5000, 1);
  const std::string stream = pack(5, ' ', whole.substr(0, 2019)) +
                             pack(5, ' ', whole.substr(2019, 2019)) +
                             pack(5, ' ', whole.substr(4038));
  for (std::size_t length = 0; length < stream.size(); length += length < 64 ? 1 : 37) {
    const std::string found = fetch(stream.substr(0, length));
    // "null", then a size that is cut short, then the whole unit.
    const std::size_t expected = length < 29 ? 4 : length < 31 ? (length - 29) * 0x1300 : 5000;
    EXPECT_EQ(found.size(), expected) << length;
    EXPECT_EQ(size == -1 && ctrlOffset == -1, found == "null") << length;
  }
  for (std::size_t at = 0; at < 64; ++at) {
    for (const char byte : {'\0', ' ', '\x7F', '\xFF'}) {
      std::string changed = stream;
      changed[at] = byte;
      const bool checked = at < 4 || (at >= 14 && at < 18);
      const std::string found = fetch(changed);
      EXPECT_TRUE(!checked || changed == stream || found == "null") << at;
    }
  }
  parser.subFilePath = "";
  EXPECT_EQ(parser.GetPacket(1000, size, ctrlOffset), nullptr);
}

TEST_F(IdxUnits, eachCallLeavesOneStreamOpen) {
  parser.subFilePath = ksString(dir.write("film.sub", "x").c_str());
  const int before = dup(0);
  close(before);
  EXPECT_EQ(parser.GetPacket(1000, size, ctrlOffset), nullptr);
  const int after = dup(0);
  close(after);
  EXPECT_EQ(after, before + 1);
}

TEST(IdxWidths, theWideClassFetchesNothing) {
  ksIdxParserU parser;
  parser.sessions[5] = {1000, 0};
  int size = 7;
  int ctrlOffset = 8;
  EXPECT_EQ(parser.GetPacket(1000, size, ctrlOffset), nullptr);
  EXPECT_EQ(size + ctrlOffset, 15);
  EXPECT_EQ(parser.sessions.size(), 2U);
}

}  // namespace
