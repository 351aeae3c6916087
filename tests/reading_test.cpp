// How files become lines.
#include <fcntl.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "kssubtitle/parsers/reading/load_file.h"
#include "support.h"

namespace {

using namespace kssubtitle::internal;

template <typename Char>
class Reading : public testing::Test {
 protected:
  using Srt = typename Width<Char>::Srt;
  using Ass = typename Width<Char>::Ass;

  /// Opens a file of this content.
  template <typename Parser>
  bool open(Parser& parser, std::string_view content) {
    return parser.Open(dir.write("file", Width<Char>::encode(content)).c_str());
  }

  TempDir dir;
};

TYPED_TEST_SUITE(Reading, Widths);

// Pieces cut at every place of a block must not change a line.
TYPED_TEST(Reading, blocks_areJoinedSeamlessly) {
  constexpr std::size_t kLongest = 400;
  const auto line = [](std::size_t n) { return std::string(n, static_cast<char>('a' + n % 26)); };
  std::string content;
  for (std::size_t n = 1; n <= kLongest; ++n) content += line(n) + '\n';
  const auto expectLines = [&](auto parser) {
    EXPECT_TRUE(this->open(parser, content));
    ASSERT_EQ(parser.lines.size(), kLongest);
    for (std::size_t n = 1; n <= kLongest; ++n) EXPECT_EQ(narrow(parser.lines[n - 1]), line(n));
  };
  expectLines(typename TestFixture::Srt());
  expectLines(typename TestFixture::Ass());
}

TYPED_TEST(Reading, failures_leaveAnEmptyParserThatStaysOpen) {
  typename TestFixture::Ass parser;
  EXPECT_FALSE(parser.Open(this->dir.path("missing").c_str()));
  EXPECT_EQ(parser.file, nullptr);
  EXPECT_FALSE(parser.IsOpen());
  for (const std::string& path : {this->dir.write("empty", ""), std::string("/dev")}) {
    EXPECT_TRUE(this->open(parser, "Dialogue: a\n"));
    EXPECT_FALSE(parser.Open(path.c_str()));
    EXPECT_EQ(std::fclose(parser.file), 0);
    EXPECT_TRUE(parser.IsOpen());
    EXPECT_EQ(parser.lines.size() + parser.sessions.size(), 0U);
  }
}

// A pipe without more data gives the error.
TEST(StreamReading, aReadErrorEndsTheLine) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
  const std::string piece(128, 'a');
  const auto writePiece = [&] { return write(ends[1], piece.data(), piece.size()); };
  ksSrtParser srt;
  ksAssParser ass;
  srt.file = ass.file = fdopen(ends[0], "rb");
  ksString line;
  EXPECT_EQ(writePiece(), 128);
  EXPECT_TRUE(srt.ReadString(line));
  EXPECT_EQ(narrow(line), piece);
  line.erase();
  EXPECT_FALSE(srt.ReadString(line));
  EXPECT_FALSE(ass.ReadString(line));
  EXPECT_EQ(std::ferror(srt.file), 0);
  EXPECT_EQ(narrow(line), "");
  BlockPieces<ByteInput> bytes(srt.file);
  EXPECT_EQ(writePiece(), 128);
  EXPECT_TRUE(bytes.next());
  EXPECT_FALSE(bytes.next());
  EXPECT_FALSE(bytes.atEnd());
  EXPECT_EQ(std::ferror(srt.file), 0);
  EXPECT_TRUE(bytes.piece().empty());
  BlockPieces<Utf16Input> units(srt.file);
  EXPECT_EQ(writePiece(), 128);
  EXPECT_FALSE(units.next());
  EXPECT_FALSE(units.atEnd());
  std::fclose(srt.file);
  close(ends[1]);
}

// With one letter after each pair, every block ends between the two units of a pair.
TEST(WideReading, surrogatePairs_areJoinedAcrossBlocks) {
  const TempDir dir;
  ksSrtParserU parser;
  const auto lineOf = [&](const std::string& units) {
    EXPECT_TRUE(parser.Open(dir.write("x", "\xFF\xFE" + units).c_str()));
    return parser.lines.at(0);
  };
  const std::string pair("\x3D\xD8\0\xDE", 4);
  for (const std::size_t letters : {1U, 1000U}) {
    std::string units;
    std::wstring text;
    while (text.size() < 40000) {
      units += pair + Width<wchar_t>::encode(std::string(letters, 'b')).substr(2);
      text += L'\U0001F600' + std::wstring(letters, L'b');
    }
    for (const char* const end : {"", "?"}) EXPECT_TRUE(lineOf(units + end) == text);
  }
  // A lone surrogate in the last place of a block that is the last one.
  std::string units = Width<wchar_t>::encode(std::string(32767, 'a')).substr(2) + "\x3D\xD8";
  EXPECT_EQ(lineOf(units).length(), 32768 + 128);  // whole pieces: the last one comes twice
  // The block before leaves the other half of a pair after this one.
  units.clear();
  while (units.size() < 32768) units += pair;
  EXPECT_TRUE(lineOf(units + std::string("b\0b\0\x3D\xD8", 6)).Right(1) == L"\xFFFD");
}

TEST(WideReading, narrowTextBehindTheMark_isDecodedByTheLocale) {
  const TempDir dir;
  ksSrtParserU parser;
  ASSERT_TRUE(parser.Open(dir.write("x", "\xFF\xFEn\xC3\xA9\n").c_str()));
  const bool utf8 = MB_CUR_MAX > 1;
  EXPECT_EQ(parser.lines.size(), utf8 ? 1U : 0U);
  if (utf8) {
    EXPECT_EQ(parser.lines.at(0), L"n\xE9");
  }
  for (const char* const bytes : {"\xEF\xBB\xBFn\n", "n\xC3\xA9n\n"}) {  // two end in a character
    EXPECT_TRUE(parser.Open(dir.write("x", bytes).c_str()));
    EXPECT_EQ(parser.lines.size(), 0U);
  }
  ksWString infinity = L"\u0130NF";  // a capital I that has a small i
  EXPECT_EQ(std::isinf(ksAssParserU().GetFloat(infinity, ',')), utf8);
}

}  // namespace
