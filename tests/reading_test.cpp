// How files become lines.
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "kssubtitle/parsers/reading/read_lines.h"
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

  /// The lines that a parser reads from a file of this content, each behind a '|'.
  template <typename Parser>
  std::string lines(std::string_view content) {
    Parser parser;
    EXPECT_TRUE(open(parser, content));
    return joined(parser);
  }

  template <typename Parser>
  static std::string joined(const Parser& parser) {
    std::string all;
    for (const auto& line : parser.lines) all += "|" + narrow(line);
    return all;
  }

  /// The same read one line at a time from a stream, as ReadString() does.
  template <typename Parser>
  std::string streamLines(std::string_view content) {
    Parser parser;
    parser.file = std::fopen(dir.write("file", Width<Char>::encode(content)).c_str(), "rb");
    std::fseek(parser.file, static_cast<long>(Width<Char>::encode("").size()), SEEK_SET);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closer(parser.file, &std::fclose);
    for (bool more = true; more;) {
      ksBasicString<Char> line;
      more = parser.ReadString(line);
      if (!line.isEmpty()) parser.lines.push_back(line);
    }
    return joined(parser);
  }

  std::string srtLines(std::string_view content) { return lines<Srt>(content); }
  std::string assLines(std::string_view content) { return lines<Ass>(content); }
  std::string srtStreamLines(std::string_view content) { return streamLines<Srt>(content); }
  std::string assStreamLines(std::string_view content) { return streamLines<Ass>(content); }

  TempDir dir;
};

TYPED_TEST_SUITE(Reading, Widths);

TYPED_TEST(Reading, lines_areJoinedFromPiecesAndLoseOneLineFeed) {
  const std::string piece(128, 'p');
  const std::string nul(1, '\0');
  const std::string block(20000, 'b');
  struct Case {
    std::string content, srt, ass;
  };
  const Case cases[] = {
      {"a\n\nb\r\n", "|a|b\r", "|a|b\r"},
      {"a\nlast", "|a|last", "|a"},
      {piece + "\nx\n", "|" + piece + "|x", "|" + piece + "|x"},
      {piece + piece + "tail\n", "|" + piece + piece + "tail", "|" + piece + piece + "tail"},
      // A last line of whole pieces gives its last piece twice, or nothing.
      {piece + piece, "|" + piece + piece + piece, ""},
      {"a\n" + block + "x", "|a|" + block + "x", "|a"},
      // A NUL hides what its piece holds behind it, the line feed included.
      {"a" + nul + "b\nc\n", "|a|c", "|a|c"},
      {"a" + nul + std::string(130, 'x') + "\nc\n", "|a|xxxx|c", "|a|xxxx|c"},
      {"a\n" + nul + "b\nc\n", "|a", "|a"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(this->srtLines(c.content), c.srt);
    EXPECT_EQ(this->assLines(c.content), c.ass);
    EXPECT_EQ(this->srtStreamLines(c.content), c.srt);
    EXPECT_EQ(this->assStreamLines(c.content), c.ass);
  }
}

// Pieces cut at every place of a block must not change a line.
TYPED_TEST(Reading, blocks_areJoinedSeamlessly) {
  std::string content;
  for (std::size_t length = 0; length < 400; ++length) {
    content += std::string(length, static_cast<char>('a' + length % 26)) + '\n';
  }
  EXPECT_EQ(this->srtLines(content), this->srtStreamLines(content));
}

TYPED_TEST(Reading, lineCap_refusesTheFileAndKeepsTheLines) {
  typename TestFixture::Srt parser;
  std::string content;
  for (int i = 0; i < 20000; ++i) content += i % 2 == 0 ? "\n" : "7\n";
  EXPECT_TRUE(this->open(parser, content + "unended"));
  EXPECT_EQ(parser.lines.size(), 10001U);
  EXPECT_TRUE(this->open(parser, content));
  EXPECT_FALSE(this->open(parser, content + "8\nz"));
  EXPECT_EQ(parser.lines.size(), 10001U);
  EXPECT_EQ(narrow(parser.lines.back()), "8");
  EXPECT_TRUE(parser.sessions.empty());
  EXPECT_TRUE(parser.IsOpen());
}

TYPED_TEST(Reading, failures_leaveAnEmptyParserThatStaysOpen) {
  typename TestFixture::Ass parser;
  EXPECT_FALSE(parser.Open(this->dir.path("missing").c_str()));
  EXPECT_EQ(parser.file, nullptr);
  EXPECT_FALSE(parser.IsOpen());
  EXPECT_TRUE(this->open(parser, "Dialogue: a\n"));
  EXPECT_FALSE(parser.Open(this->dir.write("empty", "").c_str()));
  ASSERT_NE(parser.file, nullptr);
  EXPECT_EQ(std::fgetc(parser.file), EOF);  // the stream is still open
  std::fclose(parser.file);
  EXPECT_TRUE(parser.IsOpen() && parser.lines.empty() && parser.sessions.empty());
  EXPECT_FALSE(parser.Open(this->dir.path("").c_str()));
  std::fclose(parser.file);
}

TEST(StreamReading, aReadErrorEndsTheLine) {
  ksSrtParser srt;
  ksAssParser ass;
  srt.file = ass.file = std::fopen("/", "rb");
  ksString line;
  EXPECT_FALSE(srt.ReadString(line) || ass.ReadString(line) || std::ferror(srt.file));
  EXPECT_TRUE(line.isEmpty());
  BlockPieces<ByteInput> bytes(srt.file);
  BlockPieces<Utf16Input> units(srt.file);
  EXPECT_FALSE(bytes.next() || bytes.atEnd() || units.next() || units.atEnd());
  std::fclose(srt.file);
}

TEST(Utf16, surrogates_arePairedOrReplaced) {
  TempDir dir;
  using namespace std::string_view_literals;
  struct Case {
    std::string_view units;
    std::wstring text;
  };
  const Case cases[] = {
      {"\x3D\xD8\x00\xDE!\0"sv, L"\U0001F600!"},
      {"\x3D\xD8!\0"sv, L"\xFFFD!"},
      {"\x00\xDE!\0"sv, L"\xFFFD!"},
      {"\x3D\xD8\x3D\xD8\x00\xDE"sv, L"\xFFFD\U0001F600"},
      {"!\0\x3D\xD8"sv, L"!\xFFFD"},
      {"!\0\x3D\xD8\x00"sv, L"!\xFFFD"},
      {"\xE9\0\xAC\x20"sv, L"\xE9\x20AC"},
      {"!\0?"sv, L"!"},
  };
  for (const Case& c : cases) {
    ksSrtParserU parser;
    ASSERT_TRUE(parser.Open(dir.write("x", std::string("\xFF\xFE") += c.units).c_str()));
    ASSERT_EQ(parser.lines.size(), 1U);
    EXPECT_TRUE(parser.lines[0] == c.text) << testing::PrintToString(c.text);
    parser.file = std::fopen(dir.path("x").c_str(), "rb");
    std::fseek(parser.file, 2, SEEK_SET);
    ksWString line;
    EXPECT_FALSE(parser.ReadString(line));
    EXPECT_TRUE(line == c.text);
    std::fclose(parser.file);
  }
}

// Text behind the mark that is not UTF-16 is the locale's: 8-bit letters need a locale with them.
TEST(WideReading, textWithoutZeroBytesIsReadUnderTheLocale) {
  TempDir dir;
  ksSrtParserU parser;
  ASSERT_TRUE(parser.Open(dir.write("x",
                                    "\xFF\xFE"
                                    "1\nabc\nn\xC3\xA9\n")
                              .c_str()));
  ASSERT_GE(parser.lines.size(), 2U);
  EXPECT_TRUE(parser.lines[1] == L"abc");
  const bool utf8 = MB_CUR_MAX > 1;
  EXPECT_TRUE(!utf8 || parser.lines.at(2) == L"n\xE9");
  ASSERT_TRUE(parser.Open(dir.write("y", "\xFF\xFE").c_str()));
  EXPECT_TRUE(parser.lines.empty() && parser.sessions.empty());
}

}  // namespace
