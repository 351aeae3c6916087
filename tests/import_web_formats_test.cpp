// WebVTT and SAMI through the import library: small texts and the cues that they hold.
#include <gtest/gtest.h>
#include <kssubtitle/import.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Case {
  std::string name;
  std::string text;
  std::string cues;  // "start-end text" of each, separated by '|'
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

std::string cuesOf(std::string_view text, const ksImportOptions& options = {}) {
  ksImportParser parser;
  if (!parser.OpenMemory(text.data(), text.size(), options)) return "refused";
  std::string all;
  for (const ksImportCue& cue : parser.cues()) {
    if (!all.empty()) all += '|';
    all += std::to_string(cue.start) + '-' + std::to_string(cue.end) + ' ';
    all += cue.text;
  }
  return all;
}

class WebFormats : public testing::TestWithParam<Case> {};

TEST_P(WebFormats, Holds_these_cues) { EXPECT_EQ(cuesOf(GetParam().text), GetParam().cues); }

constexpr const char* kHead = "WEBVTT\n\n";

std::vector<Case> webVttCases() {
  const std::string head = kHead;
  return {
      {"Header_ends_at_times", "WEBVTT 00:01.000 --> 00:02.000\n00:01.000 --> 00:02.000\na",
       "1000-2000 a"},
      {"Bad_times_drop_a_cue",
       head + "00:01.000 --> 00:60.000\na\n\n00:01,000 --> 00:02.000\nb\n\n"
              "9999999999999:00:01.000 --> 00:02.000\nc",
       ""},
      {"Other_fractions_if_no_time_is_standard", head + "00:01 --> 00:02,5\na", "1000-2500 a"},
      {"Signature_below_blank_lines",
       "\n \nWEBVTT - a\n\n1\n00:00:01.000 --> 00:00:02.000 line:0\n<v B>a", "1000-2000 a"},
      {"No_signature", "WEBVTTX\n\n00:01.000 -> x", "refused"},
      {"References",
       head + "00:01.000 --> 00:02.000\n&notit; &notin; &nsubE; &amp &#x41 &#0; &#150; "
              "&x;&#13;&NewLine;&",
       "1000-2000 \u00ACit; \u2209 \u2AC5\u0338 & A \uFFFD \u2013 &x;\n&"},
      {"Unclosed_tag", head + "00:01.000 --> 00:02.000\na<00:01.500>b <q>c</q> <b",
       "1000-2000 ab c"},
  };
}

INSTANTIATE_TEST_SUITE_P(WebVtt, WebFormats, testing::ValuesIn(webVttCases()));

constexpr const char* kTwoLanguages =
    "<!-- a --><?xml version='1.0'?><Sami><STYLE><!-- P {x:y}\n.KRCC {Name:K; lang:ko-KR;}\n"
    ".ENCC, .FRCC {lang: 'en-US'} .ENCC {Name:L}\n.Big {font-size:20pt} --></Style><BODY>\n";

std::vector<Case> samiCases() {
  const std::string head = kTwoLanguages;
  return {
      {"White_space_and_line_ends",
       "<SYNC\r\nStart = 1\r\n><P>a  \r\n b<BR/>\r\n<i> </i>c<br>"
       "<div>d</div>e&nbsp; &nbsp;f<sync start=2 ><p>&nbsp;",
       "1-2 a b\nc\nd\ne\u00A0 \u00A0f"},
      {"Attributes",
       "<SYNC Encrypted=\"a>b\" Start='1'/><P Class=a/>a<SYNC start=\"2>b \"c\" d"
       "<sync x='>' start=+3ms y><p>e<SYNC Start=00:00:00.004<P>&nbsp;",
       "1-2 a|2-3 b \"c\" d|3-4 e"},
      {"Starts",
       "<SYNC Start=-5><P>a<SYNC Start=9><P>c<SYNC Start=7><P>b<SYNC Start=9><P>d"
       "<SYNC><P>x<SYNC Start=1234567890123><P>y<SYNC Start=99999999999>",
       "-5-7 a|7-9 b|9-99999999999 c|9-99999999999 d"},
      {"Ends", "<SYNC Start=1 End=3><P>a<SYNC Start='5' End='9'><P>b<SYNC Start=7 End=8><P>c",
       "1-3 a|5-7 b|7-8 c"},
      {"Without_paragraphs", "<SYNC Start=1>a<SYNC Start=2><SYNC Start=3>b</BODY></SAMI>\nc",
       "1-2 a|3-5003 b"},
      {"Text_like_tags",
       "<SYNC Start=1><P>a<b <3 & x<y <\u00E9> </q>&eacute&#8212;&x;<SYNC Start=2>",
       "1-2 a<b <3 & x<y <\u00E9> \u00E9\u2014&x;"},
      {"Comments",
       head + "<!-- <SYNC Start=1><P>a --><-- b --><SYNC Start=2><!-- c --><P>d<!-- < -->"
              "e<-- f -->g<!-- h<SYNC Start=3><P>&nbsp;",
       "2-3 deg"},
      {"First_language",
       head + "<SYNC Start=1><P Class=krcc>a<P Class=Big>b<P Class=ENCC>c"
              "<SYNC Start=2><P Class=ENCC>&nbsp;<SYNC Start=3><P Class=KRCC>",
       "1-3 a\nb"},
      {"Languages_behind_each_other",
       head + "<SYNC Start=4><P Class=ENCC>a<SYNC Start=7><P Class=ENCC>"
              "<SYNC Start=5><P Class=FRCC>b<SYNC Start=6><P Class=FRCC>",
       "4-7 a"},
      {"Classes_that_are_no_languages",
       "<SYNC Start=1><P Class=A>a<P Class=B>b<SYNC Start=2><P Class=A>c<SYNC Start=3><P Class=B>"
       "<SYNC Start=4><P>d<SYNC Start=5><P Class=B>e",
       "1-2 a|1-3 b|2-4 c|4-5 d|5-5005 e"},
      {"Sheet_unclosed", "x</style><style><!-- .a {lang:en} <sync start=1><p class=a>b<p class=c>d",
       "1-5001 b\nd"},
      {"It_quotes_SubRip", "<SYNC Start=1>\n1\n00:00:01,000 --> 00:00:02,000\n<SYNC Start=2>",
       "1-2 1 00:00:01,000 --> 00:00:02,000"},
  };
}

INSTANTIATE_TEST_SUITE_P(Sami, WebFormats, testing::ValuesIn(samiCases()));

TEST(SamiLanguages, Are_listed_and_selected) {
  const std::string text = std::string(kTwoLanguages) +
                           "<SYNC Start=1><P Class=JPCC>c<P Class=KRCC>a<P Class=XX>d"
                           "<P Class=ENCC>b<P Class=Big>e<SYNC Start=2>";
  for (const auto& [wanted, cue] : {std::pair("", "1-2 c\na\nd\ne"),
                                    {"encc", "1-2 c\nd\nb\ne"},
                                    {"EN", "1-2 c\nd\nb\ne"},
                                    {"en_us", "1-2 c\nd\nb\ne"},
                                    {"jpcc", "1-2 c\ne"},
                                    {"FRCC", "1-2 c\na\nd\ne"}}) {
    ksImportOptions options;
    options.language = wanted;
    EXPECT_EQ(cuesOf(text, options), cue) << wanted;
  }
  ksImportParser parser;
  parser.OpenMemory(text.data(), text.size());
  const auto languages = parser.report().languages();
  EXPECT_EQ(std::vector(languages.begin(), languages.end()),
            (std::vector<std::string>{"KRCC", "ENCC", "JPCC", "XX"}));
}

}  // namespace
