// The import library: which cues texts have, what is noted, what is shown, what is refused.
#include <sys/stat.h>

#include <cerrno>
#include <thread>

#include "tests/import_support.h"
#include "tests/models/moments_model.h"

namespace {

using namespace std::string_literals;

struct Row {
  const char* name;
  const char* text;  // see withTimes()
  const char* cues;
  const char* notes = "";
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.text; }

class Import : public testing::TestWithParam<Row> {};

TEST_P(Import, readsCuesAndNotesProblems) {
  ksImportParser parser;
  EXPECT_TRUE(openText(parser, withTimes(GetParam().text))) << parser.report().refusalSentence();
  EXPECT_EQ(cuesOf(parser), GetParam().cues);
  EXPECT_EQ(notesOf(parser), GetParam().notes);
}

const Row kSubRip[] = {
    {"plain", "1\n@1A\n\n2\n@3B\nC\nD\n", "1000-2000 A; 3000-4000 B|C|D"},
    {"no_numbers", "@1A\n\n@3B", "1000-2000 A; 3000-4000 B"},
    {"odd_numbers", "1\n@1A\n\n@3B\n\n1\n@5C\n\n0\n@7D",
     "1000-2000 A; 3000-4000 B; 5000-6000 C; 7000-8000 D",
     "5 NumberMissing; 8 NumberDoubled; 12 NumberFalling"},
    {"digits_as_text", "1\n@1 42\n\n7\nA\n8\n\n2\n@3B", "1000-2000 42|7|A|8; 3000-4000 B"},
    {"number_without_blank_lines", "1\n@1A\n2\n@3B\n@5C", "1000-2000 A; 3000-4000 B; 5000-6000 C",
     "7 NumberMissing"},
    {"number_between_blank_lines", "\n\n1\n\n@1\n\nA\n \nB\n\n2\n\n\n@3C\n\n",
     "1000-2000 A|B; 3000-4000 C"},
    {"spellings_of_times",
     "1\n 0:0:1.5-->00:00:02 X1:5\nA\n\n2\n0 : 0 : 3 , 04 --> +0:0:4:000  align:left\nB",
     "1500-2000 A; 3040-4000 B", "2 TimeRepaired; 6 TimeRepaired"},
    {"spellings_below_numbers_and_blank_lines",
     "00:01,000 -> 00:02\nA\n9:00 -> 17:00\n\n0:03 \xE2\x80\x94> 0:04\nB\n\n0:05 --&gt; 0:06\nC",
     "1000-2000 A|9:00 -> 17:00; 3000-4000 B; 5000-6000 C",
     "1 TimeRepaired; 5 TimeRepaired; 8 TimeRepaired"},
    {"one_time_under_a_number",
     "1\n@1A\n\n2\n00:00:03,000 --> oops\nB\n\n3\n --> 00:00:04,000\nC\n\n4\n@5D",
     "1000-2000 A; 5000-6000 D", "6 TimeUnreadable; 10 TimeUnreadable"},
    {"times_below_letters_are_text", "@1A\nÄ\n0:03 -> 0:04", "1000-2000 A|Ä|0:03 -> 0:04"},
    {"one_time_elsewhere", "1\n@1A\n\n00:00:03,000 --> oops\nB",
     "1000-2000 A|00:00:03,000 --> oops|B"},
    {"quoted_script", "1\n@1[V4 engine roars]", "1000-2000 [V4 engine roars]"},
    {"letters_in_times",
     "1\n@1A\n\n2\n0O:00:03,000 --> 00:00:04,000\nB\n\n3\n00:00:05,000 --> 00:00:O6,000\nC",
     "1000-2000 A", "6 TimeUnreadable; 10 TimeUnreadable"},
    {"too_many_digits", "1\n0000000000001:00:00,000 --> 00:00:02,000\nA\n\n2\n@3B", "3000-4000 B",
     "2 TimeUnreadable"},
    {"most_digits", "999999999999:59:59,999 --> 999999999999:59:59,9999999\nA",
     "3599999999999999999-3599999999999999999 A", "1 EndNotBehindStart"},
    {"negative_times", "1\n-00:00:01,000 --> 00:00:01,000\nA\n\n2\n-0:00:03,0 --> -0:00:02,0\nB",
     "-3000--2000 B; -1000-1000 A", "2 TimeRepaired; 5 EndNotBehindStart; 6 TimeRepaired"},
    {"cut_off_behind_the_number", "1\n@1A\n\n7\n", "1000-2000 A", "5 CueCutOff"},
    {"cut_off_in_the_time_line", "1\n@1A\n\n2\n00:00:03,", "1000-2000 A", "5 CueCutOff"},
    {"number_at_the_end_is_text", "1\n@1A\n2", "1000-2000 A|2"},
    {"other_number_at_the_end_is_text", "1\n@1A\n\n7\nB", "1000-2000 A|7|B"},
    {"lines_in_front", "hello\n1\n@1A", "1000-2000 A", "1 LineIgnored"},
    {"http_header", "content-type: text/plain\nX: y\n\nhello\n1\n@1A", "1000-2000 A",
     "4 LineIgnored"},
    {"tags",
     "@1<i>A</I> <font color=\"red\">B</font></b> <x>C</x> < i>D {\\b1}E{y:i}F{note} { \\an2} "
     "\\n\\h",
     "1000-2000 A B <x>C</x> < i>D EF{note} { \\an2} \\n\\h"},
    {"unclosed_tags", "@1<b>A\n<i\n{\\b1\nB{", "1000-2000 A|<i|{\\b1|B{", "1 TagUnclosed"},
    {"entities",
     "@1&lt;&amp;amp;&quot;&apos;&#x41;&#00000066;&#0150;&nbsp;&#xA0;C &copy; &#0; &#xD800; &amp "
     "&acE;",
     "1000-2000 <&amp;\"'AB\u2013\xC2\xA0\xC2\xA0"
     "C \u00A9 &#0; &#xD800; &amp \u223E\u0333"},
    {"breaks_of_ass", "@1A\\NB\\\\N\\\\\\NC\\", "1000-2000 A|B|\\|C\\"},
    {"times_with_more_behind_them",
     "00:00:01,000.25 --> 00:00:02,000.5\nA\n\n2\n00:00:03,000, --> 00:00:04,000:5\nB\n\n"
     "00:00:05,000 x-->00:00:06,000x\nC\n\n7\n0:07 x --> 0:08\nD",
     "1000-2000 A; 3000-4000 B; 5000-6000 C",
     "1 TimeRepaired; 1 NumberMissing; 5 TimeRepaired; 8 TimeRepaired; 8 NumberMissing; "
     "12 TimeUnreadable"},
    {"no_fraction", "00:00:01, --> 0:00:02.\nA\n\n00:00:03 , -->00:00:04", "1000-2000 A",
     "1 TimeRepaired; 4 TimeRepaired; 4 CueWithoutText"},
    {"marks_in_front_of_lines",
     "\uFEFF\uFEFF1\n@1A\n\uFEFFB\uFEFF\n\u200E2\u00A0\n\u3000\u202A@3\u200EC\x1A\x1A",
     "1000-2000 A|B; 3000-4000 \u200EC"},
    {"alignment", "@1{\\an8}A{\\an9}\n\n@3{\\an0}B", "1000-2000 @8 A; 3000-4000 B"},
    {"white_space", "@1\xC2\xA0 A\xC2\xA0 B \xE3\x80\x80\n\t\n\xE2\x80\x89<i> </i>\n",
     "1000-2000 A\xC2\xA0 B"},
    {"no_text", "1\n@1\n2\n@3<i></i>&nbsp;\n\n3\n@5C", "5000-6000 C",
     "1 CueWithoutText; 4 CueWithoutText"},
    {"doubles", "@1A\n\n@1B\n\n@1A\n\n@3A\n\n@1A\n\n@3B",
     "1000-2000 A; 1000-2000 B; 1000-2000 A; 1000-2000 A; 3000-4000 A; 3000-4000 B",
     "4 Overlap; 7 Duplicate; 13 Duplicate; 16 Overlap"},
    {"never_shown", "00:00:02,000 --> 00:00:02,000\nA\n\n00:00:03,000 --> 00:00:01,000\nB\n\n@3C",
     "2000-2000 A; 3000-1000 B; 3000-4000 C", "1 EndNotBehindStart; 4 EndNotBehindStart"},
    {"sorted", "@5C\n\n@1A\n\n@3B\n\n@1D", "1000-2000 A; 1000-2000 D; 3000-4000 B; 5000-6000 C",
     "10 Overlap"},
    {"mostly_ascii_control_characters", "@1A\x1A\x01", "1000-2000 A\x1A\x01"},
};

const Row kAss[] = {
    {"no_format_line", "#1A, b\n#3B", "1000-2000 A, b; 3000-4000 B"},
    {"columns_in_any_order",
     "[Events]\n fORMAT : END, x, start,TEXT\nDIALOGUE :0:00:02.00,0, 0:0:1.5 ,A, b",
     "1500-2000 A, b", "3 TimeRepaired"},
    {"text_in_front", "Format: Text, Start, End\nDialogue: A,0:00:01.00,0:00:02.00", "1000-2000 A"},
    {"columns_missing", "#1A\nDialogue: 0,0:00:03.00,0:00:04.00,Default,,0,0,B", "1000-2000 A",
     "2 ColumnsMissing"},
    {"broken_times",
     "#1A\nDialogue: 0,Invalid,0:00:04.00,,,0,0,0,,B\nDialogue: 0,0:00:03.00,,,,0,0,0,,C",
     "1000-2000 A", "2 TimeUnreadable; 3 TimeUnreadable"},
    {"overrides", "#1{\\an8}A{x}B{\\i1\\b}C\\ND\\nE\\hF\\xG <i>&amp; {}\\N\\N \\h\\NH",
     "1000-2000 @8 ABC|D|E F\\xG <i>&amp;|H"},
    {"drawings", "#1A{\\p1}m 0 0\\N1{\\pos(1,2)}2{\\p0}B{\\p4}m\n#3{\\p1}m 0 0\n#5C{\\t(\\p1)}m",
     "1000-2000 AB; 5000-6000 C"},
    {"fractions_of_three_digits_alone",
     "Dialogue: 0,0:00:01.100,0:00:02.100,,,0,0,0,,A\n#3B\n"
     "Dialogue: 0,0:00:05.020,0:00:06.020,,,0,0,0,,C",
     "1100-2100 A; 3000-4000 B; 5020-6020 C"},
    {"last_column_of_another_name",
     "[Events]\nFormat: Start, End, Lyrics\nDialogue: 0:00:01.00,0:00:02.00,A, b\n"
     "Format: Text, Start, End\nDialogue: C,0:00:03.00,0:00:04.00",
     "1000-2000 A, b; 3000-4000 C"},
    {"unclosed_override", "#1A{\\b1}B{\\i1 C{\\N D", "1000-2000 AB{\\i1 C{|D", "1 TagUnclosed"},
    {"other_events", "Comment: 0,0:00:01.00,0:00:02.00,,,0,0,0,,A\nPicture: 0,,,,\n#3B",
     "3000-4000 B"},
    {"attachments",
     "#1A\n[Fonts]\n#3B\n[X]\n#4C\n[Events]\n#5D\n[graphics]\n#6E\n[V4+ Styles]\n#7F",
     "1000-2000 A; 5000-6000 D; 7000-8000 F"},
    {"alignments",
     "[V4+ Styles]\nFormat: Alignment, Name\nStyle: 7,*Default\n#1A\n#3{\\a6}B\n#5{\\an5\\an3}C",
     "1000-2000 @7 A; 3000-4000 @8 B; 5000-6000 @5 C"},
    {"alignment_of_ssa", "[V4 Styles]\nFormat: Name, Alignment\nStyle: Default, 10\n#1A",
     "1000-2000 @5 A"},
    {"styles_below_events",
     "[V4+ Styles]\nFormat: Name, Alignment\nStyle: Default,7\n[Events]\n#1A\n[V4 STYLES]\n"
     "Format: Name, Alignment\nStyle: Default,10\n[Events]\n#3B",
     "1000-2000 @5 A; 3000-4000 @5 B"},
    {"standard_columns_of_four_margins",
     "[Script Info]\nScriptType: v4.00++\n[Fonts]\nX\n[EVENTS]\n"
     "Dialogue: 0,0:00:01.00,0:00:02.00,,,0,0,0,0,,A, b",
     "1000-2000 A, b"},
    {"section_of_four_margins",
     "[V4++ Styles]\n[Events]\nDialogue: 0,0:00:01.00,0:00:02.00,,,0,0,0,0,,A, b",
     "1000-2000 A, b"},
    {"unknown_style", "[V4+ Styles]\nStyle: Other,Arial\n#1A", "1000-2000 A", "3 UnknownStyle"},
    {"overlap", "#3B\n#1A\nDialogue: 1,0:00:01.50,0:00:03.50,Default,,0,0,0,,C",
     "1000-2000 A; 1500-3500 C; 3000-4000 B", "1 Overlap; 3 Overlap"},
    {"in_a_srt_file", "[Script Info]\n1\n@1A\n#3B", "3000-4000 B"},
};

std::string nameOf(const testing::TestParamInfo<Row>& info) { return info.param.name; }
INSTANTIATE_TEST_SUITE_P(SubRip, Import, testing::ValuesIn(kSubRip), nameOf);
INSTANTIATE_TEST_SUITE_P(Ass, Import, testing::ValuesIn(kAss), nameOf);

TEST(Import, everyLineEnd_isRead) {
  const std::string text = withTimes("1\n@1A\nB\n\n2\n@3C\n");
  const std::pair<const char*, ksImportLineEnds> ends[] = {
      {"\n", ksImportLineEnds::kLf},
      {"\r\n", ksImportLineEnds::kCrLf},
      {"\r", ksImportLineEnds::kCr},
      {"\r\r\n", ksImportLineEnds::kCrCrLf},
  };
  std::string mixed;
  for (std::size_t i = 0; i < text.size(); ++i) {
    mixed += text[i] == '\n' ? ends[i % 3].first : text.substr(i, 1);
  }
  const auto expectRead = [](const std::string& file, ksImportLineEnds kind, int lastCue) {
    ksImportParser parser;
    EXPECT_TRUE(openText(parser, file));
    EXPECT_EQ(cuesOf(parser), "1000-2000 A|B; 3000-4000 C") << testing::PrintToString(file);
    EXPECT_EQ(parser.report().lineEnds(), kind);
    EXPECT_EQ(parser.cues().back().line, lastCue);
    EXPECT_EQ(notesOf(parser), "");
  };
  for (const auto& [end, kind] : ends) {
    std::string file;
    for (const char c : text) file += c == '\n' ? end : std::string(1, c);
    expectRead(file, kind, 6);
    for (std::size_t left = 1; left <= std::string_view(end).size(); ++left) {
      file.pop_back();
      if (left < std::string_view(end).size()) continue;  // half a line end is another kind
      expectRead(file, kind, 6);
    }
  }
  expectRead(mixed, ksImportLineEnds::kMixed, 5);  // one "\r" is before a "\n"
  std::string doubled;
  for (const char c : text) doubled += c == '\n' ? "\r\r\n" : std::string(1, c);
  expectRead(doubled.replace(doubled.find("B\r\r\n") + 1, 3, "\r"), ksImportLineEnds::kMixed, 6);
}

TEST(Import, queries_answerWithTheSpanOfWhatIsShown) {
  ksImportParser parser;
  EXPECT_TRUE(openText(parser,
                       "-00:00:01,000 --> 00:00:01,000\nA\n\n00:00:03,000 --> 00:00:06,000\nB\n\n"
                       "00:00:02,000 --> 00:00:04,000\n\xC3\xA9\xF0\x9F\x8E\xAC\n\n"
                       "00:00:06,000 --> 00:00:07,000\nC\n\n00:00:05,000 --> 00:00:05,000\nD\n"));
  const std::tuple<long long, long long, long long, const char*> answers[] = {
      {LLONG_MIN, -1, -1, ""},
      {-1, -1, -1, ""},
      {0, 0, 1000, "\nA"},
      {1000, 0, 1000, "\nA"},
      {1001, -1, -1, ""},
      {2000, 2000, 3000, "\n\xC3\xA9\xF0\x9F\x8E\xAC"},
      {3999, 3000, 4000, "\nB\n\xC3\xA9\xF0\x9F\x8E\xAC"},
      {4000, 4000, 6000, "\nB"},
      {5000, 4000, 6000, "\nB"},
      {6000, 6000, 7000, "\nC"},
      {7000, 6000, 7000, "\nC"},
      {LLONG_MAX, -1, -1, ""},
  };
  for (const auto& [t, start, end, text] : answers) {
    EXPECT_EQ(ask(parser, t), (ShownText{start, end, text})) << t;
    const SUBTITLE_ST_U wideAnswer = parser.GetSubTitleU(t);
    EXPECT_EQ(std::pair(wideAnswer.start, wideAnswer.end), std::pair(start, end)) << t;
  }
  EXPECT_EQ(std::wstring(parser.GetSubTitleU(3000).text.getData()), L"\nB\n\u00E9\U0001F3AC");
  EXPECT_EQ(parser.DurationTime(), 7000);
}

TEST(Import, answersToGeneratedOverlaps_areThoseOfALookAtEveryCue) {
  Random random(1);
  for (int file = 0; file < 2000; ++file) {
    const unsigned most = file % 50 == 0 ? 300 : 12;
    const unsigned latest = 5 + random() % 60;
    std::string text;
    for (unsigned i = 0; i < most; ++i) {
      const int start = static_cast<int>(random() % latest) - 3;
      const unsigned end = random() % latest;
      text += (start < 0 ? "-" : "") + "0:0:0,"s + std::to_string(1000 + std::abs(start)).substr(1);
      text += " --> 0:0:0," + std::to_string(1000 + end).substr(1) + "\n(" + std::to_string(i % 7) +
              ")\n\n";
    }
    ksImportParser parser;
    ASSERT_TRUE(openText(parser, text));
    ASSERT_EQ(parser.cues().size(), most);
    for (long long t = -2; t <= latest + 2; ++t) {
      ASSERT_EQ(ask(parser, t), shownAt(parser.cues(), t)) << text << t;
    }
  }
}

TEST(Import, filesThatAreNotSubtitles_areRefusedWithAReason) {
  const auto utf16 = [](std::string_view ascii) {
    std::string bytes = "\xFF\xFE";
    for (const char c : ascii) bytes += {c, '\0'};
    return bytes;
  };
  const std::string composition = "\x16\0\xB"s + std::string(11, '\0');  // of PGS, no objects
  const std::pair<std::string, ksImportRefusal> cases[] = {
      {"", ksImportRefusal::kEmpty},
      {"\x1F\x8B\x08"s, ksImportRefusal::kBinary},
      {"PK\3\4"s + withTimes("@1A"), ksImportRefusal::kBinary},
      {"\0\1\2\3\4\5\6\7\x8\xE\xF"s, ksImportRefusal::kBinary},
      {"\0\0\1\xBA"s + "pack", ksImportRefusal::kPictures},
      {"# VobSub index file, v7\ntimestamp: 00:00:01:000, filepos: 0\n",
       ksImportRefusal::kPictures},
      {"cut\0\0\1\xBA\x44"s, ksImportRefusal::kPictures},
      {utf16("timestamp: 00:00:01:000, filepos: 0\n"), ksImportRefusal::kPictures},
      {"PG\0\0\0\1\0\0\0\0\x16\0\x13"s, ksImportRefusal::kPictures},
      {composition + "\x17\0\1\0\x80\0\0"s, ksImportRefusal::kPictures},
      {composition + "\x17\0\xA cut"s, ksImportRefusal::kPictures},
      {composition + "1\0\0"s, ksImportRefusal::kBinary},
      {"A letter,\nno film.\n", ksImportRefusal::kUnknownFormat},
      {"\n", ksImportRefusal::kUnknownFormat},
      {"Content-Type: text/plain\nX: y\n", ksImportRefusal::kUnknownFormat},
  };
  ksImportParser parser;
  EXPECT_EQ(parser.report().refusal(), ksImportRefusal::kNotOpened);
  EXPECT_EQ(parser.report().refusalSentence(), "No file has been opened.");
  for (const auto& [bytes, refusal] : cases) {
    ASSERT_TRUE(openText(parser, withTimes("@1A")));
    EXPECT_FALSE(openText(parser, bytes));
    EXPECT_EQ(parser.report().refusal(), refusal) << testing::PrintToString(bytes);
    EXPECT_NE(parser.report().refusalSentence(), "");
    EXPECT_FALSE(parser.IsOpen());
    EXPECT_TRUE(parser.cues().empty());
    EXPECT_EQ(ask(parser, 1500), ShownText());
    EXPECT_EQ(parser.DurationTime(), 0);
  }
  EXPECT_FALSE(parser.OpenMemory(nullptr, 0));
  const auto refusalWith = [&](auto ksImportOptions::*member, auto value) {
    ksImportOptions options;
    options.*member = value;
    EXPECT_FALSE(openText(parser, withTimes("@1A"), options));
    EXPECT_NE(parser.report().refusalSentence(), "");
    return parser.report().refusal();
  };
  EXPECT_EQ(refusalWith(&ksImportOptions::format, "x"), ksImportRefusal::kUnknownFormatName);
  EXPECT_EQ(refusalWith(&ksImportOptions::encoding, "x"), ksImportRefusal::kUnknownEncodingName);
  EXPECT_EQ(refusalWith(&ksImportOptions::maxBytes, 30U), ksImportRefusal::kTooLarge);
}

TEST(Import, filesThatCannotBeRead_areRefusedWithAReason) {
  const TempDir dir;
  ksImportParser parser;
  EXPECT_FALSE(parser.Open(dir.path("none.srt").c_str()));
  EXPECT_EQ(parser.report().systemError(), ENOENT);
  EXPECT_FALSE(parser.Open(dir.path("").c_str()));
  EXPECT_EQ(parser.report().refusal(), ksImportRefusal::kCannotOpen);
  EXPECT_EQ(parser.report().systemError(), EISDIR);
  const std::string large = dir.write("large.srt", withTimes("@1A"));
  std::filesystem::resize_file(large, std::uintmax_t{1} << 36);  // more than can be read
  EXPECT_FALSE(parser.Open(large.c_str()));
  EXPECT_EQ(parser.report().refusal(), ksImportRefusal::kTooLarge);
  ksImportOptions options;
  options.maxBytes = 100000;
  EXPECT_FALSE(parser.Open("/dev/zero", options));
  EXPECT_EQ(parser.report().refusal(), ksImportRefusal::kTooLarge);
  EXPECT_EQ(parser.report().systemError(), 0);
}

TEST(Import, aPipe_isReadToItsEnd) {
  const TempDir dir;
  const std::string path = dir.path("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::string text;
  for (int i = 0; i < 20000; ++i) text += withTimes("@1") + std::to_string(i) + " A\n\n";
  const std::jthread writer([&] { std::ofstream(path) << text; });
  ksImportParser parser;
  EXPECT_TRUE(parser.Open(path.c_str()));
  EXPECT_EQ(parser.cues().size(), 20000U);
  EXPECT_EQ(parser.report().size(), text.size());
  EXPECT_EQ(parser.report().count(ksImportProblem::kOverlap), 19999U);
  EXPECT_EQ(parser.report().notes().size(), 1000U);
}

TEST(Import, notesOfTheFirstLines_areKept) {
  std::string text = withTimes("@1A\n\n@1B\n\n");
  for (int i = 0; i < 2500; ++i) text += withTimes("@3\n");
  ksImportParser parser;
  EXPECT_TRUE(openText(parser, text));
  EXPECT_EQ(parser.report().notes().size(), 1000U);
  EXPECT_TRUE(notesOf(parser).starts_with("4 Overlap; 7 CueWithoutText; 9 Cue"));
  EXPECT_EQ(parser.report().notes().back().line, 7 + 2 * 998);
  EXPECT_EQ(parser.report().count(ksImportProblem::kCueWithoutText), 2500U);
  ksImportOptions options;
  options.encoding = "UTF-8";
  EXPECT_FALSE(openText(parser, std::string(1500, '\xFF'), options));
  EXPECT_EQ(parser.report().notes().size(), 1000U);
}

TEST(Import, aMove_leavesTheSourceClosedAndViewsValid) {
  ksImportParser source;
  ASSERT_TRUE(openText(source, withTimes("@1A\n\n@3B")));
  const std::span<const ksImportCue> cues = source.cues();
  const std::string_view format = source.report().format();
  ksImportParser target;
  ASSERT_TRUE(openText(target, withTimes("@5C")));
  target = std::move(source);
  EXPECT_EQ(cues.back().text, "B");
  EXPECT_EQ(format, "subrip");
  EXPECT_EQ(target.cues().data(), cues.data());
  EXPECT_EQ(ask(target, 3000), (ShownText{3000, 4000, "\nB"}));
  EXPECT_FALSE(source.IsOpen());  // NOLINT: a moved parser is closed
  EXPECT_EQ(ask(source, 3000), ShownText());
  EXPECT_TRUE(openText(source, withTimes("@5C")));
  const ksImportParser last(std::move(target));
  EXPECT_EQ(last.cues().data(), cues.data());
}

}  // namespace
