// The SubRip conversion.
#include <cstdlib>
#include <map>
#include <tuple>
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

  explicit NaiveSrt(std::vector<String> lines) {
    int key = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      trim(lines[i]);
      if (lines[i].isNumeric()) {
        key = std::stoi(narrow(lines[i]));
      } else if (arrowIn(lines[i]) > 0) {
        readTimes(lines[i]);
      } else {
        auto& cue = cues[key];
        std::tie(cue.start, cue.end) = std::pair(times_[0], times_[1]);
        cue.text += Char{'\n'};
        for (std::size_t j = i; j < lines.size(); j += 2) {
          trim(lines[j]);
          if (lines[j].isEmpty() || arrowIn(lines[j]) > 0 || lines[j].isNumeric()) break;
          cue.text += lines[j];
        }
      }
    }
  }

  std::map<int, typename decltype(Width<Char>::Srt::sessions)::mapped_type> cues;

 private:
  static constexpr bool kNarrow = std::is_same_v<Char, char>;

  static void trim(String& line) {
    line.TrimLeft();
    line.TrimRight();
  }
  static int arrowIn(const String& line) { return line.find(wide<Char>("-->"), 0); }
  static String from(const String& text, int start) {
    return start > text.length() ? String() : text.substr(start, text.length());
  }
  /// Unsigned, because times wrap at 32 bits.
  static unsigned number(const String& text) {
    return static_cast<unsigned>(std::atoi(narrow(text).c_str()));
  }

  void readTimes(const String& line) {
    const int arrow = arrowIn(line);
    String sides[] = {line.substr(0, arrow), from(line, arrow + (kNarrow ? 4 : 3))};
    for (String& side : sides) side.clearSpaces();
    unsigned sums[2] = {};
    for (const auto& [separator, unit] : {std::pair{':', 3600000U}, {':', 60000U}, {',', 1000U}}) {
      const Char c = static_cast<Char>(separator);
      const int cut = sides[1].find(c, 0);
      for (std::size_t side : {0U, 1U}) {
        sums[side] += number(sides[side].substr(0, sides[side].find(c, 0))) * unit;
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
