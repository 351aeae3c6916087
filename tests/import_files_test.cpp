// Files of every format in tests/data, each beside what is to be read from it: the format, which
// the file's name begins with, each cue with style below its times, and the notes.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/import_support.h"

namespace {

std::vector<std::filesystem::path> files() {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA)) {
    if (entry.path().extension() != ".expected") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

/// The format that a file is named after.
std::string formatOf(const std::filesystem::path& path) {
  const std::string name = path.filename();
  return name.substr(0, name.find_first_of("._"));
}

std::string summaryOf(const ksImportParser& parser) {
  std::string all(parser.report().format());
  all += '\n';
  for (const ksImportCue& cue : parser.cues()) {
    all += '\n' + std::to_string(cue.start) + '-' + std::to_string(cue.end);
    all += cue.alignment == 2 ? "" : " at " + std::to_string(cue.alignment);
    all += '\n' + std::string(cue.text) + '\n';
  }
  const std::string notes = notesOf(parser);
  return notes.empty() ? all : all + "\nnotes: " + notes + '\n';
}

/// What `html` is without its tags and entities.
std::string plainOf(const std::string& html) {
  std::string plain;
  bool isTag = false;
  for (const char c : html) {
    if (!isTag && c != '<') plain += c;
    isTag = isTag ? c != '>' : c == '<';
    for (const auto& [entity, sign] : {std::pair("&lt;", '<'), {"&gt;", '>'}, {"&amp;", '&'}}) {
      if (c == ';' && plain.ends_with(entity)) {
        plain.replace(plain.rfind('&'), plain.npos, 1, sign);
        break;
      }
    }
  }
  return plain;
}

class ImportFiles : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(ImportFiles, AreReadAsExpected) {
  const std::string& path = GetParam();
  const std::string expected = contentOf(path + ".expected");
  ksImportOptions options;
  options.markup = ksImportMarkup::kHtml;
  ksImportParser parser;
  ASSERT_TRUE(parser.Open(path.c_str(), options)) << parser.report().refusalSentence();
  EXPECT_EQ(parser.report().format(), formatOf(path));
  EXPECT_EQ(summaryOf(parser), expected);
  ASSERT_TRUE(openText(parser, contentOf(path))) << "not known without its name";
  EXPECT_EQ(summaryOf(parser), plainOf(expected));
}

INSTANTIATE_TEST_SUITE_P(Data, ImportFiles, testing::ValuesIn(files()), [](const auto& tested) {
  std::string name = tested.param.filename();
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
});

TEST(ImportFormatTable, Has_files_of_every_format) {
  for (const ksImportFormat* const format : ksImportFormats()) {
    EXPECT_TRUE(std::ranges::any_of(files(), [&](const auto& path) {
      return formatOf(path) == format->name;
    })) << format->name;
  }
}

}  // namespace
