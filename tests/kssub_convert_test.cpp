// The command `convert` of the host program.
#include <sys/stat.h>

#include "kssub_run.h"

namespace {

const std::string kFilm =
    "1\n00:00:01,000 --> 00:00:02,000\n<i>JOHN: Hi [sighs], you\n(LAUGHS)</i>\n\n"
    "2\n00:00:01,500 --> 00:00:04,000\n- [DOOR] - Who?\n- \u00C9VA #2: <b>A & b</b>\n\n"
    "3\n00:00:03,900 --> 00:00:04,100\n\u266A [music] \u266A\n- (of\ntwo lines)\n\n"
    "4\n00:00:05,000 --> 00:00:05,100\nAt 10:30: (no one two three f(x) [5]\n\n"
    "5\n00:00:09,000 --> 00:00:08,000\nnever\n\n"
    "6\n00:00:05,000 --> 00:00:06,000\n{\\an8}top\n";

/// A table of cues as a pattern: times without hours and minutes, and '|' between lines.
std::string subRip(const std::vector<std::array<std::string, 3>>& cues) {
  std::string all;
  for (const auto& [start, end, text] : cues) {
    all +=
        (all.empty() ? "" : "\n") + std::string("\\d\n00:00:") + start + " --> 00:00:" + end + "\n";
    all += std::regex_replace(std::regex_replace(text, std::regex(R"([\[\](){}\\?])"), "\\$&"),
                              std::regex(" / "), "\n") +
           "\n";
  }
  return all;
}

TEST_F(KssubTest, convert_edits_cues) {
  directory.write("film.srt", kFilm);
  const std::string leftOut = "film.srt: 1 cue that is never shown is left out\n";
  const std::string hi = "<i>JOHN: Hi [sighs], you / (LAUGHS)</i>";
  const std::string who = "- [DOOR] - Who? / - \u00C9VA #2: <b>A & b</b>";
  const std::string music = "\u266A [music] \u266A / - (of / two lines)";
  const std::string four = "At 10:30: (no one two three f(x) [5]";
  const struct {
    std::string options;
    std::vector<std::array<std::string, 3>> cues;
  } cases[] = {
      {"--shift -1600 --until 0:05",
       {{"00,000", "00,400", hi}, {"00,000", "02,400", who}, {"02,300", "02,500", music}}},
      {"--scale 25:50 --from 0:05",
       {{"02,500", "02,550", four}, {"02,500", "03,000", "{\\an8}top"}}},
      {"--sync 0:01=0:11 --sync 0:05=0:23 --from 2000 --until 4000",
       {{"12,500", "20,000", who}, {"19,700", "20,300", music}}},
      {"--sync 1000=500 --until 1500", {{"00,500", "01,500", hi}}},
      {"--no-sounds",
       {{"01,000", "02,000", "<i>Hi, you</i>"},
        {"01,500", "04,000", "- Who? / - <b>A & b</b>"},
        {"05,000", "05,100", four},
        {"05,000", "06,000", "{\\an8}top"}}},
      {"--no-overlaps --min-duration 0:02.5",
       {{"01,000", "01,500", hi},
        {"01,500", "03,900", who},
        {"03,900", "05,000", music},
        {"05,000", "07,500", four + " / top"}}},
      {"--wrap 16 --no-overlaps --from 4000",
       {{"03,900", "04,100", music},
        {"05,000", "06,000", "At 10:30: (no / one two three / f(x) [5] / top"}}},
  };
  for (const auto& [options, cues] : cases) {
    const bool isCut = options.find("--until") != options.npos;
    expectRun("convert film.srt - --to srt " + options, subRip(cues), isCut ? "" : leftOut, 0);
  }
}

// 0.3 / 0.2 is below 1.5 in binary fractions.
TEST_F(KssubTest, convert_scales_times_exactly) {
  directory.write("film.srt", "1\n00:00:01,001 --> 999999:00:00,001\nA\n");
  expectRun("convert film.srt - --to srt --scale 0.3:0.2",
            "1\n0000000:00:01,502 --> 1499998:30:00,002\nA\n", "", 0);
}

TEST_F(KssubTest, convert_writes_every_format) {
  directory.write("film.sub", "{25}{50}{y:i}A & b|c\n");
  expectRun("convert film.sub film.srt --fps 25 && cat film.srt",
            "1\n00:00:01,000 --> 00:00:02,000\n<i>A & b</i>\nc\n", "", 0);
  expectRun(
      "convert film.srt film.webvtt --to subrip && " KSSUB_PATH
      " convert film.webvtt film.ssa && diff film.srt film.webvtt && grep -c ScriptType film.ssa",
      "1\n", "", 0);
  expectRun("convert film.srt film.webvtt && cat film.webvtt",
            "WEBVTT\n\n1\n00:00:01.000 --> 00:00:02.000\n<i>A &amp; b</i>\nc\n", "", 0);
  directory.write("colours.srt",
                  "1\n00:00:01,000 --> 00:00:02,000\n<font color=#ee2020>A</font>\n");
  expectRun("convert colours.srt - --to vtt | tail -n 1", "<c.red>A</c>\n", "", 0);
  expectRun("convert colours.srt - --to vtt --exact-colours | tail -n 1", "<c.coloree2020>A</c>\n",
            "", 0);
  expectRun("convert - film.ass <film.srt && tail -n 1 film.ass",
            "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,.\\\\i1.A & b\\\\N.\\\\i0.c\n", "",
            0);
  expectRun("convert film.ass film.txt && cat film.txt", "A & b\nc\n", "", 0);
}

TEST_F(KssubTest, convert_in_place_keeps_a_backup) {
  const std::string path = directory.write("film.srt", kFilm);
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  expectRun("convert film.srt film.srt", "", "kssub: OUT: is IN: .*\n.*\n", 2);
  const std::string twice = "convert --in-place link.srt --until 2000 && " KSSUB_PATH
                            " convert --in-place link.srt --shift 1000";
  expectRun(twice, "", "", 0, "ln -s film.srt link.srt");
  expectRun("list link.srt --json",
            R"(\{"start":2000,"end":3000.*\n\{"start":2500,"end":5000,.*\n)", "", 0);
  Outcome after("cd " + directory.path("") +
                "; cat film.srt.bak; grep -c Who film.srt.bak2; "
                "stat -c %a film.srt; ls | wc -l");
  EXPECT_EQ(after.out, kFilm + "1\n640\n4\n");
}

TEST_F(KssubTest, convert_rejects_what_it_cannot_do) {
  directory.write("film.srt", kFilm);
  for (const char* arguments :
       {"film.srt", "film.srt film.xyz", "film.srt a.srt --to x", "--in-place film.srt a.srt",
        "--in-place -", "film.srt a.srt --sync 1=2 --sync 1=3", "film.srt a.srt --sync 1",
        "film.srt a.srt --sync 1=2 --shift 3", "film.srt a.srt --scale 25",
        "film.srt a.srt --scale 25:0", "film.srt a.srt --from 2000 --until 2000",
        "film.srt a.srt --wrap 0", "film.srt a.srt --shift x"}) {
    expectRun(std::string("convert ") + arguments, "", "kssub: .*\nRun kssub convert --help .*\n",
              2);
  }
  expectRun("convert none.srt a.srt", "", "kssub: none.srt: cannot open: .*\n", 1);
  expectRun("convert film.srt none/a.srt", "",
            "film.srt: 1 cue .*\nkssub: none/a.srt: cannot write: .*\n", 1);
  expectRun("convert film.srt a.srt --from 1:00:00", "", "kssub: film.srt: no cue is left\n", 1);
  EXPECT_EQ(countFiles(directory.path("")), 1);
  directory.write("film.srt", kFilm + kFilm.substr(kFilm.rfind("\n6\n")));
  expectRun("convert film.srt a.srt", "", "film.srt: 1 duplicate cue .*\nfilm.srt: 1 .*\n", 0);
}

}  // namespace
