// The command `timeline` of the host program.
#include "kssub_run.h"

namespace {

class TimelineTest : public KssubTest {
 protected:
  /// The drawing of these files.
  std::string drawn(const std::string& files) const {
    expectRun("timeline " + files + " out.svg", "", "", 0);
    return contentOf(directory.path("out.svg"));
  }

  static std::ptrdiff_t count(const std::string& text, const std::string& pattern) {
    const std::regex regex(pattern);
    return std::distance(std::sregex_iterator(text.begin(), text.end(), regex), {});
  }

  static void expectFound(const std::string& svg, const std::string& part) {
    EXPECT_NE(svg.find(part), svg.npos) << part << " is not in\n" << svg;
  }
};

TEST_F(TimelineTest, bars_are_where_cues_are_shown) {
  directory.write("film.srt",
                  "1\n00:00:03,000 --> 00:00:06,000\n<b>a</b> & \xEF\xBF\xBF\x1b\n\n"
                  "2\n00:00:05,000 --> 00:00:09,000\n" +
                      std::string(61, 'x') + "\n\n3\n00:00:06,000 --> 00:00:08,000\n" +
                      std::string(45, 'x') + "\n\n4\n00:00:09,000 --> 00:00:10,000\n" +
                      std::string(26, 'x') + "\n\n5\n00:00:09,500 --> 00:00:09,000\nnever\n");
  const std::string svg = drawn("film.srt");
  expectFound(svg, "film.srt \u2013 5 cues, subrip, UTF-8, LF; 3 notes</text>");
  // A pixel is 15.625 ms; the second cue is below the others, of which one ends where one begins.
  expectFound(svg,
              "<rect class=\"calm\" x=\"284.0\" y=\"84.0\" width=\"191.0\" height=\"10.0\"><title>"
              "0:00:03.000 \u2013 0:00:06.000, 2 characters per second\na &amp; \uFFFD\u241b");
  expectFound(svg, "<rect class=\"brisk\" x=\"412.0\" y=\"95.0\" width=\"255.0\"");
  expectFound(svg, "<rect class=\"fast\" x=\"476.0\" y=\"84.0\" width=\"127.0\"");
  expectFound(svg, "<rect class=\"too-fast\" x=\"668.0\" y=\"84.0\" width=\"63.0\"");
  EXPECT_EQ(count(svg, "<title>0:"), 4);
  EXPECT_EQ(count(svg, "<path class=\"note\"[^>]*><title>line (5|9|17): The cue "), 3);
}

TEST_F(TimelineTest, long_films_have_rows_and_several_files_share_them) {
  directory.write("a.srt",
                  "1\n0:00:50,000 --> 0:02:10,000\nlong\n\n2\n9:59:59,000 --> 9:59:59,500\nx\n");
  directory.write("b.srt", "1\n-0:00:09,000 --> 0:00:01,000\nfirst\n");
  const std::string svg = drawn("a.srt b.srt");
  EXPECT_EQ(count(svg, "<title>0:00:50.000"), 3);
  expectFound(svg, "x=\"92.0\" y=\"115.0\" width=\"15.0\" height=\"10.0\"><title>-0:00:09.000");
  expectFound(svg, ">nothing from 0:03:00 to 9:59:00</text>");
  EXPECT_EQ(count(svg, ">2</text>"), 4);
  // Neither a cue of many years nor many at once make a drawing too large to open.
  std::string many = "1\n0:00:00,000 --> 99999999:00:00,000\nx\n\n";
  for (int i = 0; i < 100; ++i) many += "1\n0:00:00,000 --> 0:00:01,000\nx\n\n";
  directory.write("b.srt", many);
  const std::string tall = drawn("b.srt");
  std::smatch size;
  ASSERT_TRUE(std::regex_search(tall, size, std::regex(" height=\"([0-9]+)")));
  EXPECT_LT(std::stoi(size[1]), 20000);
}

TEST_F(TimelineTest, documented_drawing_is_what_the_program_draws) {
  const std::string film = PROJECT_ROOT "/examples/film/lighthouse";
  EXPECT_EQ(drawn(film + ".srt " + film + "-ru.srt " + film + "-signs.ass"),
            contentOf(PROJECT_ROOT "/docs/timeline.svg"));
}

TEST_F(TimelineTest, drawings_can_be_png_and_appear_complete_or_not_at_all) {
  directory.write("film.srt", "1\n0:00:03,000 --> 0:00:06,000\nx\n");
  expectRun("timeline film.srt - out.png <film.srt", "", "", 0);
  const std::string png = contentOf(directory.path("out.png"));
  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(png.substr(16, 8), std::string("\0\0\4\x3c\0\0\0\x8e", 8));
  expectRun("timeline film.srt none.srt new.svg", "", "kssub: none.srt: cannot open: .*\n", 1);
  expectRun("timeline film.srt /dev/full/new.png", "", "kssub: .*: cannot write: .*\n", 1);
  expectRun("timeline film.srt out.txt", "", "kssub: \"out.txt\" is not named .*\n.*\n", 2);
  expectRun("timeline film.srt", "", "kssub: FILE: At least 2 required .*\n.*\n", 2);
  EXPECT_FALSE(std::filesystem::exists(directory.path("new.svg")));
}

}  // namespace
