// The commands of the host program on subtitle files.
#include <pty.h>
#include <termios.h>

#include <csignal>

#include "kssub_run.h"

namespace {

const std::string kPlain =
    "1\n00:00:01,000 --> 00:00:02,000\nHello\nthere\n\n2\n00:00:02,500 --> 00:00:03,000\nBye\n";
// The long cue is visible only between the two that follow it.
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
  const std::string played =
      "0:00:01.*  Hello \\| there\n0:00:02.*  nothing is shown\n0:00:02.*  Bye\n"
      "0:00:03.001  nothing is shown\n";
  const struct {
    std::string arguments, out;
  } cases[] = {
      {"at plain.srt 1000 -5", plainAnswers},
      {"at plain.srt 1000 -5 --exact", plainAnswers},
      {"at - 1000 -5 <plain.srt", plainAnswers},
      {"at wide.srt 0:1 -0:0,005 --exact", plainAnswers},
      {"at wide.srt 0:3", "duration: 0:00:03.000\n0:00:03.000: .*\n    \u00e9\n"},
      {"at script.ass 1:00:03",
       "duration: 1:00:03.000\n1:00:03.000: 1:00:01.500 --> 1:00:03.000\n    Hello, you\n    X\n"},
      {"at overlap.srt 2500 --json",
       R"(\{"time":2500,"start":2000,"end":3000,"text":"long\\nfirst"\})"
       "\n"},
      {"at overlap.srt 2500 1 --json --exact",
       R"(\{"time":2500,"start":2000,"end":3000,"text":"first"\})"
       "\n"
       R"(\{"time":1,"start":null,"end":null,"text":null\})"
       "\n"},
      {"at overlap.srt 2500 1 --tsv",
       "time\tstart\tend\ttext\n2500\t2000\t3000\tlong\\\\nfirst\n1\t\t\t\n"},
      {"list hostile.srt --tsv --format srt --encoding utf-8",
       "start\tend\ttext\n0\t1000\ta\u241b\\[2Jb\ufffd\\|c\u2421\ufffd\n"},
      {"at none.ass 0 --exact", "duration: 0:00:00.000\n0:00:00.000: nothing is shown\n"},
      {"list none.ass --exact", "0 cues\n"},
      {"list overlap.srt --exact",
       header + "0:00:02.000  0:00:03.000  first\n0:00:02.000  0:00:09.000  long\n"
                "0:00:05.000  0:00:09.000  last\n3 cues; 1 record of the file never shown .*\n"},
      {"list overlap.srt",
       header + "0:00:02.000  0:00:09.000  long\n0:00:02.000  0:00:03.000  first\n"
                "0:00:05.000  0:00:09.000  last\n0:00:08.000  0:00:01.000  backwards\n"
                "4 cues; subrip, UTF-8, LF; 3 notes\n"},
      {"list hostile.srt --encoding utf-8",
       header + "0:00:00.000  0:00:01.000  a\u241b\\[2Jb\ufffd\\|c\u2421\ufffd\n1 cue; .*\n"},
      {"play plain.srt --from 0:0.9 --speed 2", played},
      {"play plain.srt --from 0:0.9 --speed 2 --exact", played},
      {"--version", "kssub \\d+\\.\\d+\\.\\d+\n"},
      {"help", "[^]*\n  list  +Print every cue[^]*"},
      {"help play",
       "Show the cues in real time\\.\n[^]*\nExamples:\n  kssub play [^]*TIME is in [^]*"},
  };
  for (const auto& [arguments, out] : cases) expectRun(arguments, out, "", 0);
  expectRun("play plain.srt --from 3000", "", "kssub: plain.srt: nothing left to play, .*\n", 0);
  expectRun("list hostile.srt --exact",
            header + "0:00:00.000  0:00:01.000  a\u241b\\[2Jb\ufffd\\|c\u2421\ufffd\n1 cue\n",
            "kssub: hostile.srt: note: The text is neither UTF-8 .*\n", 0);
  expectRun("list overlap.srt --notes --json", "[^]*",
            "(overlap.srt:[47]: The cue begins while .*\n){2}"
            "overlap.srt:10: The cue does not end .*\n",
            0);
}

TEST_F(KssubTest, json_holds_any_text_in_the_order_of_the_file) {
  directory.write(
      "late.srt",
      "1\r\n00:00:05,000 --> 00:00:06,000\r\nHe said \"\\n\"\r\n\u00e9\xf0\x9f\x8c\x8a\r\n"
      "2\r\n-0:00:01,000 --> 00:00:01,000\r\na\x1b[2J\xc2\x9b|\t\x7f\u0085\u2028\u2029b\r\n");
  const std::string second =
      R"(\{"start":-1000,"end":1000,"text":"a\\u001b\[2J\\u009b\|\\u0009\\u007f\\u0085\\u2028\\u2029b"\})";
  expectRun("list late.srt --json",
            R"(\{"start":5000,"end":6000,"text":"He said \\"\\\\n\\"\\n)"
            "\u00e9\xf0\x9f\x8c\x8a\"\\}\n" +
                second + "\n",
            "", 0);
}

TEST_F(KssubTest, encoding_is_detected_given_or_usual_for_the_user) {
  directory.write("code-page.srt", "1\n00:00:01,000 --> 00:00:02,000\n\xe9\xe3\xf0\n");
  const struct {
    std::string locale, options, text, encoding;
  } cases[] = {
      {"LC_ALL=de_DE.UTF-8", "", "\u00e9\u00e3\u00f0", "windows-1252 \\(assumed\\)"},
      {"LC_ALL=uk_UA.UTF-8 LANG=de_DE", "", "\u0439\u0433\u0440", "windows-1251 \\(assumed\\)"},
      {"LC_ALL= LC_CTYPE= LANG=el", "", "\u03b9\u03b3\u03c0", "windows-1253 \\(assumed\\)"},
      {"LC_ALL=zh_TW.Big5", "--fallback windows-1251", "\u0439\u0433\u0440", "windows-1251 .*"},
      {"LC_ALL=C", "--encoding cp866", "\u0449\u0443\u0401", "cp866 \\(given\\)"},
  };
  for (const auto& [locale, options, text, encoding] : cases) {
    expectRun("list code-page.srt " + options,
              "[^]*  " + text + "\n1 cue; subrip, " + encoding + ", LF\n", "", 0,
              "export " + locale);
  }
}

TEST_F(KssubTest, languages_are_listed) {
  directory.write(
      "two.ttml",
      "<tt xmlns='http://www.w3.org/ns/ttml'><body><div xml:lang='en'><p begin='1s' "
      "end='2s'>A</p></div><div xml:lang='fr-CA'><p begin='1s' end='2s'>B</p></div></body>"
      "</tt>\n");
  expectRun("list two.ttml --language FR", "[^]*  B\n1 cue; ttml, .*; languages: en, fr-CA\n", "",
            0);
  directory.write("two.smi",
                  "<SAMI><STYLE>.ENCC {lang: en-US;} .FRCC {lang: fr-FR;}</STYLE><BODY>\n"
                  "<SYNC Start=0><P Class=ENCC>A<P Class=FRCC>B\n");
  expectRun("list two.smi --language fr", "[^]*  B\n1 cue; sami, .*\n", "", 0);
  expectRun("list two.smi --language zz", "", "kssub: two.smi: no language zz; it has ENCC, FRCC\n",
            1);
  expectRun("at two.ttml 0 --language zz", "",
            "kssub: two.ttml: no language zz; it has en, fr-CA\n", 1);
}

TEST_F(KssubTest, fixed_readers_note_odd_forms_in_one_line_before_the_answers) {
  const std::string tooManyLines(20001, '\n');
  const struct {
    std::string name, content, note;
  } cases[] = {
      {"crlf.srt", replaced(kPlain, "\n", "\r\n"), "A line ends in something other .*"},
      {"crlf.ass", replaced(kScript, "\n", "\r\n"), "A line ends in something other .*"},
      {"wide.srt", utf16(replaced(kPlain, "\n", "\r\n")), "A line ends in something other .*"},
      {"bom.srt", "\xef\xbb\xbf" + kPlain, "The text is neither UTF-8 without a BOM .*"},
      {"cut.ass", kScript + "Dialogue: lost", "A line ends in something other .*"},
      {"bom.ass", "\xef\xbb\xbf" + kScript, "The text is neither UTF-8 without a BOM .*"},
      {"cut.srt", kPlain + "x", ""},
      {"full.srt", tooManyLines.substr(1) + "x", ""},
  };
  for (const auto& [name, content, note] : cases) {
    directory.write(name, content);
    const std::string line =
        "(kssub: " + name + ": note: .*\n)*kssub: " + name + ": note: " + note + "\n(kssub: .*\n)*";
    expectRun("at --exact " + name + " 0", "duration: .*\n0:00:00.000: [^]*",
              note.empty() ? "" : line, 0);
  }
  directory.write("long.srt", tooManyLines);
  expectRun("list --exact long.srt", "", "kssub: long.srt: The file is empty but .*\n", 1);
}

TEST_F(KssubTest, failures_have_exit_statuses_of_their_own) {
  directory.write("plain.srt", kPlain);
  directory.write("plain.txt", kPlain);
  directory.write("empty.srt", "");
  std::filesystem::create_directory(directory.path("dir.srt"));
  const std::string cannotOpen = "kssub: .*: cannot open: ";
  expectRun("at missing.srt 0", "", cannotOpen + "No such file or directory\n", 1);
  expectRun("list plain.txt --exact", "", cannotOpen + "The file's name does not end in .*\n", 1);
  expectRun("play empty.srt --exact", "", "kssub: empty.srt: The file is empty.\n", 1);
  expectRun("list dir.srt --exact", "", cannotOpen + "not a regular file\n", 1);
  expectRun("list - <dir.srt", "", "kssub: standard input: cannot open: Is a directory\n", 1);
  expectRun("at - 0 --json <empty.srt", "", "kssub: standard input: The file is empty.\n", 1);
  expectRun("list /dev/zero", "", "kssub: /dev/zero: The file is larger .*\n", 1);
  expectRun("list - </dev/zero", "", "kssub: standard input: The file is larger .*\n", 1);
  std::string film;
  for (int i = 0; i < 5000; ++i) film += "00:00:01,000 --> 00:00:02,000\nA line\n\n";
  directory.write("long.srt", film);
  expectRun("list long.srt | head -1", " +start +end +text\n", "", 0);
  expectRun("list plain.srt >/dev/full", "", "kssub: cannot write the output\n", 1);
  expectRun("--help >/dev/full", "", "kssub: cannot write the output\n", 1);
  const std::string notATime = "\"[^ ]*\" is not a time: .*1500 \\(milliseconds\\)";
  const struct {
    std::string command, arguments, reason;
  } usageFailures[] = {{"", "", "a command is required"},
                       {"", "show plain.srt", "there is no command or option \"show\""},
                       {"", "lsit plain.srt", "there is no .* \"lsit\"; did you mean list\\?"},
                       {"", "-json", "there is no command or option \"-json\""},
                       {" help", "pla", "there is no command \"pla\"; did you mean play\\?"},
                       {" list", "plain.srt --x a", "unexpected: \"--x\" \"a\""},
                       {" at", "plain.srt 0 --jsn", "unexpected: \"--jsn\"; did .* --json\\?"},
                       {" at", "plain.srt", "TIME is required"},
                       {" play", "plain.srt --from soon", notATime},
                       {" list", "plain.srt --format sub", "--format: \"sub\" may be .* or .*"},
                       {" list", "x --format nix", "--format: there is no format \"nix\""},
                       {" list", "x --encoding nix", "--encoding: there is no encoding \"nix\""},
                       {" check", "x --fallback nix", "--fallback: there is no .* \"nix\""},
                       {" list", "plain.srt --json --tsv", "--[jt].* excludes --[jt].*"},
                       {" list", "- --exact", "--exact: needs the name of a file, not -"},
                       {" at", "plain.srt 0 --exact --encoding utf-8", "--e.* excludes --e.*"},
                       {" list", "plain.srt --fps 0", "--fps: not a frame rate: 0"},
                       {" list", "plain.srt --fps abc", "--fps: not a frame rate: abc"},
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

/// kssub on a terminal of its own, 30 columns by 4 rows.
class OnTerminal {
 public:
  explicit OnTerminal(const std::string& arguments, const std::string& environment = "") {
    const winsize size{4, 30, 0, 0};
    child_ = forkpty(&terminal_, nullptr, nullptr, &size);
    if (child_ != 0) return;
    const std::string command = "TERM=xterm " + environment + " exec " KSSUB_PATH " " + arguments;
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    _exit(127);
  }
  OnTerminal(const OnTerminal&) = delete;
  OnTerminal& operator=(const OnTerminal&) = delete;
  ~OnTerminal() { close(terminal_); }

  /// Output up to `end`; all of it by default, because form feeds never occur.
  std::string read(std::string_view end = "\f") {
    std::string screen;
    for (char c = 0; !screen.ends_with(end) && ::read(terminal_, &c, 1) == 1;) screen += c;
    return screen;
  }
  void type(std::string_view keys) {
    EXPECT_EQ(write(terminal_, keys.data(), keys.size()), std::ssize(keys));
  }
  void send(int signal) { kill(child_, signal); }
  bool isLinewise() const {
    termios state{};
    return tcgetattr(terminal_, &state) == 0 &&
           (state.c_lflag & (ICANON | ECHO)) == (ICANON | ECHO);
  }
  int status() {
    int status = 0;
    EXPECT_EQ(waitpid(child_, &status, 0), child_);
    return status;
  }

 private:
  int terminal_ = -1;
  pid_t child_ = -1;
};

const std::string kTaken = "\033[?1049h\033[?25l\033[2J";
const std::string kRestored = "\033[?25h\033[?1049l";

TEST_F(KssubTest, play_restores_the_terminal_however_it_ends) {
  const std::string file = directory.write("plain.srt", kPlain);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    OnTerminal run("play " + file + " --from 1000 --speed 0.2");
    EXPECT_EQ(run.read("there"),
              kTaken + "\033[2;1H\033[2K            Hello\033[3;1H\033[2K            there");
    EXPECT_FALSE(run.isLinewise());
    run.send(signal);
    EXPECT_TRUE(run.read(kRestored).ends_with(kRestored));
    const int status = run.status();
    EXPECT_TRUE(run.isLinewise());
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), signal);
  }
}

TEST_F(KssubTest, play_obeys_keys_and_resumes_the_terminal_after_a_stop) {
  const std::string file = directory.write("plain.srt", kPlain + "3\n0:0:20,0 --> 0:0:21,0\n.\n");
  OnTerminal run("play - --speed 0.01 <" + file);
  run.read(kTaken);
  run.type(" \033[C");
  EXPECT_NE(run.read("0:00:05 / 0:00:21  paused").find("0:00:00 / 0:00:21"), std::string::npos);
  run.send(SIGTSTP);  // not obeyed by a process that could not be continued
  EXPECT_TRUE(run.read(kTaken).ends_with(kRestored + kTaken));
  run.read("0:00:05 / 0:00:21  paused");
  run.type("\033OD\033[A\033[D ");
  run.read("0:00:00 / 0:00:21");
  run.type("q");
  EXPECT_TRUE(run.read().ends_with(kRestored));
  EXPECT_EQ(run.status(), 0);
}

TEST_F(KssubTest, shells_complete_command_lines) {
  expectRun("completion bash >bash", "", "", 0);
  const auto completed = [&](const std::string& words) {
    const std::string script = "cd " + directory.path("") + "; . ./bash; COMP_WORDS=(" + words +
                               " ''); COMP_CWORD=$((${#COMP_WORDS[@]} - 2)); _kssub; "
                               "echo \"${COMPREPLY[@]}\"";
    return Outcome("bash -c '" + replaced(script, "'", "'\\''") + "'").out;
  };
  EXPECT_EQ(completed("kssub p"), "play picture\n");
  EXPECT_EQ(completed("kssub help ti"), "timeline\n");
  EXPECT_EQ(completed("kssub play --f"), "--fallback --format --fps --from\n");
  EXPECT_EQ(completed("kssub play --format web"), "webvtt\n");
  EXPECT_EQ(completed("kssub play fi"), "\n");
  expectRun("completion sh", "", "kssub: \"sh\" is not .*\n.*\n", 2);
}

TEST_F(KssubTest, tables_fit_the_terminal) {
  const std::string file = directory.write(
      "wide.srt", "1\n00:00:01,000 --> 00:00:02,000\na b\n\u65e5\u672ce\u0301\u8a9e\n");
  EXPECT_EQ(OnTerminal("list " + file).read(),
            "\033[1m      start          end  text\033[0m\r\n"
            "0:00:01.000  0:00:02.000  a b\r\n"
            "                          \u65e5\u672c\r\n"
            "                          e\u0301\u8a9e\r\n"
            "1 cue; subrip, UTF-8, LF\r\n");
  EXPECT_EQ(OnTerminal("list " + file, "NO_COLOR=1").read().find('\033'), std::string::npos);
}

}  // namespace
