// Which format a text is taken for: content decides, and the extension where that leaves a choice.
#include <set>
#include <sstream>
#include <string>

#include "tests/import_support.h"

namespace {

/// The extensions of a format, or of all of them and none.
std::set<std::string> extensionsOf(std::string_view format) {
  std::set<std::string> extensions;
  if (format.empty()) extensions.insert("");
  for (const ksImportFormat* const each : ksImportFormats()) {
    std::istringstream words{std::string(each->extensions)};
    if (!format.empty() && each->name != format) continue;
    for (std::string word; words >> word;) extensions.insert('.' + word);
  }
  return extensions;
}

/// The format of a text under each of the extensions.
std::string formatOf(const std::string& text, const std::set<std::string>& extensions) {
  static const TempDir dir;
  std::set<std::string> found;
  for (const std::string& extension : extensions) {
    ksImportParser parser;
    parser.Open(dir.write("film" + extension, text).c_str());
    found.emplace(parser.report().format());
  }
  return found.size() == 1 ? *found.begin() : "one or the other";
}

/// A file of a format up to its first text, what precedes the next line, and two lines
/// that the text of another format may have.
struct Sample {
  const char* format;
  const char* head;
  const char* between;
  const char* quoted;
  const char* quotedToo;
};

constexpr Sample kSamples[] = {
    {"ass", "[Events]\nFormat: Start, End, Text\nDialogue: 0:00:01.00,0:00:02.00,",
     "Dialogue: 0:00:02.00,0:00:03.00,", "{\\an8}A", "{\\i1}B"},
    {"microdvd", "{1}{25}", "{30}{50}", "{1}{25}A", "{30}{50}B"},
    {"mpl2", "[1][25]", "[30][50]", "[1][25]A", "[30][50]B"},
    {"tmplayer", "00:00:01:", "00:00:02:", "10:30:00:A", "10:31:00:B"},
    {"subviewer", "[INFORMATION]\n[SUBTITLE]\n00:00:01.00,00:00:02.00\n", "",
     "00:00:01.00,00:00:02.00", "A"},
    {"sbv", "0:00:01.000,0:00:02.000\n", "", "0:00:01.000,0:00:02.000", "A"},
    {"lrc", "[00:01.00]", "[00:02.00]", "[00:01.00]A", "[00:02.00]B"},
    {"mpsub", "FORMAT=TIME\n\n1 1\n", "", "FORMAT=TIME", "1"},
    {"subviewer1", "******** START SCRIPT ********\n[00:00:01]\n", "", "[00:00:01]", "A"},
    {"sami", "<SAMI><BODY><SYNC Start=1><P>", "", "<SYNC Start=1><P>A", "<SYNC Start=2>"},
    {"webvtt", "WEBVTT\n\n00:01.000 --> 00:02.000\n", "", "WEBVTT", "00:01.000 --> 00:02.000"},
    {"subrip", "1\n00:00:01,000 --> 00:00:02,000\n", "", "1", "00:00:01,000 --> 00:00:02,000"},
    {"ttml", "<tt><body><p begin='1s' end='2s'>", "", "<tt><body>", "<p begin='1s'>A"},
};

TEST(ImportRecognition, Of_files_that_quote_other_formats) {
  EXPECT_EQ(std::size(kSamples), ksImportFormats().size());
  for (const Sample& file : kSamples) {
    const std::set<std::string> extensions = extensionsOf(file.format);
    for (const Sample& text : kSamples) {
      const std::string content =
          std::string(file.head) + text.quoted + "\n" + file.between + text.quotedToo + "\n";
      EXPECT_EQ(formatOf(content, extensions), file.format) << "quotes " << text.format;
    }
  }
}

TEST(ImportRecognition, Of_texts_that_look_like_others_under_any_name) {
  const std::string subRip = "1\n00:00:01,000 --> 00:00:02,000\n";
  const std::pair<std::string, const char*> rows[] = {
      // Clock times in prose.
      {"10:30:00 the train leaves.\nNobody came.\n11:00:00 so did that.\nAnd on.\nAnd on.\n", ""},
      {"We meet at\n10:30:00: do not be late.\n", ""},
      {"10:30:00 begun\n10:31:00 done\n", ""},
      {"00:00:01:A --> B\n00:00:02:C\n", "tmplayer"},
      {"00:00:01:000 --> 00:00:02:000\nA\n00:00:03:000 --> 00:00:04:000\n", "subrip"},
      // Braces.
      {"{\\an8}A\n{\\i1}B\n", ""},
      {"{1}{25}{\\an8}A\n", "microdvd"},
      {subRip + "{\\an8}A\n", "subrip"},
      {subRip + "timestamp: 00:00:01:000, filepos: 000000000\n", "subrip"},
      // Brackets.
      {"[0][25]A\n", "mpl2"},
      {"[ti:A]\n[1][2]B\n[3][4]C\n", "mpl2"},
      {"[00:25]A --> B\n", "lrc"},
      {"[00:01]A\n[1][2]B\n[00:02.0]\n", "lrc"},
      {"[00:00:01]A\n[00:00:02]\n", "lrc"},
      {"[00:00:01]\nA --> B\n[00:00:02]\n", "subviewer1"},
      {"[1] A\n[2] B\n", ""},
      {"[1][2] A\nB\nC\nD\nE\nF\n", ""},
      {"A\nB\n[1][2]C\n", "mpl2"},
      // Two times on a line.
      {"00:00:01.5,00:00:02.5\nA\n", "subviewer"},
      {"00:00:01,000,00:00:02,000\nA\n", "sbv"},
      {"[INFORMATION]\n0:00:01.000,0:00:02.000\nA\n", "subviewer"},
      {"0:00:01.000,0:00:02.000\nA --> B\n", "sbv"},
      {"0:00:01.000,0:00:02.000\n{1}{2}A\n{3}{4}A\n[1][2]A\n[3][4]A\n***START SCRIPT***\n"
       "Dialogue: 0,0:00:01.00,0:00:02.00,,,0,0,0,,A\n00:00:01:A\n00:00:01:A\n[00:01]A\n",
       "sbv"},
      // Tags.
      {"<html><tt>", ""},
      {"<html><SYNC Start=1><P>A", "sami"},
      {"<ttx>", ""},
      {"junk <tt:tt>", "ttml"},
      {"<!--" + std::string(9000, '-') + "--><tt>", "ttml"},
      {"<!-- <tt>", ""},
      {subRip + "<tt>A</tt>\n", "subrip"},
      // Words.
      {"Dialogue: A\n", ""},
      {"FORMAT=25\nPATH=/\n", ""},
      {"FORMAT = TIME\n1 1\nA\n", "mpsub"},
      {"1 1\nA\n\nFORMAT=TIME\n", "mpsub"},
      {subRip + "FORMAT=25\n1 2\n", "subrip"},
  };
  const std::set<std::string> extensions = extensionsOf({});
  for (const auto& [text, format] : rows) {
    EXPECT_EQ(formatOf(text, extensions), format) << text.substr(0, 60);
  }
}

TEST(ImportRecognition, Of_WebVTT_asks_for_its_signature) {
  const std::string times = "\n\n00:01.000 --> 00:02.000\nA\n";
  for (const char* head : {"", "WEBVTTX", "webvtt", "WEBVTT\f", "\uFEFF\uFEFFWEBVTT"}) {
    EXPECT_EQ(formatOf(head + times, {".vtt"}), "") << head;
    EXPECT_EQ(formatOf(head + times, {".srt"}), "subrip") << head;
    EXPECT_EQ(formatOf(head + times + "00:02.000 --> 00:03,000\nB\n", {".vtt"}), "subrip");
  }
  EXPECT_EQ(formatOf("\uFEFFWEBVTT\tA" + times, {".vtt", ".srt"}), "webvtt");
}

}  // namespace
