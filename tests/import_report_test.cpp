// The report of the import library: each problem with its line, and the sentences for viewers.
#include <set>

#include "tests/import_support.h"

namespace {

using namespace std::string_literals;

struct ProblemCase {
  ksImportProblem problem;
  int line;
  std::string text;  // see withTimes()
};

TEST(ImportReport, eachProblem_isNotedAtItsLine) {
  using enum ksImportProblem;
  const std::string style = "[V4+ Styles]\nStyle: Other,Arial\n";
  const ProblemCase cases[] = {
      {kNumberMissing, 5, "1\n@1A\n\n@3B\n"},
      {kNumberRepeated, 5, "1\n@1A\n\n1\n@3B\n"},
      {kNumberDecreasing, 5, "2\n@1A\n\n1\n@3B\n"},
      {kCueWithoutText, 1, "1\n@1\n2\n@3B\n"},
      {kEndNotAfterStart, 1, "00:00:01,000 --> 00:00:01,000\nA\n"},
      {kOverlap, 4, "@1A\n\n00:00:01,900 --> 00:00:02,900\nB\n"},
      {kTimeRepaired, 1, "0:0:1 --> 0:0:2\nA\n"},
      {kTimeUnreadable, 6, "1\n@1A\n\n2\n00:00:03,000 --> x\nB\n"},
      {kLineIgnored, 1, "A\n@1B\n"},
      {kLineIgnored, 3, "[Events]\n#1A\nDialog: 0,0:00:03.00,0:00:04.00,,,0,0,0,,B\n"},
      {kTagUnclosed, 4, "@1A\n\n@3<i>B\n"},
      {kTagUnclosed, 3, "WEBVTT\n\n00:01.000 --> 00:02.000\nA <b\n"},
      {kUndecodable, 3, "@1ééééé éééé, éééééé. Ééééééé,\nééé\xFF\n"},
      {kNulCharacter, 2, "@1A"s + '\0' + "B\n"},
      {kCueCutOff, 5, "1\n@1A\n\n2\n"},
      {kColumnsMissing, 2, "#1A\nDialogue: 0,0:00:03.00,0:00:04.00,B\n"},
      {kUnknownStyle, 3, style + "#1A\n" + "Dialogue: 0,0:00:03.00,0:00:04.00,,,0,0,0,,B\n"},
      {kFrameRateAssumed, 0, "{25}{50}A\n"},
      {kEndAssumed, 2, "[00:01.00]A\n[00:02.00]B\n"},
      {kDuplicate, 4, "@1A\n\n@1A\n"},
      {kOutsideParent, 2, "<tt><body end='1s'>\n<p begin='1s' end='2s'>A</p></body></tt>"},
      {kContainerWithoutTime, 2, "<tt><body>\n<div dur='0s'><p end='1s'>A</p></div></body></tt>"},
      {kUnsupported, 1, "[DELAY]10\n[SUBTITLE]\n00:00:01.00,00:00:02.00\nA\n"},
  };
  std::set<ksImportProblem> problems;
  for (const ProblemCase& row : cases) {
    ksImportParser parser;
    ASSERT_TRUE(openText(parser, withTimes(row.text))) << row.text;
    const auto notes = parser.report().notes();
    ASSERT_EQ(notes.size(), 1U) << row.text << notesOf(parser);
    EXPECT_EQ(notes[0].problem, row.problem) << row.text;
    EXPECT_EQ(notes[0].line, row.line) << row.text;
    problems.insert(row.problem);
  }
  EXPECT_EQ(problems.size(), ksImportProblems().size() - 3);  // the others are those of pictures
}

TEST(ImportReport, problems_haveSentencesOfTheirOwn) {
  std::set<std::string_view> sentences;
  for (const ksImportProblem problem : ksImportProblems()) {
    EXPECT_TRUE(ksImportSentence(problem).ends_with('.'));
    sentences.insert(ksImportSentence(problem));
  }
  EXPECT_EQ(sentences.size(), ksImportProblems().size());
  ksImportParser parser;
  ASSERT_TRUE(openText(parser, withTimes("@1A\n\n@1A\n")));
  EXPECT_EQ(parser.report().count(ksImportProblem::kDuplicate), 1U);
  for (const int none : {-1, static_cast<int>(sentences.size())}) {
    EXPECT_EQ(parser.report().count(static_cast<ksImportProblem>(none)), 0U);
    EXPECT_EQ(ksImportSentence(static_cast<ksImportProblem>(none)), "");
  }
}

TEST(ImportReport, filesThatAreNotSubtitles_areCalledByTheirNames) {
  const std::tuple<std::string, ksImportRefusal, const char*> cases[] = {
      {"PK\3\4"s, ksImportRefusal::kBinary, "ZIP archive"},
      {"PK\3\4" + std::string(26, '.') + "[Content_Types].xml", ksImportRefusal::kBinary, "office"},
      {"\x1A\x45\xDF\xA3"s, ksImportRefusal::kBinary, "Matroska"},
      {std::string(5000, '\0'), ksImportRefusal::kBinary, "zero bytes"},
      {"\xEF\xBB\xBF \r\n\n", ksImportRefusal::kUnknownFormat, "white space"},
      {"\n<!DOCTYPE html><title>404</title>", ksImportRefusal::kUnknownFormat, "web page"},
      {"{\\rtf1 A}", ksImportRefusal::kUnknownFormat, "plain text"},
      {"A letter.", ksImportRefusal::kUnknownFormat, "not in any known subtitle format"},
  };
  for (const auto& [bytes, refusal, part] : cases) {
    ksImportParser parser;
    EXPECT_FALSE(openText(parser, bytes));
    EXPECT_EQ(parser.report().refusal(), refusal) << part;
    EXPECT_NE(parser.report().refusalSentence().find(part), std::string_view::npos)
        << parser.report().refusalSentence();
  }
}

TEST(ImportReport, lines_areCountedAfterAHeaderWithNuls) {
  const std::string film = "Content-Type: text/plain" + std::string(200, '\0') +
                           "\n\n1\n00:00:01,000 --> 00:00:02,000\nA\n\n" +
                           "2\n00:00:03,000 --> 00:00:04,000\nB\n";
  ksImportParser parser;
  ASSERT_TRUE(parser.OpenMemory(film.data(), film.size()));
  ASSERT_EQ(parser.cues().size(), 2U);
  EXPECT_EQ(parser.cues()[0].line, 3);
  EXPECT_EQ(parser.cues()[1].line, 7);
}

TEST(ImportReport, encoding_isNotOneInWhichTheDeclarationIsUnreadable) {
  const std::string film =
      "<SAMI><META charset=UCS-2><BODY>\n<SYNC Start=1000><P>caf\xE9 caf\xE9</BODY></SAMI>\n";
  ksImportParser parser;
  ASSERT_TRUE(parser.OpenMemory(film.data(), film.size()));
  EXPECT_NE(parser.report().encodingSource(), ksImportEncodingSource::kDeclared);
}

}  // namespace
