// The commands of the host program on subtitle files.
#include <pty.h>

#include <csignal>

#include "kssub_run.h"

namespace {

const std::string kPlain =
    "1\n00:00:01,000 --> 00:00:02,000\nHello\nthere\n\n2\n00:00:02,500 --> 00:00:03,000\nBye\n";
// The long cue is seen only between the two that follow it.
const std::string kOverlap =
    "1\n00:00:02,000 --> 00:00:09,000\nlong\n2\n00:00:02,000 --> 00:00:03,000\nfirst\n"
    "3\n00:00:05,000 --> 00:00:09,000\nlast\n4\n00:00:08,000 --> 00:00:01,000\nbackwards\n";
const std::string kScript =
    "ScriptType: v4.00+\nDialogue: 0,1:00:01.50,1:00:03.00,*default,,0,0,0,,Hello, {\\b1}you\\NX\n";
// A control sequence, the control character that begins one by itself, DEL, an invalid byte.
const std::string kHostile = "1\n00:00:00,000 --> 00:00:01,000\na\x1b[2Jb\xc2\x9b|c\x7f\xff\n";

std::string replaced(const std::string& text, const char* pattern, const char* by) {
  return std::regex_replace(text, std::regex(pattern), by);
}

std::string utf16(std::string_view text) { return Width<wchar_t>::encode(text); }

TEST_F(KssubTest, commands_print_answers) {
  directory.write("plain.srt", kPlain);
  directory.write("wide.srt", utf16(replaced(kPlain, "Bye", "\xe9")));
  directory.write("overlap.srt", kOverlap);
  directory.write("script.ass", kScript);
  directory.write("none.ass", "ScriptType: v4.00+\n");
  directory.write("hostile.srt", kHostile);
  const std::string plainAnswers =
      "duration: 0:00:03.000\n0:00:01.000: 0:00:01.000 --> 0:00:02.000\n    Hello\n    there\n"
      "-0:00:00.005: nothing is shown\n";
  const std::string header = "      start          end  text\n";
  const struct {
    std::string arguments, out;
  } cases[] = {
      {"at plain.srt 1000 -5", plainAnswers},
      {"at wide.srt 0:1 -0:0,005", plainAnswers},
      {"at wide.srt 0:3", "duration: 0:00:03.000\n0:00:03.000: .*\n    \u00e9\n"},
      {"at script.ass 1:00:03",
       "duration: 1:00:03.000\n1:00:03.000: 1:00:01.500 --> 1:00:03.000\n    Hello, you\n    X\n"},
      {"at none.ass 0", "duration: 0:00:00.000\n0:00:00.000: nothing is shown\n"},
      {"list none.ass", "0 cues\n"},
      {"list overlap.srt",
       header + "0:00:02.000  0:00:03.000  first\n0:00:02.000  0:00:09.000  long\n"
                "0:00:05.000  0:00:09.000  last\n3 cues; 1 record of the file never shown .*\n"},
      {"list hostile.srt",
       header + "0:00:00.000  0:00:01.000  a\u241b\\[2Jb\ufffd\\|c\u2421\ufffd\n1 cue\n"},
      {"play plain.srt --from 0:0.9 --speed 2",
       "0:00:01.*  Hello \\| there\n0:00:02.*  nothing is shown\n0:00:02.*  Bye\n"
       "0:00:03.001  nothing is shown\n"},
      {"--version", "kssub \\d+\\.\\d+\\.\\d+\n"},
  };
  for (const auto& [arguments, out] : cases) expectRun(arguments, out, "", 0);
  expectRun("play plain.srt --from 3000", "", "kssub: plain.srt: nothing left to play, .*\n", 0);
}

TEST_F(KssubTest, odd_forms_are_noted_in_one_line_before_the_answers) {
  const std::string tooManyLines(20001, '\n');
  const struct {
    std::string name, content, note;
  } cases[] = {
      {"crlf.srt", replaced(kPlain, "\n", "\r\n"), "its lines end in CR LF, .* one cue"},
      {"mixed.srt", replaced(kPlain, "1\n", "1\r\n"), "some lines end in CR LF: .* no cue"},
      {"crlf.ass", replaced(kScript, "\n", "\r\n"), "its lines end in CR LF, .*unknown type"},
      {"mixed.ass", replaced(kScript, "X\n", "X\r\n"), "some lines end in CR LF: .*script type"},
      {"wide.srt", utf16(replaced(kPlain, "\n", "\r\n")), "its lines end in CR LF, .* one cue"},
      {"cr.ass", replaced(kScript, "\n", "\r"), "it holds lone CRs, .*; .*last line is lost"},
      {"utf32.srt", std::string("\xff\xfe\0\0001\0\0\0", 8), "it begins with the mark of UTF-32"},
      {"utf16.srt", utf16(replaced(kPlain, "\n", "\r\n")).substr(2), "it holds zero bytes"},
      {"mark.srt", "\xef\xbb\xbf" + kPlain, "it begins with a UTF-8 mark"},
      {"big.srt", "\xfe\xff" + kPlain, "it begins with a big-endian mark"},
      {"cut.ass", kScript + "Dialogue: lost", "it does not .*last line is lost"},
      {"mark.ass", "\xef\xbb\xbf" + kScript, ""},
      {"cut.srt", kPlain + "x", ""},
      {"full.srt", tooManyLines.substr(1) + "x", ""},
  };
  for (const auto& [name, content, note] : cases) {
    directory.write(name, content);
    const std::string line = "kssub: " + name + ": note: " + note + ".*\n";
    expectRun("at " + name + " 0", "duration: .*\n0:00:00.000: [^]*", note.empty() ? "" : line, 0);
  }
  directory.write("long.srt", tooManyLines);
  expectRun("list long.srt", "", "kssub: long.srt: cannot open: .* 20000 lines\n", 1);
}

TEST_F(KssubTest, failures_are_told_apart_by_exit_status) {
  directory.write("plain.srt", kPlain);
  directory.write("plain.txt", kPlain);
  directory.write("empty.srt", "");
  std::filesystem::create_directory(directory.path("dir.srt"));
  const std::string cannotOpen = "kssub: .*: cannot open: ";
  expectRun("at missing.srt 0", "", cannotOpen + "No such file or directory\n", 1);
  expectRun("list plain.txt", "", cannotOpen + "the extension is none .*\n", 1);
  expectRun("play empty.srt", "", cannotOpen + "the file is empty\n", 1);
  expectRun("list dir.srt", "", cannotOpen + "not a regular file\n", 1);
  expectRun("list plain.srt >/dev/full", "", "kssub: cannot write the output\n", 1);
  expectRun("--help >/dev/full", "", "kssub: cannot write the output\n", 1);
  const std::string notATime = "\"[^ ]*\" is not a time: .*1500 \\(milliseconds\\)";
  const struct {
    std::string command, arguments, reason;
  } usageFailures[] = {{"", "", "A subcommand is required"},
                       {"", "show plain.srt", "there is no subcommand or option \"show\""},
                       {" list", "plain.srt --x a", "unexpected: \"--x\" \"a\""},
                       {" at", "plain.srt", "TIME is required"},
                       {" play", "plain.srt --from soon", notATime},
                       {" play", "plain.srt --speed 0", "--speed: must be .*"},
                       {" play", "plain.srt --speed nan", "--speed: must be .*"}};
  for (const auto& [command, arguments, reason] : usageFailures) {
    expectRun(command + " " + arguments, "",
              "kssub: " + reason + "\nRun kssub" + command + " --help for its usage.\n", 2);
  }
  for (const std::string time : {"''", "1.5", "1:60.5", "0:0:0:1", "99999999999999999999"}) {
    expectRun("at plain.srt 0 " + time, "", "kssub: " + notATime + "\n.*\n", 2);
  }
}

TEST_F(KssubTest, play_restores_the_terminal_when_interrupted) {
  const std::string file = directory.write("plain.srt", kPlain);
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    execl(KSSUB_PATH, "kssub", "play", file.c_str(), "--from", "1000", "--speed", "0.2", nullptr);
    _exit(127);
  }
  ASSERT_GT(child, 0);
  std::string screen;
  for (char c = 0; read(terminal, &c, 1) == 1;) {
    screen += c;
    if (screen.ends_with("there\r\n")) kill(child, SIGINT);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(screen,
            "\033[?1049h\033[?25l\033[H\033[2J\033[H\033[2JHello\r\nthere\r\n"
            "\033[?25h\033[?1049l");
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGINT);
  close(terminal);
}

}  // namespace
