// Texts that keep their style: files of several formats in tests/data/html, each beside what is to
// be read from it.
#include <algorithm>

#include "tests/import_support.h"

namespace {

/// Each cue with its times and alignment above its text.
std::string readAsHtml(const std::filesystem::path& path) {
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  ksImportParser parser;
  EXPECT_TRUE(parser.Open(path.c_str(), options)) << path;
  std::string all;
  for (const ksImportCue& cue : parser.cues()) {
    all += (all.empty() ? "" : "\n") + std::to_string(cue.start) + '-' + std::to_string(cue.end) +
           " at " + std::to_string(cue.alignment) + '\n' + std::string(cue.text) + '\n';
  }
  return all;
}

TEST(ImportHtml, filesAreReadAsExpected) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA "/html")) {
    if (entry.path().extension() == ".expected") continue;
    EXPECT_EQ(readAsHtml(entry.path()), contentOf(entry.path().string() + ".expected"))
        << entry.path();
    ++files;
  }
  EXPECT_GE(files, 9);
}

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

}  // namespace
