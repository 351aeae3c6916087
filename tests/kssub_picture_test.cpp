// The commands of kssub on VobSub files.
#include <png.h>

#include <algorithm>
#include <array>

#include "kssub_run.h"
#include "program_stream_writer.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Rgba = std::array<unsigned char, 4>;

class PictureTest : public KssubTest {
 protected:
  Rgba readPixel(const char* name, int x, int y) const {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    EXPECT_NE(png_image_begin_read_from_file(&png, directory.path(name).c_str()), 0) << name;
    png.format = PNG_FORMAT_RGBA;
    Bytes rgba(PNG_IMAGE_SIZE(png) + 1000000);
    png_image_finish_read(&png, nullptr, rgba.data(), 0, nullptr);
    Rgba pixel;
    std::copy_n(rgba.begin() + (y * static_cast<int>(png.width) + x) * 4, 4, pixel.begin());
    return pixel;
  }
};

const std::string kPalette = "palette: 0, 111111, 222222, 333333\n";

std::string entry(const std::string& time, const std::string& position) {
  return "timestamp: " + time + ", filepos: " + position + "\n";
}

TEST_F(PictureTest, pictures_become_png_files) {
  const std::string plain = packsOf(makeUnit({.rows = {"0123", "3210"}, .left = 7, .stop = 90}));
  directory.write("a.sub",
                  plain + packsOf("damaged") + packsOf(makeUnit({.commands = "\1"}), 0, 2));
  directory.write("a.idx", kPalette + "id: en, index: 0\n" + entry("00:00:00:000", "0") +
                               entry("01:00:00:000", "800") + "id: de, index: 2\n" +
                               entry("00:00:09:000", "1000"));
  expectRun("picture a.idx 400 out.png",
            "out.png: 4 x 2 pixels at 7,0, shown from 0:00:00.000 to 0:00:01.024\n", "", 0);
  EXPECT_EQ(readPixel("out.png", 1, 1), (Rgba{0x22, 0x22, 0x22, 0xFF}));
  EXPECT_EQ(readPixel("out.png", 0, 0)[3], 0);
  expectRun("picture a.sub 0:09 out.png --stream 2", "out.png: 1 x 1 .*\n", "", 0);
  EXPECT_EQ(readPixel("out.png", 0, 0), (Rgba{0x11, 0x11, 0x11, 0xFF}));
  std::filesystem::create_directory(directory.path("d.png"));
  const std::pair<const char*, const char*> failures[] = {
      {"a.idx 1:00:01 no.png", "a.idx: no picture at 1:00:00.000: .* inside it[.]"},
      {"a.idx 500000 no.png", "a.idx: no picture is shown at 0:08:20.000"},
      {"a.idx 0 no.png --language zz", "a.idx: no language zz; it has en, de"},
      {"a.idx 0 no.png --stream 1", "a.idx: there is no language with index 1"},
      {"a.idx 0 d.png", "d.png: cannot write: not a regular file"}};
  for (const auto& [arguments, reason] : failures) {
    expectRun(std::string("picture ") + arguments, "", std::string("kssub: ") + reason + "\n", 1);
  }
  expectRun("picture a.idx 0 no.png 2>&1", "[^]*kssub: no.png: cannot write: File too large\n", "",
            1, "trap '' XFSZ; ulimit -f 0");
  EXPECT_EQ(countFiles(directory.path("")), 4);

  expectRun("picture a.idx --all new/all", "new/all/0001_00-00-00.000.png: .*\n",
            "kssub: .* 1:00:00.000: .*\nkssub: 1 of 2 pictures are damaged\n", 1);
  expectRun("picture a.idx --all new/all --language de", "new/all/0001_00-00-09.000.png: .*\n", "",
            0);
  EXPECT_EQ(countFiles(directory.path("new/all")), 2);
}

TEST_F(PictureTest, pictures_are_listed) {
  directory.write("a.sub",
                  packsOf(makeUnit({.left = 7, .stop = 90, .commands = std::string(1, 0)})));
  directory.write("a.idx", "id: en, index: 0\n" + entry("00:00:01:000", "0") +
                               entry("00:00:03:000", "800") + "id: de, index: 1\nalt: \x1B\n");
  expectRun("list a.idx",
            " +start +end  picture\n0:00:01.000  0:00:02.024  1 x 1 at 7,0, forced\n"
            "0:00:03.000  0:00:08.000  damaged: .*[.]\n"
            "2 pictures [(]en, index 0[)]; vobsub, UTF-8, LF; 1 note\n"
            "also 0 pictures [(][^\x1B]*, index 1[)]\n",
            "", 0);
  expectRun("list --json --notes a.idx",
            "[{]\"start\":1000,\"end\":2024,\"left\":7,\"top\":0,\"width\":1,\"height\":1,"
            "\"forced\":true,\"damage\":null[}]\n[{]\"start\":3000,\"end\":8000,\"left\":null,.*,"
            "\"damage\":\"[^\"]+\"[}]\n",
            "a.idx:3: The picture is damaged .*\n", 0);
  expectRun("list a.sub --stream 1", "0 pictures .*\nalso 2 .*\n", "", 0);
  expectRun("list - <a.idx", "", "kssub: standard input: The file is a VobSub index.*\n", 1);
}

TEST_F(PictureTest, unfit_files_and_arguments_are_refused) {
  const struct {
    const char* name;
    std::string content;
    const char* reason;
  } cases[] = {
      {"lone.idx", entry("0:0:1:0", "0"), "cannot open its pictures, lone.sub: No such .*ory"},
      {"empty.idx", "", "empty"},
      {"text.idx", "1\n", "not a VobSub index"}};
  for (const auto& [name, content, reason] : cases) {
    directory.write(name, content);
    expectRun(std::string("picture ") + name + " 1000 out.png", "",
              std::string("kssub: ") + name + ": .*" + reason + ".*\n", 1);
  }
  expectRun("picture none.idx 0 out.png", "", "kssub: none.idx: cannot open: No such file.*\n", 1);
  for (const char* arguments :
       {"", "a.idx", "a.idx 1000", "a.idx 1s out.png", "a.idx 1000 out.png --all out", "--all out",
        "a.idx 0 a.sub", "- 0 out.png"}) {
    expectRun(std::string("picture ") + arguments, "", "[^]*--help[^]*", 2);
  }
  EXPECT_FALSE(std::filesystem::exists(directory.path("out.png")));
  expectRun("at lone.idx 0", "", "kssub: lone.idx: .* See kssub list and kssub picture[.]\n", 1);
}

}  // namespace
