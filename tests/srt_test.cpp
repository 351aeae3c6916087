// SubRip conversion and queries.
#include <tuple>

#include "support.h"

namespace {

template <typename Char>
class Srt : public testing::Test {
 protected:
  using Parser = typename Width<Char>::Srt;

  /// "key start-end text" of every cue, separated by "; ".
  std::string cues(std::string_view content) {
    EXPECT_TRUE(parser.Open(dir.write("file.srt", Width<Char>::encode(content)).c_str()));
    std::string all;
    for (const auto& [key, cue] : parser.sessions) {
      all += (all.empty() ? "" : "; ") + std::to_string(key) + " " + describe(cue);
    }
    return all;
  }

  std::string times(const std::string& timeLine) {
    const std::string all = cues("1\n" + timeLine + "\nx\n");
    return all.substr(2, all.size() - 5);
  }

  TempDir dir;
  Parser parser;
};

TYPED_TEST_SUITE(Srt, Widths);

constexpr char kTimes[] = "00:00:01,000 --> 00:00:04,000\n";

TYPED_TEST(Srt, textLines_areGatheredWithEverySecondOne) {
  const std::string head = std::string("1\n") + kTimes;
  EXPECT_EQ(this->cues(head + "Hello"), "1 1000-4000 |Hello");
  EXPECT_EQ(this->cues(head + "Hello\nWorld\n"), "1 1000-4000 |Hello|World");
  EXPECT_EQ(this->cues(head + "A\nB\n\nC\n2\n"), "1 1000-4000 |AC|B|C");
  EXPECT_EQ(this->cues(head + "A\nB\nC\nD\nE\n" + kTimes), "1 1000-4000 |ACE|BD|CE|D|E");
  EXPECT_EQ(this->cues(head), "");
}

TYPED_TEST(Srt, lines_areClassifiedByTheirLook) {
  const std::string head = std::string("1\n") + kTimes;
  EXPECT_EQ(this->cues("early\n" + head + "x\n"), "0 0-0 |early; 1 1000-4000 |x");
  EXPECT_EQ(this->cues(head + "In\n2012\nit\n"), "1 1000-4000 |Init; 2012 1000-4000 |it");
  EXPECT_EQ(this->cues(head + "a\n00:00:05,000 --> 00:00:06,000\nb\n"), "1 5000-6000 |ab|b");
  EXPECT_EQ(this->cues(head + "a\n1\n00:00:05,000 --> 00:00:06,000\nb\n"), "1 5000-6000 |a|b");
  EXPECT_EQ(this->cues(head + "--> a --> b\n"), "1 1000-4000 |--> a --> b");
  EXPECT_EQ(this->cues(head + "a\n  \nb\nc\n"), "1 1000-4000 |ab||b|c");
  EXPECT_EQ(this->cues("1\r\n00:00:01,000 --> 00:00:04,000\r\nx\r\n2\r\n"),
            "0 1000-4000 |1\rx\r|x\r|2\r");
  EXPECT_EQ(this->cues("4294967298\nx\n"), "2 0-0 |x");
}

// Each visit of a line halves its leading blanks once more.
TYPED_TEST(Srt, leadingBlanks_showTheNumberOfVisits) {
  const std::string blanks(16, ' ');
  EXPECT_EQ(this->cues(blanks + "a"), "0 0-0 |    a");
  EXPECT_EQ(this->cues("x\n" + blanks + "b"), "0 0-0 |x|    b");
  EXPECT_EQ(this->cues("x\ny\n" + blanks + "c"), "0 0-0 |x        c|y|  c");
  EXPECT_EQ(this->cues("  5\n"), "0 0-0 |");
  EXPECT_EQ(this->cues("  5\nx\n"), "0 0-0 ||x");
}

TYPED_TEST(Srt, times_areReadLeniently) {
  EXPECT_EQ(this->times("01:02:03,004 --> 01:02:05,000"), "3723004-3725000");
  EXPECT_EQ(this->times("00:00:01,5 --> 00:00:02,5000"), "1005-2500");
  EXPECT_EQ(this->times("00:00:01.000 --> 00:00:02.000"), "1001-2002");
  EXPECT_EQ(this->times("00:00:01,50 --> 00:00:02,500"), "1050-2500");
  EXPECT_EQ(this->times("1:2:3,4 --> 5:6:7,8"), "3723004-18367008");
  EXPECT_EQ(this->times("600:00:00,000 --> -1:00:00,000"), "-2134967296--3600000");
  EXPECT_EQ(this->times("x-->"), "0-0");
  EXPECT_EQ(this->times("00:00:01,000 --> "), "0-0");
}

// What a missing space or a start time that ends with its separator makes of the times.
TEST(SrtWidths, unusualTimeLines_differ) {
  TempDir dir;
  const auto firstTimes = [&](auto& parser, std::string_view content) {
    EXPECT_TRUE(parser.Open(dir.write("x", content).c_str()));
    return describe(parser.sessions.at(0));
  };
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"00:00:01,000-->10:00:02,000\nx", "0-2000 |x", "1000-36002000 |x"},
      {"00:00:01, --> 00:00:02,500\nx", "1001-2002 |x", "1000-2500 |x"}};
  for (const auto& [line, narrowTimes, wideTimes] : cases) {
    ksSrtParser narrowParser;
    ksSrtParserU wideParser;
    EXPECT_EQ(firstTimes(narrowParser, line), narrowTimes) << line;
    EXPECT_EQ(firstTimes(wideParser, Width<wchar_t>::encode(line)), wideTimes) << line;
  }
}

TYPED_TEST(Srt, queries_returnTheLastCoveringKey) {
  this->cues(
      "2\n00:00:01,000 --> 00:00:04,000\nlong\n1\n00:00:02,000 --> 00:00:09,000\nother\n"
      "3\n00:00:03,000 --> 00:00:03,000\nshort");
  const auto at = [&](long long t) { return describe(Width<TypeParam>::ask(this->parser, t)); };
  EXPECT_EQ(at(999) + at(9001) + at(-1), "nothingnothingnothing");
  EXPECT_EQ(at(1000), "1000-4000 |long");
  EXPECT_EQ(at(3000), "3000-3000 |short");
  EXPECT_EQ(at(4000), "1000-4000 |long");
  EXPECT_EQ(at(4001), "2000-9000 |other");
  EXPECT_EQ(at(9000), "2000-9000 |other");
  EXPECT_EQ(describe(Width<TypeParam>::askOther(this->parser, 1000)), "nothing");
  EXPECT_EQ(this->parser.DurationTime(), 9000);
  this->cues("no time");
  EXPECT_EQ(at(0), "0-0 |no time");
  EXPECT_EQ(this->parser.DurationTime(), 0);
}

}  // namespace
