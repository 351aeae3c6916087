// TTML through the import library: small documents and the cues that they hold.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/import_support.h"

namespace {

struct Case {
  std::string name;
  std::string text;
  std::string cues;
  std::string notes = {};
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

std::string nameOf(const testing::TestParamInfo<Case>& tested) { return tested.param.name; }

std::string repeated(const std::string& text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

std::string document(const std::string& attributes, const std::string& inner) {
  return "<tt xmlns='http://www.w3.org/ns/ttml' " + attributes + ">" + inner + "</tt>";
}

std::string body(const std::string& inner, const std::string& attributes = {}) {
  return document(attributes, "<body>" + inner + "</body>");
}

class Ttml : public testing::TestWithParam<Case> {};

TEST_P(Ttml, Holds_these_cues) {
  ksImportParser parser;
  ASSERT_TRUE(openText(parser, GetParam().text));
  EXPECT_EQ(parser.report().format(), "ttml");
  EXPECT_EQ(cuesOf(parser), GetParam().cues);
  EXPECT_EQ(notesOf(parser), GetParam().notes);
}

std::vector<Case> timeCases() {
  const std::string frames = "t:frameRate='24' t:frameRateMultiplier='1000 1001'";
  return {
      {"Clock",
       body("<p begin='1:2:3' end='01:02:03.25'>a</p><p begin=' 62:05,5' end='3726s'>b</p>"),
       "3723000-3723250 a; 3725500-3726000 b", "1 TimeRepaired"},
      {"Units",
       body("<p begin='0.5m' dur='1.5s'>a</p><p begin='0.01h' dur='250ms'>b</p>"
            "<p begin='37.0006' dur='1'>c</p>"),
       "30000-31500 a; 36000-36250 b; 37001-38001 c", "1 TimeRepaired"},
      {"Frames",
       body("<p begin='24f' end='00:00:02:12'>a</p><p begin='00:00:03:500' dur='1s'>b</p>"
            "<p begin='240t' dur='1s'>c</p>",
            frames),
       "1001-2501 a; 3500-4500 b; 10000-11000 c"},
      {"Many_frames",
       body("<p begin='00:00:01:060' end='480f' x:end='9s'>a</p>",
            "t:frameRate='120' t:frameRateMultiplier='2'"),
       "1250-2000 a"},
      {"Rates_of_the_root_in_every_form",
       document("t:frameRate='25' t:subFrameRate='2' t:tickRate='100'",
                "<head t:tickRate='1'/><body begin='25f' t:frameRate='50'><div begin='100t'>"
                "<p begin='50f' dur='50t' t:frameRate='10'>a</p><p begin='3s' end='0:0:4:5.1'>b</p>"
                "<p begin='0:0:5'><span begin='5f' dur='25t'>c</span></p></div></body>"),
       "4000-4500 a; 5000-6220 b; 7200-7450 c"},
      {"Frames_without_a_rate",
       body("<p begin='00:00:01:15.1' end='60f'>a</p>", "t:subFrameRate='2'"), "1517-2000 a"},
      {"Ticks", body("<p begin='1374000000t' end='1404000000t'>a</p>", "t:tickRate='10000000'"),
       "137400-140400 a"},
      {"Ticks_by_frames", body("<p begin='50t' end='100t'>a</p>", "t:frameRate='25'"),
       "2000-4000 a"},
      {"Earlier_of_end_and_duration",
       body("<p begin='1s' end='9s' dur='2s'>a</p><p begin='4s' end='5s' dur='2s'>b</p>"),
       "1000-3000 a; 4000-5000 b"},
      {"Ends_that_nobody_says", body("<p>a</p><p begin='2s' end='indefinite' dur=''>b</p>"),
       "0-2000 a; 2000-7000 b", "1 EndAssumed"},
      {"No_times",
       body("<p begin='x' end='1s'>a</p>\n<p begin='1s' end='1:2:3:4:5'>b</p>"
            "<p begin='9999999999999s' end='1s'>c</p><p begin='1q' end='2s'>d</p>"),
       "", "1 TimeUnreadable; 2 TimeUnreadable; 2 TimeUnreadable; 2 TimeUnreadable"},
      {"Parents",
       body("<div begin='10s' end='20s'><p begin='1s' end='30s'>a</p><p>b</p>\n"
            "<p begin='25s' end='30s'>c</p></div>"),
       "10000-20000 b; 11000-20000 a", "1 Overlap; 2 OutsideParent"},
      {"Sequence",
       body("<div timeContainer='seq'><p begin='1s' dur='2s'>a</p><div><p dur='3s'>b</p>"
            "<p dur='1s'>c</p></div><p begin='1s' end='2s'>d</p></div>"),
       "1000-3000 a; 3000-6000 b; 3000-4000 c; 7000-8000 d", "1 Overlap"},
      {"Sequence_without_end",
       body("<div timeContainer='seq'><p begin='0s'>a</p>\n<p dur='1s'>b</p></div>"), "0-5000 a",
       "1 EndAssumed; 2 OutsideParent"},
      {"Sequence_of_what_has_no_times",
       body("<div timeContainer='seq'><p>a</p><div><p><b>c</b></p><p dur='1s'>d</p></div>"
            "<p dur='1s'>e<b>f</b></p></div>"),
       "0-1000 d; 1000-2000 ef", "1 CueWithoutText; 1 CueWithoutText"},
      {"Containers_that_end_at_once",
       body("<div dur='0s'><p begin='1s' end='2s'>a</p></div><div begin='3s' end='2s'>"
            "<p begin='1s' end='2s'>b</p></div>",
            ""),
       "1000-2000 a; 4000-5000 b", "1 ContainerWithoutTime; 1 ContainerWithoutTime"},
      {"Words_with_stray_times",
       body("<p begin='14s' end='16s'><span begin='14s' end='15s'>a</span> "
            "<span begin='0s' end='16s'>b</span></p>"),
       "14000-16000 a b"},
      {"Words_that_count_from_their_paragraphs",
       body("<p begin='4s' end='16s'><span begin='0s' end='1s'>a</span>"
            "<span begin='1s' end='2s'>b</span><span begin='14s' end='15s'>c</span></p>"),
       "4000-5000 a; 5000-6000 b; 14000-15000 c"},
      {"Times_that_count_from_the_file",
       body("<div begin='8s' end='40s'><p begin='8s' end='11s'><span begin='8s' end='9s'>a</span> "
            "<span begin='9s' end='10s'>b</span></p><p begin='12s' end='13s'>c</p></div>"),
       "8000-10000 a b; 12000-13000 c"},
      {"One_time_that_counts_from_the_file",
       body("<div begin='8s' end='14s'><p begin='9s' end='10s'>a</p><p begin='1s' end='2s'>b</p>"
            "</div>"),
       "9000-10000 a; 9000-10000 b", "1 Overlap"},
  };
}

INSTANTIATE_TEST_SUITE_P(Times, Ttml, testing::ValuesIn(timeCases()), nameOf);

std::vector<Case> textCases() {
  const std::string p = "<p begin='1s' end='2s'>";
  return {
      {"Kept_white_space",
       body("<div xml:space='preserve'>" + p +
            " a  b&#xA;c<span xml:space='default'> \n d</span></p>"
            "</div>"),
       "1000-2000 a  b|c d"},
      {"References",
       body(p + "&lt;&amp;amp;&#233;&eacute;&#xD800;&x; &#10;&#32;&#x9;<![CDATA[<i>&amp;]]></p>"),
       "1000-2000 <&amp;\u00E9\u00E9\uFFFD&x; <i>&amp;"},
      {"No_text",
       body(p + "<metadata>a<span>b</span></metadata><set begin='1s'/>c<!-- d --></p>" + p +
            " </p>"),
       "1000-2000 c", "1 CueWithoutText"},
      {"Prefixes",
       "<?xml version='1.0'?><!-- <p> --><!DOCTYPE tt [<!ENTITY e '<p>'>]><?a b<c ?>\n"
       "<q:tt><q:body><q:p q:begin='1s' end='2s'>a<q:br/>&e;</q:p></q:body></q:tt>",
       "1000-2000 a|&e;"},
      {"Timed_spans",
       body("<p begin='10s' end='20s'>a <span begin='2s' end='5s'>b <span end='1s'>c</span></span>"
            "<span begin='9s'> d</span></p>"),
       "10000-12000 a; 12000-13000 a b c; 13000-15000 a b; 15000-19000 a; 19000-20000 a d"},
      {"Equal_pieces", body("<p><span end='4s'>a</span><span begin='4s' end='9s'>a</span></p>"),
       "0-9000 a"},
      {"Spans_in_sequence",
       body("<p timeContainer='seq' end='9s'><span dur='1s'>a</span> <span begin='1s' dur='1s'>b"
            "</span></p>"),
       "0-1000 a; 2000-3000 b"},
      {"Too_many_pieces",
       body("<p end='99s'><span begin='1s'>a</span>" +
            repeated("<span begin='2s' timeContainer='seq'><span dur='1s'>b</span>", 70) +
            repeated("</span>", 70) + "</p>"),
       "1000-99000 a" + repeated("b", 70), "1 Unsupported"},
      {"Too_deep",
       body(repeated("<div>", 101) + p + "a</p>" + repeated("</div>", 101) + p +
            repeated("<i>", 101) + "b" + repeated("</i>", 101) + "c</p>"),
       "1000-2000 c", "1 Unsupported; 1 Unsupported"},
      {"Equal_cues", body(p + "a</p>\n" + p + "a</p>"), "1000-2000 a; 1000-2000 a", "2 Duplicate"},
      {"Unescaped_signs", body(p + "a & b < c</p>\n" + p + "d <3 e</p>" + p + "f</p>"),
       "1000-2000 a & b; 1000-2000 d; 1000-2000 f",
       "1 TagUnclosed; 2 TagUnclosed; 2 Overlap; 2 Overlap"},
      {"Paragraphs_that_stay_open",
       "<tt><body><div begin='1s'>\n<p end='1s'>a<p end='2s'>b</p>\n<p end='3s'>c<br/></div>\n"
       "<div>" +
           p + "d</div>\n<p begin='4s' end='5s'>f</p></body></tt>",
       "1000-2000 a; 1000-3000 b; 1000-4000 c; 1000-2000 d; 4000-5000 f",
       "2 Overlap; 3 TagUnclosed; 3 Overlap; 4 Overlap"},
      {"Tags_that_stay_open",
       document("",
                "<head><layout><region id='r' displayAlign='center'/></layout></head><body>"
                "<div begin='1s'>\n<p end='1s'>a<br>b</p>\n</div><div begin='2s' region='r'>"
                "<p end='1s'>c</p></div></body>"),
       "1000-2000 a|b; 2000-3000 @5 c", "2 TagUnclosed"},
      {"Cut_off", "<tt><body>" + p + "a</p>\n" + p + "b <i>c", "1000-2000 a; 1000-2000 b c",
       "2 TagUnclosed; 2 Overlap"},
      {"Cut_off_behind_a_line_feed", "<tt><body>\n" + p + "a\n", "1000-2000 a", "2 TagUnclosed"},
  };
}

INSTANTIATE_TEST_SUITE_P(Texts, Ttml, testing::ValuesIn(textCases()), nameOf);

TEST(TtmlStyle, Of_references_regions_and_elements) {
  const std::string head =
      "<head><styling><initial color='#12345678'/><style xml:id='a' style='b' fontStyle='italic'/>"
      "<style xml:id='b' style='a c' textDecoration='underline lineThrough'/></styling><layout>"
      "<region xml:id='tall' origin='10% 5%' extent='80% 60%' displayAlign='after' textAlign='end'>"
      "<style fontWeight='bold'/></region>"
      "<region xml:id='middle' displayAlign='center' style='b'/></layout></head>";
  ksImportParser parser;
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  openText(parser,
           document("", head + "<body region='middle'><p end='1s' style='a'>x"
                               "<span t:textDecoration='none' t:color='rgb(0,255, 7)'> y</span></p>"
                               "<p begin='1s' end='2s' region='tall' textAlign='left'>"
                               "<b>z</b><i> z</i></p></body>"),
           options);
  EXPECT_EQ(cuesOf(parser),
            "0-1000 @5 <i><u><s><font color=\"#123456\">x</font></s></u></i>"
            "<i><font color=\"#00ff07\"> y</font></i>; "
            "1000-2000 @4 <b><font color=\"#123456\">z</font></b>"
            "<i><b><font color=\"#123456\"> z</font></b></i>");
}

TEST(TtmlLanguages, Of_cues_are_listed_and_selected) {
  const std::string text = document("xml:lang='en'",
                                    "<body><p end='1s' xml:lang='en_GB'>a</p><div xml:lang='de'>"
                                    "<p end='1s'>b</p></div><p end='1s' xml:lang='en-US'>c</p>"
                                    "<div xml:lang='eng'><p begin='0'> </p></div></body>");
  for (const auto& [language, cues] : {std::pair("DE", "0-1000 b"),
                                       {"", "0-1000 a; 0-1000 b; 0-1000 c"},
                                       {"en", "0-1000 a; 0-1000 c"},
                                       {"EN-gb", "0-1000 a"},
                                       {"e", "0-1000 a; 0-1000 b; 0-1000 c"}}) {
    ksImportParser parser;
    ksImportOptions options;
    options.language = language;
    openText(parser, text, options);
    EXPECT_EQ(cuesOf(parser), cues) << language;
    EXPECT_EQ(parser.report().hasLanguage(), std::string_view(language) != "e");
    const auto languages = parser.report().languages();
    EXPECT_EQ(std::vector(languages.begin(), languages.end()),
              (std::vector<std::string>{"en_GB", "de", "en-US"}));
  }
}

TEST(TtmlRegions, Equal_cues_are_shown_once) {
  ksImportParser parser;
  openText(parser, body("<p end='1s' region='a'>a</p><p end='1s' region='b'>a</p>"
                        "<p end='2s'>a</p><p end='1s'>b</p>"));
  EXPECT_EQ(cuesOf(parser), "0-1000 a; 0-1000 a; 0-2000 a; 0-1000 b");
  EXPECT_STREQ(parser.GetSubTitle(500).text.getData(), "\na\na\nb");
  EXPECT_TRUE(parser.cues()[1].isDuplicate);
}

}  // namespace
