// Texts that keep their style.
#include <algorithm>

#include "tests/import_support.h"

namespace {

/// Everything that tags can do to one another, in texts of a few pieces.
TEST(ImportHtml, crossingTags_leaveEachCharacterItsStyle) {
  const std::string pieces[] = {"a", "<i>", "</i>", "<b>", "</b>", "\n"};
  const auto styleAt = [](const std::string& text, std::size_t end) {
    int depth[2] = {};
    for (std::size_t i = 0; i < end; ++i) {
      if (text[i] != '<') continue;
      const bool isClosing = text[i + 1] == '/';
      int& open = depth[text[i + (isClosing ? 2 : 1)] == 'i' ? 0 : 1];
      open = std::max(0, open + (isClosing ? -1 : 1));
    }
    return std::pair(depth[0] > 0, depth[1] > 0);
  };
  const auto stylesOf = [&](const std::string& text) {
    std::vector<std::pair<bool, bool>> styles;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == 'a') styles.push_back(styleAt(text, i));
    }
    return styles;
  };
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  for (unsigned n = 0; n < 6 * 6 * 6 * 6 * 6; ++n) {
    std::string text;
    for (unsigned i = 0, rest = n; i < 5; ++i, rest /= 6) text += pieces[rest % 6];
    ksImportParser parser;
    ASSERT_TRUE(openText(parser, withTimes("@1") + "a" + text + "a\n", options));
    EXPECT_EQ(stylesOf(std::string(parser.cues()[0].text)), stylesOf("a" + text + "a")) << text;
  }
}

TEST(ImportHtml, aTextMayOutgrowItsFile) {
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  ksImportParser parser;
  ASSERT_TRUE(openText(parser, withTimes("@1") + std::string(9000, '<'), options));
  std::string escaped;
  for (int i = 0; i < 9000; ++i) escaped += "&lt;";
  EXPECT_EQ(parser.cues()[0].text, escaped);
}

TEST(ImportHtml, aColourIsReadFromItsOwnAttributeAndDigits) {
  const std::pair<const char*, const char*> cases[] = {
      {"@1<font bgcolor=\"#000000\" color=\"#ff0000\">A", "<font color=\"#ff0000\">A</font>"},
      {"@1<font data-color=\"#000000\">A", "A"},
      {"@1<font color=\"#-00000\">A", "A"},
      {"@1<font color=\"+00000\">A", "A"},
      {"{1}{2}{c:$-12345}A\n", "A"},
      {"[V4+ Styles]\nFormat: Name, PrimaryColour\nStyle: Default,&H0000FF\n#1A{\\c&HFFFFFF&}B",
       "<font color=\"#ff0000\">A</font>B"},
      {"{1}{2}{c:$0000ff}A\n", "<font color=\"#ff0000\">A</font>"},
  };
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  for (const auto& [text, html] : cases) {
    ksImportParser parser;
    ASSERT_TRUE(openText(parser, withTimes(text), options)) << text;
    EXPECT_EQ(parser.cues()[0].text, html) << text;
  }
}

TEST(ImportHtml, coloursAreKnownByTheNamesOfCss) {
  const std::pair<const char*, const char*> names[] = {
      {"AliceBlue", "#f0f8ff"},
      {"Lavender", "#e6e6fa"},
      {"grey", "#808080"},
      {"MEDIUMVIOLETRED", "#c71585"},
      {"YellowGreen", "#9acd32"},
      {"lavenders", ""},
      {"aaa", ""},
      {"zzz", ""},
  };
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  for (const auto& [name, number] : names) {
    ksImportParser parser;
    ASSERT_TRUE(openText(parser, withTimes("@1<font color=") + name + ">A", options));
    const bool isKnown = *number != '\0';
    EXPECT_EQ(parser.cues()[0].text,
              isKnown ? "<font color=\"" + std::string(number) + "\">A</font>" : "A")
        << name;
  }
}

}  // namespace
