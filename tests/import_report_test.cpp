// The report of the import library: each problem with its line and sentence.
#include <set>

#include "tests/import_support.h"

namespace {

using namespace std::string_literals;

struct ProblemCase {
  ksImportProblem problem;
  int line;
  std::string text;  // see withTimes()
  const char* sentence;
};

TEST(ImportReport, eachProblem_isNotedAtItsLineWithItsSentence) {
  using enum ksImportProblem;
  const std::string style = "[V4+ Styles]\nStyle: Other,Arial\n";
  const ProblemCase cases[] = {
      {kNumberMissing, 5, "1\n@1A\n\n@3B\n", "The cue has no number, while others have one."},
      {kNumberDoubled, 5, "1\n@1A\n\n1\n@3B\n",
       "The cue has the same number as the one before it."},
      {kNumberFalling, 5, "2\n@1A\n\n1\n@3B\n",
       "The cue has a lower number than the one before it."},
      {kCueWithoutText, 1, "1\n@1\n2\n@3B\n", "The cue has no text and is left out."},
      {kEndNotBehindStart, 1, "00:00:01,000 --> 00:00:01,000\nA\n",
       "The cue ends no later than it begins, or not after 0:00, so it is never shown."},
      {kOverlap, 4, "@1A\n\n00:00:01,900 --> 00:00:02,900\nB\n",
       "The cue begins while an earlier one is still shown."},
      {kTimeRepaired, 1, "0:0:1 --> 0:0:2\nA\n",
       "A time is written in an unusual way; it was read all the same."},
      {kTimeUnreadable, 6, "1\n@1A\n\n2\n00:00:03,000 --> x\nB\n",
       "A time cannot be read, so the cue is left out."},
      {kLineIgnored, 1, "A\n@1B\n", "The line is no part of any cue and is left out."},
      {kLineIgnored, 3, "[Events]\n#1A\nDialog: 0,0:00:03.00,0:00:04.00,,,0,0,0,,B\n",
       "The line is no part of any cue and is left out."},
      {kTagUnclosed, 4, "@1A\n\n@3<i>B\n", "A tag or an override block is opened but not closed."},
      {kTagUnclosed, 3, "WEBVTT\n\n00:01.000 --> 00:02.000\nA <b\n",
       "A tag or an override block is opened but not closed."},
      {kUndecodable, 3, "@1ééééé éééé, éééééé. Ééééééé,\nééé\xFF\n",
       "Some bytes have no meaning in the file's encoding; they are shown as U+FFFD."},
      {kZeroCharacter, 2, "@1A"s + '\0' + "B\n",
       "The text holds a zero character, which is left out or shown as U+FFFD."},
      {kCueCutOff, 5, "1\n@1A\n\n2\n",
       "The file ends in the middle of the cue, which is left out."},
      {kColumnsMissing, 2, "#1A\nDialogue: 0,0:00:03.00,0:00:04.00,B\n",
       "The event has fewer columns than its format has, so it is left out."},
      {kUnknownStyle, 3, style + "#1A\n" + "Dialogue: 0,0:00:03.00,0:00:04.00,,,0,0,0,,B\n",
       "The event names a style that the script does not define."},
      {kFrameRateAssumed, 0, "{25}{50}A\n",
       "The times are frame numbers and the file does not name a frame rate; one is assumed."},
      {kEndAssumed, 2, "[00:01.00]A\n[00:02.00]B\n",
       "The file does not say when the cue ends; an end is assumed."},
      {kDuplicate, 4, "@1A\n\n@1A\n", "The same cue is there twice; it is shown once."},
      {kOutsideParent, 2, "<tt><body end='1s'>\n<p begin='1s' end='2s'>A</p></body></tt>",
       "The cue begins when the part that it stands in is over, so it is left out."},
      {kUnsupported, 1, "[DELAY]10\n[SUBTITLE]\n00:00:01.00,00:00:02.00\nA\n",
       "Something that the line says is not supported and is left out."},
  };
  std::set<ksImportProblem> problems;
  for (const ProblemCase& row : cases) {
    ksImportParser parser;
    ASSERT_TRUE(openText(parser, withTimes(row.text))) << row.text;
    const auto notes = parser.report().notes();
    ASSERT_EQ(notes.size(), 1U) << row.text << notesOf(parser);
    EXPECT_EQ(notes[0].problem, row.problem) << row.text;
    EXPECT_EQ(notes[0].line, row.line) << row.text;
    EXPECT_EQ(describe(notes[0]), row.sentence);
    problems.insert(row.problem);
  }
  EXPECT_EQ(problems.size(), kImportProblems - 2);  // the others are those of pictures
}

TEST(ImportReport, whatIsTakenForSubtitles_isCalledByItsName) {
  const std::tuple<std::string, ksImportRefusal, const char*> cases[] = {
      {"PK\3\4"s, ksImportRefusal::kBinary, "ZIP archive"},
      {"PK\3\4" + std::string(26, '.') + "[Content_Types].xml", ksImportRefusal::kBinary, "office"},
      {"\x1A\x45\xDF\xA3"s, ksImportRefusal::kBinary, "Matroska"},
      {std::string(5000, '\0'), ksImportRefusal::kBinary, "zero bytes"},
      {"\xEF\xBB\xBF \r\n\n", ksImportRefusal::kUnknownFormat, "white space"},
      {"\n<!DOCTYPE html><title>404</title>", ksImportRefusal::kUnknownFormat, "web page"},
      {"{\\rtf1 A}", ksImportRefusal::kUnknownFormat, "plain text"},
      {"A letter.", ksImportRefusal::kUnknownFormat, "not in any subtitle format"},
  };
  for (const auto& [bytes, refusal, part] : cases) {
    ksImportParser parser;
    EXPECT_FALSE(openText(parser, bytes));
    EXPECT_EQ(parser.report().refusal(), refusal) << part;
    EXPECT_NE(parser.report().refusalText().find(part), std::string_view::npos)
        << parser.report().refusalText();
  }
}

TEST(ImportReport, lines_areCountedBehindAHeaderWithZeros) {
  const std::string film = "Content-Type: text/plain" + std::string(200, '\0') +
                           "\n\n1\n00:00:01,000 --> 00:00:02,000\nA\n\n" +
                           "2\n00:00:03,000 --> 00:00:04,000\nB\n";
  ksImportParser parser;
  ASSERT_TRUE(parser.OpenMemory(film.data(), film.size()));
  ASSERT_EQ(parser.cues().size(), 2U);
  EXPECT_EQ(parser.cues()[0].line, 3);
  EXPECT_EQ(parser.cues()[1].line, 7);
}

TEST(ImportReport, encoding_isNotOneThatTheDeclarationCannotBeReadIn) {
  const std::string film =
      "<SAMI><META charset=UCS-2><BODY>\n<SYNC Start=1000><P>caf\xE9 caf\xE9</BODY></SAMI>\n";
  ksImportParser parser;
  ASSERT_TRUE(parser.OpenMemory(film.data(), film.size()));
  EXPECT_NE(parser.report().encodingSource(), ksImportEncodingSource::kDeclared);
}

}  // namespace
