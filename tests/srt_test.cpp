// The SubRip conversion.
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

#include "support.h"

namespace {

template <typename Char>
class Srt : public testing::Test {};

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
  const auto expectSame = [](const std::vector<ksBasicString<TypeParam>>& lines) {
    typename Width<TypeParam>::Srt parser;
    parser.lines = lines;
    parser.ConvertBufToSrtMap();
    const NaiveSrt<TypeParam> naive(lines);
    const auto describeCue = [](const auto& cue) { return describe(cue); };
    EXPECT_EQ(joined(parser.sessions, describeCue), joined(naive.cues, describeCue))
        << testing::PrintToString(lines);
  };
  const auto line = [](std::string_view bytes) {
    return ksBasicString<TypeParam>(wide<TypeParam>(bytes));
  };
  const std::string_view lines[] = {"a", "7", "1-->5:6:7,8", "    b ", "-->"};
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

}  // namespace
