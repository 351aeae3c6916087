// The text formats of the import library: how each is recognised, and what is read from it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import.h"
#include "support.h"

namespace {

/// A file, and what is read from it: "format", then "start end text" for each cue with its lines
/// separated by bars, then "problem line" for each note, all separated by line feeds.
struct FormatCase {
  std::string_view what;
  std::string_view name;
  std::string_view text;
  std::string_view plain;
  std::string_view html = {};  // the texts alone, where they differ
};

void PrintTo(const FormatCase& row, std::ostream* out) { *out << row.what; }

std::string onOneLine(std::string_view text) {
  std::string line(text);
  std::replace(line.begin(), line.end(), '\n', '|');
  return line;
}

std::string summaryOf(const ksImportParser& parser) {
  std::string summary(parser.report().format());
  for (const ksImportCue& cue : parser.cues()) {
    summary += '\n' + std::to_string(cue.start) + ' ' + std::to_string(cue.end) + ' ';
    summary += onOneLine(cue.text);
  }
  for (const ksImportNote& note : parser.report().notes()) {
    summary += '\n';
    switch (note.problem) {
      case ksImportProblem::kLineIgnored:
        summary += "ignored";
        break;
      case ksImportProblem::kFrameRateAssumed:
        summary += "rate assumed";
        break;
      case ksImportProblem::kEndAssumed:
        summary += "end assumed";
        break;
      case ksImportProblem::kEndNotBehindStart:
        summary += "never shown";
        break;
      case ksImportProblem::kTimeRepaired:
        summary += "repaired";
        break;
      default:
        summary += describe(note);
    }
    summary += ' ' + std::to_string(note.line);
  }
  return summary;
}

class ImportFormats : public testing::TestWithParam<FormatCase> {};

TEST_P(ImportFormats, AreReadFromFiles) {
  const TempDir dir;
  const std::string path = dir.write(std::string(GetParam().name), std::string(GetParam().text));
  ksImportParser parser;
  ASSERT_TRUE(parser.Open(path.c_str())) << parser.report().refusalText();
  EXPECT_EQ(summaryOf(parser), GetParam().plain);
  if (GetParam().html.empty()) return;
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  ASSERT_TRUE(parser.Open(path.c_str(), options));
  std::string texts;
  for (const ksImportCue& cue : parser.cues()) texts += onOneLine(cue.text) + ';';
  EXPECT_EQ(texts, GetParam().html);
}

constexpr FormatCase kMicroDvd[] = {
    {"rate in the file, multiplied before it is divided", "a.sub",
     "Ook!\n{1}{1}23,976fps\n{ 10 } {20}/One/|Two|\n{143856}{}End\n",
     "microdvd\n417 834 One|Two\n6000000 6005000 End\nignored 1\nend assumed 4"},
    {"usual rate, reported", "a.txt", "{0}{24}Short\n", "microdvd\n0 1001 Short\nrate assumed 0"},
    {"a sentence is no rate", "a.sub", "{1}{1}2. men\n{}{24}A\n{24}{}B\n{48}{72}C\n",
     "microdvd\n0 1001 A\n42 42 2. men\n1001 2002 B\n2002 3003 C\nrate assumed 0\n"
     "never shown 1\n"
     "repaired 2"},
    {"codes for a line and for all lines", "a.sub",
     "{1}{1}25\n{DEFAULT}{}{C:$0000FF}\n{25}{50}{y:i,b}A|B\n{50}{75}{Y:u}{c:$ff0000}C|D {x:y} <3\n",
     "microdvd\n1000 2000 A|B\n2000 3000 C|D {x:y} <3",
     "<i><b><font color=\"#ff0000\">A</font></b></i>|<font color=\"#ff0000\">B</font>;"
     "<u><font color=\"#0000ff\">C</font></u>|<u><font color=\"#ff0000\">D {x:y} "
     "&lt;3</font></u>;"},
    {"before SubRip in its text", "a.sub",
     "{1}{1}25\n{25}{50}A\n1\n00:00:00,000 --> 00:00:05,000\n",
     "microdvd\n1000 2000 A\nignored 3\nignored 4"},
    {"numbers beyond any time", "a.sub", "{1}{1}25\n{0}{25}A\n{1234567890123}{1234567890124}B\n",
     "microdvd\n0 1000 A\nignored 3"},
};

constexpr FormatCase kMpl2[] = {
    {"signs in front of lines", "a.txt", "[-5][25] / A/B|\\_C|D/\n", "mpl2\n-500 2500 A/B|C|D/",
     "<i>A/B</i>|<b><u>C</u></b>|D/;"},
    {"ends left open", "a.txt", "[10][]A\n(1)(2)B\n[30][40]C\n",
     "mpl2\n1000 3000 A\n3000 4000 C\nignored 2"},
    {"SubRip that quotes it", "a.txt", "1\n00:00:01,000 --> 00:00:02,000\n[1][2]A\n{1}{2}B\n",
     "subrip\n1000 2000 [1][2]A|{1}{2}B"},
};

constexpr FormatCase kLineTimes[] = {
    {"an empty line ends a cue, ten seconds do too", "a.txt",
     "-0:00:07:/A/|B\n00:00:05:\n00:00:10=<xxx>C</xxx>: 1<2\n00:01:00:25 men\n",
     "tmplayer\n-7000 3000 A|B\n10000 20000 C: 1<2\n60000 65000 25 men\nend assumed 4"},
    {"numbered lines of one cue", "a.txt", "00:00:10,1=A\n00:00:10,2=B\n00:00:13,1=\n",
     "tmplayer\n10000 13000 A|B"},
    {"fractions", "a.txt", "00:00:01.5:A\n00:00:02.25:B\n00:00:03 C\n00:00:04:\n",
     "tmplayer\n1500 2250 A\n2250 3000 B\n3000 4000 C"},
    {"VPlayer times with a fraction before a blank", "film.txt",
     "00:00:01.50 A\n00:00:02.25 B|C\n00:00:03.00 \n", "tmplayer\n1500 2250 A\n2250 3000 B|C"},
    {"SubRip that quotes it", "a.txt",
     "1\n00:00:01,000 --> 00:00:02,000\n10:30:00: A\n10:31:00: B\n",
     "subrip\n1000 2000 10:30:00: A|10:31:00: B"},
};

constexpr FormatCase kSubViewer[] = {
    {"header, style lines and breaks", "a.sub",
     "[INFORMATION]\n[DELAY]0\n[END INFORMATION]\n[SUBTITLE]\n[COLF]&HFFFFFF,[STYLE]bd\n"
     "00:00:41.00,00:00:44.40\n<i>A[br]B</i>|C\nD\n\n[colf]&H0\n00:00:55,5,00:00:58,45\n[E]\n",
     "subviewer\n41000 44400 A|B|C|D\n55500 58450 [E]"},
    {"three digits", "a.txt", "0:00:00.599,0:00:04.160\n[music]\n", "sbv\n599 4160 [music]"},
    {"SubRip in its place", "a.sub", "1\n00:00:01,000 --> 00:00:02,000\n0:00:00.1,0:00:04.1\n",
     "subrip\n1000 2000 0:00:00.1,0:00:04.1"},
    {"version 1", "a.sub",
     "[TITLE]\nX\nY\n[AUTHOR]\n\n[BEGIN]\n******** START SCRIPT "
     "********\n[00:00:10]\nA|B\n[00:00:12]\n\n"
     "[00:00:15]\nC\n[END]\n",
     "subviewer1\n10000 12000 A|B\n15000 20000 C\nignored 3\nend assumed 12"},
};

constexpr FormatCase kLrc[] = {
    {"repeated lines, stamps of words, offset", "a.lrc",
     "[ti:T]\n[offset:500]\n[00:03.50][61:01.5]A <00:04.00> B [00:05] C\n[00:09.123]\nD\n",
     "lrc\n3000 8623 A B C\n3661000 3666000 A B C\nend assumed 3\nignored 5"},
    {"a template of an offset", "a.txt", "[offset:+/- ms]\n[00:01]A [x] <3\n[00:02]\n",
     "lrc\n1000 2000 A [x] <3"},
    {"no MPL2", "a.txt", "[00:01]A\n[1][2]B\n[00:02.0]\n", "lrc\n1000 2000 A\nignored 2"},
    {"no SubViewer 1", "a.sub", "[00:00:01]A\n[00:00:02]\n", "lrc\n1000 2000 A"},
};

constexpr FormatCase kMpsub[] = {
    {"fractions that add up", "a.sub",
     "TITLE=T\nFORMAT=TIME\n\n.2504 1.\nA\n2 3\n\n0.2504 1\nB\n\nC\n",
     "mpsub\n250 1250 A|2 3\n1501 2501 B\nignored 11"},
    {"frames", "a.sub", "FORMAT=12,5\n\n-25 50\nA\n\n0 1e9\n\n25 25\nB\n",
     "mpsub\n-2000 2000 A\n4000 6000 B\nignored 6"},
};

std::string nameOf(const testing::TestParamInfo<FormatCase>& info) {
  return std::to_string(info.index);
}

INSTANTIATE_TEST_SUITE_P(MicroDvd, ImportFormats, testing::ValuesIn(kMicroDvd), nameOf);
INSTANTIATE_TEST_SUITE_P(Mpl2, ImportFormats, testing::ValuesIn(kMpl2), nameOf);
INSTANTIATE_TEST_SUITE_P(LineTimes, ImportFormats, testing::ValuesIn(kLineTimes), nameOf);
INSTANTIATE_TEST_SUITE_P(SubViewer, ImportFormats, testing::ValuesIn(kSubViewer), nameOf);
INSTANTIATE_TEST_SUITE_P(Lrc, ImportFormats, testing::ValuesIn(kLrc), nameOf);
INSTANTIATE_TEST_SUITE_P(Mpsub, ImportFormats, testing::ValuesIn(kMpsub), nameOf);

TEST(ImportFrameRates, AreThoseOfTheOptionsIfUsable) {
  constexpr std::string_view kText = "{25}{50}A\n";
  const auto startAt = [&](double rate) {
    ksImportOptions options;
    options.frameRate = rate;
    ksImportParser parser;
    EXPECT_TRUE(parser.OpenMemory(kText.data(), kText.size(), options));
    EXPECT_EQ(parser.report().count(ksImportProblem::kFrameRateAssumed), rate == 25 ? 0U : 1U);
    return parser.cues()[0].start;
  };
  EXPECT_EQ(startAt(25), 1000);
  for (const double rate : {-25.0, 1e-300, HUGE_VAL, std::nan("")}) EXPECT_EQ(startAt(rate), 1043);
}

}  // namespace
