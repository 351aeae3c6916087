// SubRip conversion and queries.
#include <cstdlib>
#include <map>
#include <tuple>

#include "support.h"

namespace {

/// "key start-end text" of every cue, separated by "; ".
std::string joined(const auto& cues) {
  std::string all;
  for (const auto& [key, cue] : cues) {
    all += (all.empty() ? "" : "; ") + std::to_string(key) + " " + describe(cue);
  }
  return all;
}

template <typename Char>
class Srt : public testing::Test {
 protected:
  using Parser = typename Width<Char>::Srt;

  std::string cues(std::string_view content) {
    EXPECT_TRUE(parser.Open(dir.write("file.srt", Width<Char>::encode(content)).c_str()));
    return joined(parser.sessions);
  }

  std::string times(const std::string& timeLine) {
    const std::string all = cues("1\n" + timeLine + "\nx\n");
    return all.substr(2, all.size() - 5);
  }

  TempDir dir;
  Parser parser;
};

/// The conversion as its rules read, one line and one step at a time.
template <typename Char>
class NaiveSrt {
 public:
  using String = ksBasicString<Char>;
  using Cue = typename decltype(Width<Char>::Srt::sessions)::mapped_type;

  explicit NaiveSrt(std::vector<String> lines) : lines_(std::move(lines)) {
    int key = 0;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
      trim(lines_[i]);
      if (lines_[i].isNumeric()) {
        key = std::stoi(narrow(lines_[i]));
      } else if (lines_[i].find(kArrow, 0) > 0) {
        readTimes(lines_[i]);
      } else {
        Cue& cue = cues[key];
        cue.start = times_[0];
        cue.end = times_[1];
        cue.text += kLineFeed;
        for (std::size_t j = i; j < lines_.size(); j += 2) {
          trim(lines_[j]);
          if (lines_[j].isEmpty() || lines_[j].find(kArrow, 0) > 0 || lines_[j].isNumeric()) break;
          cue.text += lines_[j];
        }
      }
    }
  }

  std::map<int, Cue> cues;

 private:
  static constexpr bool kNarrow = std::is_same_v<Char, char>;
  static constexpr Char kArrow[] = {'-', '-', '>', 0};
  static constexpr Char kLineFeed[] = {'\n', 0};

  static void trim(String& line) {
    line.TrimLeft();
    line.TrimRight();
  }
  static String from(const String& text, int start) {
    return start > text.length() ? String() : text.substr(start, text.length());
  }
  /// Unsigned, because times wrap at 32 bits.
  static unsigned number(const String& text) {
    return static_cast<unsigned>(std::atoi(narrow(text).c_str()));
  }

  void readTimes(const String& line) {
    const int arrow = line.find(kArrow, 0);
    String sides[] = {line.substr(0, arrow), from(line, arrow + (kNarrow ? 4 : 3))};
    for (String& side : sides) side.clearSpaces();
    unsigned sums[2] = {};
    for (const auto& [separator, unit] : {std::pair{':', 3600000U}, {':', 60000U}, {',', 1000U}}) {
      const Char text[] = {static_cast<Char>(separator), 0};
      const int cut = sides[1].find(text, 0);
      for (std::size_t side : {0U, 1U}) {
        sums[side] += number(sides[side].substr(0, sides[side].find(text, 0))) * unit;
      }
      const unsigned length = static_cast<unsigned>(sides[0].length());
      if (kNarrow ? static_cast<unsigned>(cut + 1) < length : length > static_cast<unsigned>(cut)) {
        for (String& side : sides) side = from(side, cut + 1);
      }
    }
    for (std::size_t side : {0U, 1U}) {
      times_[side] = static_cast<int>(sums[side] + number(sides[side].substr(0, 3)));
    }
  }

  std::vector<String> lines_;
  long long times_[2] = {};
};

TYPED_TEST_SUITE(Srt, Widths);

TYPED_TEST(Srt, conversion_matchesItsNaiveForm) {
  const auto expectSame = [&](const std::vector<ksBasicString<TypeParam>>& lines) {
    this->parser.lines = lines;
    this->parser.sessions.clear();
    this->parser.ConvertBufToSrtMap();
    const NaiveSrt<TypeParam> naive(lines);
    EXPECT_EQ(joined(this->parser.sessions), joined(naive.cues)) << testing::PrintToString(lines);
  };
  const auto line = [](std::string_view bytes) {
    return ksBasicString<TypeParam>(wide<TypeParam>(bytes));
  };
  const std::string_view lines[] = {"a", "7", "1:2:3,4 --> 5:6:7,8", "    b ", "-->"};
  for (const std::string& choice : allTexts("01234", 5)) {
    std::vector<ksBasicString<TypeParam>> chosen;
    for (const char c : choice) chosen.push_back(line(lines[c - '0']));
    expectSame(chosen);
  }
  const std::vector<std::string> times = allTexts("1:, ", 4);
  for (std::size_t i = 0; i < times.size(); ++i) {
    // Every start time meets some end times, and the other way round.
    for (std::size_t j = i % 11; j < times.size(); j += 11) {
      expectSame({line(times[i] + "-->" + times[j]), line("x")});
    }
    for (const char* other : {"0:1:2,3 ", "0:0:1, ", "0:0:1", " 10:0:0,123"}) {
      expectSame({line(other + ("-->" + times[i])), line("x")});
      expectSame({line(times[i] + "-->" + other), line("x")});
    }
  }
}

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
