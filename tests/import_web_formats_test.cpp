// WebVTT through the import library: small texts and the cues that they hold.
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
      {"Arrows_begin_blocks",
       head + "x-->\n00:01.000-->00:02.000 line:0\na\n1:00:02.000 --> 1:00:03.000\nb",
       "1000-2000 a|3602000-3603000 b"},
      {"Second_line_may_have_times",
       head + "id\n00:01.000 --> 00:02.000\na\n\nx\ny\n00:03.000 --> 00:04.000\nb",
       "1000-2000 a|3000-4000 b"},
      {"Header_ends_at_times", "WEBVTT 00:01.000 --> 00:02.000\n00:01.000 --> 00:02.000\na",
       "1000-2000 a"},
      {"Bad_times_drop_a_cue",
       head + "00:01.000 --> 00:60.000\na\n\n00:01,000 --> 00:02.000\nb\n\n"
              "9999999999999:00:01.000 --> 00:02.000\nc",
       ""},
      {"Other_fractions_if_no_time_is_standard", head + "00:01 --> 00:02,5\na", "1000-2500 a"},
      {"Notes_are_no_text", head + "NOTE a\nb\n\nSTYLE\nc\n\n00:01.000 --> 00:02.000\nNOTE d",
       "1000-2000 NOTE d"},
      {"No_signature", "WEBVTTX\n\n00:01.000 -> x", "refused"},
      {"References",
       head + "00:01.000 --> 00:02.000\n&notit; &notin; &nsubE; &amp &#x41 &#0; &#150; &x; &",
       "1000-2000 \u00ACit; \u2209 \u2AC5\u0338 & A \uFFFD \u2013 &x; &"},
      {"Unclosed_tag", head + "00:01.000 --> 00:02.000\na<00:01.500>b <q>c</q> <b",
       "1000-2000 ab c"},
  };
}

INSTANTIATE_TEST_SUITE_P(WebVtt, WebFormats, testing::ValuesIn(webVttCases()));

TEST(WebFormatStyle, Of_web_vtt_tags_and_classes) {
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  EXPECT_EQ(cuesOf(std::string(kHead) + "00:01.000 --> 00:02.000\n"
                                        "<i>a<b>b</i>c</b>d</i> <c.bg.lime>e<u>f</c></u></c> &lt;",
                   options),
            "1000-2000 <i>a</i><i><b>bc</b></i><i>d</i> <font color=\"#00ff00\">e</font>"
            "<u><font color=\"#00ff00\">f</font></u> &lt;");
}

}  // namespace
