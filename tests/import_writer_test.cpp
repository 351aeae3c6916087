// The writers of the import library: what they write, and that it reads back.
#include <climits>
#include <random>
#include <sstream>

#include "tests/import_support.h"

namespace {

constexpr ksImportTarget kReadable[] = {ksImportTarget::kSubRip, ksImportTarget::kWebVtt,
                                        ksImportTarget::kAss};

ksImportCue cueOf(long long start, long long end, std::string_view text, int alignment = 2) {
  ksImportCue cue;
  cue.start = start;
  cue.end = end;
  cue.text = text;
  cue.alignment = alignment;
  return cue;
}

ksImportOptions withMarkup(ksImportMarkup markup) {
  ksImportOptions options;
  options.markup = markup;
  return options;
}

const ksImportOptions kHtml = withMarkup(ksImportMarkup::kHtml);

struct Row {
  const char* name;
  ksImportTarget target;
  const char* text;  // in kHtml, as a host may pass it
  const char* written;
  const char* readBack;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.text; }

class Writer : public testing::TestWithParam<Row> {};

std::string bodyOf(std::string file, ksImportTarget target) {
  const char* const lastBefore = target == ksImportTarget::kAss      ? "0,0,0,,"
                                 : target == ksImportTarget::kWebVtt ? "02.000"
                                                                     : ",000\n";
  file.erase(0, file.find(lastBefore) + std::string_view(lastBefore).size());
  return file;
}

TEST_P(Writer, writesWhatReadsBack) {
  const ksImportCue cue = cueOf(1000, 2000, GetParam().text, 7);
  const std::string file = ksImportWrite({&cue, 1}, GetParam().target, ksImportMarkup::kHtml);
  EXPECT_EQ(bodyOf(file, GetParam().target), std::string(GetParam().written) + "\n");
  ksImportParser parser;
  ASSERT_TRUE(openText(parser, file, kHtml));
  EXPECT_EQ(cuesOf(parser), std::string("1000-2000 @7 ") + GetParam().readBack);
  EXPECT_EQ(notesOf(parser), "");
}

constexpr const char* kStyledText =
    "<i>A<b>B</i>\nC</b> <s>D</s><font color=\"#ff0000\">E</font><u>F</u>"
    "<font color='#123456'>G</font>";
constexpr const char* kSigns = "{\\an3} <x> \\N\\h\\x &lt;i> {y:b} {no} &amp;amp; &amp; & > <";
const Row kRows[] = {
    {"SubRip_style", ksImportTarget::kSubRip, kStyledText,
     "{\\an7}<i>A</i><i><b>B</b></i>\n<b>C</b> <s>D</s><font color=\"#ff0000\">E</font><u>F</u>"
     "<font color=\"#123456\">G</font>",
     "<i>A</i><i><b>B</b></i>|<b>C</b> <s>D</s><font color=\"#ff0000\">E</font><u>F</u>"
     "<font color=\"#123456\">G</font>"},
    {"WebVTT_style", ksImportTarget::kWebVtt, kStyledText,
     " line:0 align:left\n<i>A</i><i><b>B</b></i>\n<b>C</b> D<c.red>E</c><u>F</u>"
     "<c.black>G</c>",
     "<i>A</i><i><b>B</b></i>|<b>C</b> D<font color=\"#ff0000\">E</font><u>F</u>"
     "<font color=\"#000000\">G</font>"},
    {"ASS_style", ksImportTarget::kAss, kStyledText,
     "{\\an7\\i1}A{\\b1}B\\N{\\i0}C{\\b0} {\\s1}D{\\s0\\c&H0000ff&}E{\\u1\\c}F"
     "{\\u0\\c&H563412&}G",
     "<i>A</i><i><b>B</b></i>|<b>C</b> <s>D</s><font color=\"#ff0000\">E</font><u>F</u>"
     "<font color=\"#123456\">G</font>"},
    {"SubRip_signs", ksImportTarget::kSubRip, kSigns,
     "{\\an7}{<i></i>\\an3} <x> &#92;N\\h\\x &lt;i> {<i></i>y:b} {<i></i>no} &amp;amp; & & > <",
     "{\\an3} &lt;x&gt; \\N\\h\\x &lt;i&gt; {y:b} {no} &amp;amp; &amp; &amp; &gt; &lt;"},
    {"WebVTT_signs", ksImportTarget::kWebVtt, kSigns,
     " line:0 align:left\n{\\an3} &lt;x&gt; \\N\\h\\x &lt;i&gt; {y:b} {no} &amp;amp; &amp; &amp; "
     "&gt; &lt;",
     "{\\an3} &lt;x&gt; \\N\\h\\x &lt;i&gt; {y:b} {no} &amp;amp; &amp; &amp; &gt; &lt;"},
    {"ASS_signs", ksImportTarget::kAss, kSigns,
     "{\\an7}(\\an3) <x> \\\u2060N\\\u2060h\\x <i> (y:b) (no) &amp; & & > <",
     "(\\an3) &lt;x&gt; \\N\\h\\x &lt;i&gt; (y:b) (no) &amp;amp; &amp; &amp; &gt; "
     "&lt;"},
    {"SubRip_times_in_text", ksImportTarget::kSubRip,
     "00:00:05,0 --&gt; 00:00:06,0\n9:00 -> 17:00\n42\n9:00 -> 17:00\n7\na --> 9:00",
     "{\\an7}00:00:05,0 --> 00:00:06,0\n9:00 -> 17:00\n42\n9:00 -&#62; 17:00\n7\na --&#62; 9:00",
     "00:00:05,0 --&gt; 00:00:06,0|9:00 -&gt; 17:00|42|9:00 -&gt; 17:00|7|a --&gt; 9:00"},
    {"SubRip_times_below_text", ksImportTarget::kSubRip,
     "a\n00:00:05,0 --> 00:00:06,0\n00:00:05,0 --> <i>00:00:06,0</i>",
     "{\\an7}a\n00:00:05,0 --&#62; 00:00:06,0\n00:00:05,0 --> <i>00:00:06,0</i>",
     "a|00:00:05,0 --&gt; 00:00:06,0|00:00:05,0 --&gt; <i>00:00:06,0</i>"},
    {"SubRip_signs_within_signs", ksImportTarget::kSubRip, "{\\b {\\i} &lt;font &lt;i>",
     "{\\an7}{<i></i>\\b {<i></i>\\i} &lt;font &lt;i>", "{\\b {\\i} &lt;font &lt;i&gt;"},
    {"form_of_texts", ksImportTarget::kSubRip,
     "\r\n <i>\t</i>\r a\xFF \n\n\xC2\xA0<i> b &#10;&#9;</i>", "{\\an7}a\xEF\xBF\xBD\n<i>b</i>",
     "a\xEF\xBF\xBD|<i>b</i>"},
};

INSTANTIATE_TEST_SUITE_P(Rows, Writer, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });

TEST(Writer, files_areSortedNumberedAndEndInOneLineFeed) {
  const ksImportCue cues[] = {
      cueOf(3000, 4000, "B"),     cueOf(-500, 1004, "A\nA"),
      cueOf(3000, 4005, "C"),     cueOf(5000, 5000, "never"),
      cueOf(-9, 0, "never"),      cueOf(6000, 7000, " \n"),
      cueOf(8001, 8004, "short"), cueOf(359999000, 4000000000, "late"),
  };
  const std::pair<ksImportTarget, const char*> files[] = {
      {ksImportTarget::kSubRip,
       "1\n00:00:00,000 --> 00:00:01,004\nA\nA\n\n2\n00:00:03,000 --> 00:00:04,000\nB\n\n"
       "3\n00:00:03,000 --> 00:00:04,005\nC\n\n4\n00:00:08,001 --> 00:00:08,004\nshort\n\n"
       "5\n0099:59:59,000 --> 1111:06:40,000\nlate\n"},
      {ksImportTarget::kWebVtt,
       "WEBVTT\n\n1\n00:00:00.000 --> 00:00:01.004\nA\nA\n\n2\n00:00:03.000 --> 00:00:04.000\nB\n\n"
       "3\n00:00:03.000 --> 00:00:04.005\nC\n\n4\n00:00:08.001 --> 00:00:08.004\nshort\n\n"
       "5\n99:59:59.000 --> 1111:06:40.000\nlate\n"},
      {ksImportTarget::kAss,
       "Dialogue: 0,0:00:00.00,0:00:01.00,Default,,0,0,0,,A\\NA\n"
       "Dialogue: 0,0:00:03.00,0:00:04.00,Default,,0,0,0,,B\n"
       "Dialogue: 0,0:00:03.00,0:00:04.01,Default,,0,0,0,,C\n"
       "Dialogue: 0,0:00:08.00,0:00:08.01,Default,,0,0,0,,short\n"
       "Dialogue: 0,99:59:59.00,1111:06:40.00,Default,,0,0,0,,late\n"},
      {ksImportTarget::kText, "A\nA\n\nB\n\nC\n\nshort\n\nlate\n"},
  };
  for (const auto& [target, expected] : files) {
    std::string file = ksImportWrite(cues, target);
    file.erase(0, target == ksImportTarget::kAss ? file.find("Dialogue:") : 0);
    EXPECT_EQ(file, expected);
  }
  const ksImportCue endless = cueOf(1, LLONG_MAX, "A", 12);
  for (const ksImportTarget target : kReadable) {
    ksImportParser parser;
    ASSERT_TRUE(openText(parser, ksImportWrite({&endless, 1}, target)));
    EXPECT_EQ(parser.DurationTime(), 3'599'999'999'999'999'990LL);
    EXPECT_EQ(openText(parser, ksImportWrite({}, target)), target != ksImportTarget::kSubRip);
  }
}

struct Random {
  explicit Random(unsigned seed) : engine(seed) {}
  unsigned operator()() { return static_cast<unsigned>(engine()); }
  std::mt19937 engine;
};

/// The lines of a text as they should read back: trimmed, none of them empty.
std::string normalForm(const std::string& text) {
  std::string joined;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const auto isSpace = [&](std::size_t at) {
      return line[at] == ' ' || line[at] == '\xC2' || line[at] == '\xA0';
    };
    while (!line.empty() && isSpace(line.size() - 1)) line.pop_back();
    while (!line.empty() && isSpace(0)) line.erase(0, 1);
    if (!line.empty()) joined += (joined.empty() ? "" : "|") + line;
  }
  return joined;
}

/// Cues that every target can express.
struct GeneratedCues {
  explicit GeneratedCues(Random& random) {
    const std::size_t count = 1 + random() % 5;
    html.reserve(count);  // views into the texts stay valid
    long long start = 0;
    while (html.size() < count) {
      const std::string text = addText(random);
      start += random() % 4 * 10;
      cues.push_back(cueOf(start, start + 10 + random() % 300 * 10, html.back(), 7));
      expected += (expected.empty() ? "" : "; ") + std::to_string(start) + "-" +
                  std::to_string(cues.back().end) + " @7 " + normalForm(text);
    }
  }

  /// Adds it to `html` and returns it without its tags.
  std::string addText(Random& random) {
    // No braces, which ASS cannot express.
    constexpr const char* kPieces[] = {"00:00:01,000",
                                       "-->",
                                       "->",
                                       "\xE2\x80\x94>",
                                       "<i>",
                                       "</b>",
                                       "<",
                                       "&lt;",
                                       "&",
                                       "\\",
                                       "1",
                                       "12",
                                       "\n",
                                       " ",
                                       "x",
                                       "N",
                                       ">",
                                       "--",
                                       ";",
                                       "[Events]",
                                       "WEBVTT",
                                       "<c.a>",
                                       ":",
                                       "NOTE",
                                       "\"",
                                       "Dialogue: 0,",
                                       "\xC2\xA0",
                                       "\xC3\xA9",
                                       "&nbsp"};
    constexpr const char* kTags[][2] = {{"", ""},
                                        {"<i>", "</i>"},
                                        {"<b>", "</b>"},
                                        {"<u>", "</u>"},
                                        {"<font color=\"#00ff00\">", "</font>"},
                                        {"<font color=\"#010203\">", "</font>"}};
    std::string text = "a" + std::to_string(html.size());
    std::string& styled = html.emplace_back(text);
    for (unsigned i = random() % 12; i > 0; --i) {
      const std::string piece = kPieces[random() % std::size(kPieces)];
      const auto& [opening, closing] = kTags[random() % std::size(kTags)];
      text += piece;
      styled += opening;
      for (const char c : piece)
        styled += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
      styled += closing;
    }
    return text;
  }

  std::vector<std::string> html;
  std::vector<ksImportCue> cues;
  std::string expected;  // as cuesOf() prints them, in plain text
};

TEST(Writer, generatedCues_areTheSameAfterAnyTwoFormats) {
  Random random(1);
  for (int i = 0; i < 300; ++i) {
    const GeneratedCues generated(random);
    std::string styled;
    for (const ksImportTarget first : kReadable) {
      const std::string file =
          ksImportWrite(generated.cues, first, ksImportMarkup::kHtml, ksImportColors::kExactColors);
      ksImportParser parser;
      ASSERT_TRUE(openText(parser, file));
      ASSERT_EQ(cuesOf(parser), generated.expected) << file;
      ASSERT_TRUE(openText(parser, file, kHtml));
      if (styled.empty()) styled = cuesOf(parser);
      ASSERT_EQ(cuesOf(parser), styled) << file;
      for (const ksImportTarget second : kReadable) {
        const std::string again = ksImportWrite(parser.cues(), second, ksImportMarkup::kHtml,
                                                ksImportColors::kExactColors);
        ksImportParser other;
        ASSERT_TRUE(openText(other, again, kHtml));
        ASSERT_EQ(cuesOf(other), styled) << file << again;
      }
    }
  }
}

TEST(Writer, subRipOfTwoLines_getsTheSameAnswersFromTheFixedReaders) {
  const TempDir dir;
  Random random(2);
  ksSubtitleManager manager;
  ksImportParser parser;
  for (int i = 0; i < 1000; ++i) {
    std::vector<std::string> texts(1 + random() % 4);
    std::vector<ksImportCue> cues;
    long long time = random() % 2 * 359'997'000LL;  // just below 100 hours
    for (std::string& text : texts) {
      constexpr const char* kPieces[] = {"a", "7", "\xC3\xA9", " b", "-c", ": ", "?", "\\n", ",0"};
      for (unsigned n = random() % 12; n > 0; --n) text += kPieces[random() % std::size(kPieces)];
      text = "x" + text + (random() % 2 == 0 ? "x" : "x\nY" + text + "x");
      time += random() % 3 * 700;
      cues.push_back(cueOf(time, time + 1 + random() % 5000, text));
      time = cues.back().end;
    }
    const std::string file = ksImportWrite(cues, ksImportTarget::kSubRip);
    ASSERT_TRUE(manager.Open(dir.write("film.srt", file).c_str()));
    ASSERT_TRUE(openText(parser, file));
    for (const ksImportCue& cue : cues) {
      for (const long long t : {cue.start - 1, cue.start, cue.end, cue.end + 1}) {
        ASSERT_EQ(describe(manager.GetSubTitle(t)), describe(parser.GetSubTitle(t))) << t << file;
      }
    }
  }
}

}  // namespace
