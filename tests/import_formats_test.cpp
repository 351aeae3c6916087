// Small texts in the formats of early players, beyond what the files in tests/data show.
#include <cmath>
#include <ostream>

#include "tests/import_support.h"

namespace {

struct Case {
  const char* format;
  const char* what;
  std::string text;
  std::string cues;
  std::string notes = {};
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.format << ": " << c.what; }

class EarlyFormats : public testing::TestWithParam<Case> {};

TEST_P(EarlyFormats, Hold_these_cues) {
  ksImportParser parser;
  ASSERT_TRUE(openText(parser, GetParam().text)) << parser.report().refusalSentence();
  EXPECT_EQ(parser.report().format(), GetParam().format);
  EXPECT_EQ(cuesOf(parser), GetParam().cues);
  EXPECT_EQ(notesOf(parser), GetParam().notes);
}

const Case kCases[] = {
    {"microdvd", "rate in the file, multiplied before it is divided",
     "Ook!\n{1}{1}23,976fps\n{ 10 } {20}/One/|Two|\n{143856}{}End\n",
     "417-834 One|Two; 6000000-6005000 End", "1 LineIgnored; 4 EndAssumed"},
    {"microdvd", "usual rate, reported", "{0}{24}Short\n", "0-1001 Short", "0 NoFrameRate"},
    {"microdvd", "a sentence is no rate", "{1}{1}2. men\n{}{24}A\n{24}{}B\n{48}{72}C\n",
     "0-1001 A; 42-42 2. men; 1001-2002 B; 2002-3003 C",
     "0 NoFrameRate; 1 EndNotBehindStart; 2 TimeRepaired"},
    {"microdvd", "before SubRip in its text",
     "{1}{1}25\n{25}{50}A\n1\n00:00:00,000 --> 00:00:05,000\n", "1000-2000 A",
     "3 LineIgnored; 4 LineIgnored"},
    {"microdvd", "numbers beyond any time", "{1}{1}25\n{0}{25}A\n{1234567890123}{1234567890124}B\n",
     "0-1000 A", "3 LineIgnored"},
    {"microdvd", "a slash goes on until a line ends in one",
     "{1}{1}25\n{0}{25}/A|B/|C/\n{25}{50}D/\n", "0-1000 A|B|C/; 1000-2000 D/"},
    {"tmplayer", "times below zero, unknown tags",
     "-0:00:17:/A/|B\n-0:00:00.5:D\n00:00:05:\n00:00:10=<xxx>C</xxx>: 1<2\n00:01:00:25 men\n",
     "-17000--7000 A|B; -500-5000 D; 10000-20000 C: 1<2; 60000-65000 25 men",
     "1 EndNotBehindStart; 5 EndAssumed"},
    {"subviewer", "times without fractions", "0:00:01,0:00:02\nA\n0:00:03 , 0:00:04,50\nB\n",
     "1000-2000 A; 3000-4500 B", "1 TimeRepaired; 3 TimeRepaired"},
    {"subviewer", "more on the lines of times",
     "00:00:01.00,00:00:02.00\nA|1:00:00,2\n(00:00:03.00),00:00:04.00.\nB\n1:2,0:0:1,0:0:2\n",
     "1000-2000 A|1:00:00,2; 3000-4000 B|1:2,0:0:1,0:0:2", "3 TimeRepaired"},
    {"microdvd", "breaks of ASS", "{1}{1}25\n{0}{25}A\\NB\\n\n", "0-1000 A|B\\n"},
    {"mpl2", "a backslash is bold", "[0][10]A|\\NB\n", "0-1000 A|NB"},
    {"lrc", "a template of an offset", "[offset:+/- ms]\n[00:01]A [x] <3\n[00:02]\n",
     "1000-2000 A [x] <3"},
    {"lrc", "minutes above 99", "[99:59.90]A\n[100:00.25]B\n[ 1000:00.5 ]C\n[1001:00]\n",
     "5999900-6000250 A; 6000250-60000500 B; 60000500-60060000 C"},
    {"lrc", "stamps behind blanks, of the line and of words",
     "[00:01] [00:03]A\n[00:02] [00:02.5]B [00:02.8]C\n[00:04]\n",
     "1000-2000 A; 2000-3000 B C; 3000-4000 A"},
    {"lrc", "DKS", "[00:00:01]A[br] B[BR]\n[00:00:03]\n", "1000-3000 A|B"},
    {"mpsub", "halves of milliseconds go away from zero", "FORMAT=2000\n\n-1 4\nA\n", "-1-2 A"},
    {"mpsub", "values and comments", "FORMAT=25#fps\n#\n\n25 25#\nA\n#B\n", "1000-2000 A|#B"},
    {"mpsub", "frames", "FORMAT=12,5\n\n-25 50\nA\n\n0 1e9\n\n25 25\nB\n",
     "-2000-2000 A; 4000-6000 B", "6 LineIgnored"},
};

INSTANTIATE_TEST_SUITE_P(All, EarlyFormats, testing::ValuesIn(kCases));

TEST(ImportLyrics, ShowALineAtAHundredStampsAtMost) {
  std::string text;
  for (int i = 10; i < 111; ++i) text += "[0" + std::to_string(i) + ":00]";
  ksImportParser parser;
  ASSERT_TRUE(openText(parser, text + "A\n"));
  EXPECT_EQ(parser.cues().size(), 100U);
  EXPECT_EQ(parser.cues().back().text, "A");
  EXPECT_EQ(notesOf(parser), "1 Unsupported; 1 EndAssumed");
}

TEST(ImportFrameRates, AreThoseOfTheOptionsIfUsable) {
  const auto startAt = [](double rate) {
    ksImportOptions options;
    options.frameRate = rate;
    ksImportParser parser;
    EXPECT_TRUE(openText(parser, "{36}{50}A\n", options));
    EXPECT_EQ(parser.report().count(ksImportProblem::kFrameRateAssumed),
              rate > 1 && rate < 100 ? 0U : 1U);
    return parser.cues()[0].start;
  };
  EXPECT_EQ(startAt(25), 1440);
  EXPECT_EQ(startAt(24000.0 / 1001), 1502);  // 1501.5, and less in more digits than a double has
  for (const double rate : {-25.0, 1e-300, HUGE_VAL, std::nan("")}) EXPECT_EQ(startAt(rate), 1502);
}

TEST(ImportFrameRates, AreSecondsInMpsubThatStatesNone) {
  ksImportOptions options;
  options.format = "mpsub";
  ksImportParser parser;
  EXPECT_TRUE(openText(parser, "1 2\nA\n", options));
  EXPECT_EQ(cuesOf(parser), "1000-3000 A");
}

}  // namespace
