// The command `check` of the host program.
#include <pty.h>

#include "kssub_run.h"

namespace {

// Each cue except the last has one flaw; the text of every cue says its line.
const std::string kFlawed =
    "1\n00:00:01,000 --> 00:00:01,499\nline 1: shown for 499 ms\n\n"
    "2\n00:00:01,578 --> 00:00:04,000\nline 5: 79 ms later\n\n"
    "3\n00:00:04,000 --> 00:00:06,000\nline 9: 52 characters in two seconds are\nmore than 25\n\n"
    "4\n00:00:07,000 --> 00:00:10,000\nline 14: 43 characters, six of them ."
    "\u00E9\u00E9\u00E9\u00E9\u00E9\u00E9\n\n"
    "5\n00:00:06,500 --> 00:00:07,000\nline 18\n\n"
    "6\n00:00:09,999 --> 00:00:11,000\nline 22\n\n"
    "7\n00:00:11,080 --> 00:00:12,000\nline 26: fits\n";

TEST_F(KssubTest, check_reports_what_a_viewer_notices) {
  directory.write("film.srt", kFlawed);
  const std::string form =
      "film.srt: subrip, UTF-8 \\(valid throughout\\), LF, 7 cues, 0:00:12.000\n";
  const std::string fixed =
      "film.srt: The fixed readers may answer it differently: The cues do not follow one "
      "another.*\n";
  expectRun("check film.srt",
            form +
                "film.srt:1: The cue is shown for only 499 ms\\.\n"
                "film.srt:5: The cue begins only 79 ms after the previous one ends\\.\n"
                "film.srt:9: The cue must be read at 26 characters per second\\.\n"
                "film.srt:14: The cue has a line of 43 characters\\.\n"
                "film.srt:18: The cue begins before one that precedes it in the file\\.\n"
                "film.srt:22: The cue begins while an earlier one is still shown\\.\n" +
                fixed,
            "", 1);
  expectRun("check film.srt --min-duration 0 --min-gap 0 --max-speed 0 --max-line 0",
            form + "film.srt:18: .*\nfilm.srt:22: .*\n" + fixed, "", 1);
  expectRun("check - --max-line 20 --fps 20 --json <film.srt",
            R"(\{"file":"standard input","format":"subrip",.*"cues":7,"duration":12000,.*)"
            R"(\{"line":26,"text":"The cue begins only 80 ms.*"notesNotKept":0\})"
            "\n",
            "", 1);
}

TEST_F(KssubTest, check_looks_into_directories) {
  std::filesystem::create_directories(directory.path("films/deep"));
  const std::string clean = "1\n00:00:01,000 --> 00:00:02,000\nA\n";
  directory.write("films/a.srt", clean);
  directory.write("films/deep/b.SRT", clean);
  directory.write("films/deep/letter.txt", "no subtitles\n");
  directory.write("films/deep/notes.md", clean);
  const std::string agree = ": The fixed readers answer the file as it is meant\\.\n";
  const std::string both =
      "films/a.srt: subrip, .*\nfilms/a.srt" + agree +
      "films/deep/b.SRT: subrip, .*\nfilms/deep/b.SRT: .*differently: The file's name.*\n";
  expectRun("check films", both, "", 0);
  directory.write("films/c.srt", "no subtitles\n");
  directory.write("films/d.vtt", "WEBVTT\n");
  expectRun("check films none.srt",
            std::regex_replace(both, std::regex("films/deep"),
                               "films/d.vtt: .*\nfilms/d.vtt: The file has no cue .*\n.*\n$&",
                               std::regex_constants::format_first_only),
            "films/c.srt: The file is text, but .*\nnone.srt: cannot open: .*\n", 3);
  expectRun("check films/deep/letter.txt --json",
            R"(\{"file":"films/deep/letter.txt","refusal":"The file is text, .*"\})"
            "\n",
            "", 3);
  expectRun("check films/deep", "", "films/deep: no subtitle files\n", 0, "rm films/deep/b.SRT");
  expectRun("check", "", "kssub: .*\n.*\n", 2);
}

TEST_F(KssubTest, check_abbreviates_frequent_problems) {
  std::string film;
  std::string script = "[Events]\n";
  for (int i = 0; i < 1200; ++i) {
    film +=
        std::to_string(i + 1) + "\n00:00:01,000 --> 00:00:09,000\n" + std::to_string(i) + "a\n\n";
    script += "Dialogue: 0,0:00:01.00,0:00:09.00,,,0,0,0,," + std::to_string(i) + "a\n";
  }
  directory.write("film.srt", film);
  directory.write("layers.ass", script);
  expectRun("check film.srt | cut -c 1-40",
            "film.srt: .*\n(film.srt:\\d+: The cue begins while.*\n){10}"
            "film.srt: 1189 more like this: The cue .*\nfilm.srt: The fixed .*\n",
            "", 0);
  expectRun("check film.srt --all | wc -l", "\\s*1004\n", "", 0);
  expectRun("check layers.ass",
            "layers.ass: .*\nlayers.ass: .* \\(script, .*; --all explains\\)\\.\n", "", 0);
}

TEST_F(KssubTest, check_accepts_formats_without_order) {
  directory.write("song.lrc", "[00:09.00]C\n[00:01.00]A\n[00:05.00]B\n");
  directory.write("layers.ttml",
                  "<tt xmlns='http://www.w3.org/ns/ttml'><body><div>"
                  "<p begin='5s' end='7s'>B</p><p begin='1s' end='6s'>A</p></div></body></tt>");
  expectRun("check song.lrc layers.ttml",
            "song.lrc: .*\nsong.lrc: The fixed .*\nlayers.ttml: .*\nlayers.ttml: The fixed .*\n",
            "", 0);
}

TEST_F(KssubTest, check_shows_progress_on_a_terminal) {
  directory.write("a.srt", kFlawed);
  directory.write("b.srt", kFlawed);
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  ASSERT_GE(child, 0);
  if (child == 0) {
    execl(KSSUB_PATH, KSSUB_PATH, "check", directory.path("").c_str(), nullptr);
    _exit(127);
  }
  std::string screen;
  for (char c; read(terminal, &c, 1) == 1;) screen += c;
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_NE(screen.find("] 1 of 2 files\r\033[K"), screen.npos) << screen;
  close(terminal);
}

}  // namespace
