// Subpictures: the decoder on a unit written by hand, and the command that writes them as PNG
// files.
#include <png.h>

#include <algorithm>

#include "kssub_run.h"
#include "tools/kssub/subpicture.h"

namespace {

using kssub::BrokenUnit;
using kssub::decodeSubpicture;
using Bytes = std::vector<unsigned char>;
using Rgba = std::array<unsigned char, 4>;

constexpr std::size_t kFirstCommand = 18, kColors = 27, kArea = 32;
// clang-format off
const Bytes kUnit = {
    0, 54, 0, 14,                                // its size, the offset of the sequences
    0x60, 0, 0,                                  // upper: 1 of 2, the rest of 0; half a byte is left
    0xD3, 0xE0, 0xFF, 0x03, 0x6C,                // upper: 3 of 1, 15 of 2, 63 of 3, 219 of 0
    0, 3,                                        // lower: all of 3
    0, 90, 0, 45, 1,                             // after 1024 ms: start
    7, 0, 6, 1, 2, 5, 4,                         // changes of colours, not followed
    3, 0x43, 0x21, 4, 0xF8, 0x40,                // colours, contrast
    5, 0, 0xA1, 0x35, 0, 0x50, 0x07,             // 10 to 309, 5 to 7
    6, 0, 4, 0, 12, 0xFF,                        // the two fields
    0, 180, 0, 45, 4, 0x11, 0x11, 2, 0xFF};      // after 2048 ms: faded, stop
// clang-format on

Bytes changed(std::size_t offset, unsigned byte) {
  Bytes unit = kUnit;
  unit.at(offset) = static_cast<unsigned char>(byte);
  return unit;
}

Rgba pixelAt(const Bytes& rgba, int width, int x, int y) {
  Rgba pixel;
  std::copy_n(rgba.begin() + (y * width + x) * 4, 4, pixel.begin());
  return pixel;
}

TEST(Subpicture, unit_decodes_to_its_pixels) {
  kssub::Palette palette{{0, 0x111213, 0x212223, 0x313233, 0x414243}, {}};
  const auto unit = decodeSubpicture(kUnit, palette);
  palette.custom = {{0x010203, 0x040506, 0x070809, 0x0A0B0C}, 0b0100};
  const auto custom = decodeSubpicture(kUnit, palette);
  EXPECT_EQ((std::array{unit.image.width, unit.image.height, unit.left, unit.top, unit.startDelay}),
            (std::array{300, 3, 10, 5, 1024}));
  EXPECT_EQ(unit.stopDelay, 2048);
  const Rgba codes[] = {
      {0x11, 0x12, 0x13, 0}, {0x21, 0x22, 0x23, 68}, {0x31, 0x32, 0x33, 136}, {65, 66, 67, 255}};
  const Rgba customs[] = {{1, 2, 3, 255}, {4, 5, 6, 255}, {7, 8, 9, 0}, {10, 11, 12, 255}};
  const struct {
    int x, y, code;
  } cases[] = {{0, 0, 2}, {1, 0, 0},  {299, 0, 0}, {0, 1, 3},  {299, 1, 3}, {0, 2, 1},  {2, 2, 1},
               {3, 2, 2}, {17, 2, 2}, {18, 2, 3},  {80, 2, 3}, {81, 2, 0},  {299, 2, 0}};
  for (const auto& [x, y, code] : cases) {
    EXPECT_EQ(pixelAt(unit.image.rgba, 300, x, y), codes[code]) << x << ',' << y;
    EXPECT_EQ(pixelAt(custom.image.rgba, 300, x, y), customs[code]) << x << ',' << y;
  }
}

TEST(Subpicture, broken_units_are_refused_within_their_bounds) {
  const struct {
    std::size_t offset;
    unsigned byte;
    const char* reason;
  } cases[] = {{3, 54, "control sequences end"},
               {11, 0x7C, "past the end of its line"},
               {17, 13, "overlap"},
               {kFirstCommand, 8, "unknown"},
               {21, 1, "impossible size"},
               {kFirstCommand, 0xFF, "no display area"},
               {kArea + 1, 0xFF, "ends before"},
               {kArea + 6, 0xFF, "bitmap ends"},
               {43, 14, "bitmap ends"}};
  for (const auto& [offset, byte, reason] : cases) {
    try {
      decodeSubpicture(changed(offset, byte), {});
      ADD_FAILURE() << reason;
    } catch (const BrokenUnit& error) {
      EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
    }
  }
  for (std::size_t size = 0; size < kUnit.size(); ++size) {
    const Bytes part(kUnit.begin(), kUnit.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_THROW(decodeSubpicture(part, {}), BrokenUnit) << size;
    for (const unsigned byte : {0u, 0xFFu, kUnit[size] ^ 1u}) {
      try {
        const auto image = decodeSubpicture(changed(size, byte), {}).image;
        EXPECT_EQ(image.rgba.size(), static_cast<std::size_t>(image.width * image.height * 4));
      } catch (const BrokenUnit&) {
      }
    }
  }
}

/// The only pack of a unit.
std::string packOf(const Bytes& unit) {
  return pack(5, ' ', std::string(unit.begin(), unit.end()));
}

class PictureTest : public KssubTest {
 protected:
  void expectPicture(const std::string& arguments, const std::string& out, const std::string& err,
                     int status, const std::string& before = "ulimit -Sn 20") const {
    expectRun("picture " + arguments, out, err, status, before);
  }
  Rgba readPixel(const char* name, int x, int y) const {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    EXPECT_NE(png_image_begin_read_from_file(&png, directory.path(name).c_str()), 0) << name;
    png.format = PNG_FORMAT_RGBA;
    Bytes rgba(std::max<std::size_t>(PNG_IMAGE_SIZE(png), 3600));
    png_image_finish_read(&png, nullptr, rgba.data(), 0, nullptr);
    return pixelAt(rgba, 300, x, y);
  }
};

const std::string kPalette = "palette: 0, 111111, 222222, 333333, 444444, 555555\n";

std::string entry(const std::string& time, const std::string& position) {
  return "timestamp: " + time + ", filepos: " + position + "\n";
}

TEST_F(PictureTest, pictures_become_png_files) {
  directory.write("a.sub", packOf(changed(kColors, 0x53)) + packOf(kUnit) + packOf(changed(3, 54)) +
                               packOf(changed(0, 0x80)));
  directory.write("a.idx", kPalette + entry("00:00:00:000", "800") + entry("00:00:00:300", "0") +
                               entry("01:00:00:000", "1000") + entry("01:00:01:000", "1800") +
                               entry("01:00:02:000", "1801"));
  expectPicture("a.idx 400 out.png", "out.png: 300 x 3 .* 10,5, .* 0:00:01.024 to 0:00:02.048\n",
                "", 0);
  EXPECT_EQ(readPixel("out.png", 18, 2), (Rgba{0x44, 0x44, 0x44, 0xFF}));
  expectPicture("a.idx 0:00.500 out.png", "out.png: .*\n", "", 0);
  EXPECT_EQ(readPixel("out.png", 18, 2), (Rgba{0x55, 0x55, 0x55, 0xFF}));
  const std::pair<const char*, const char*> failures[] = {
      {"a.idx 1:00:00 none.png", "a.idx: the picture at 1:00:00.000 is broken: .* end.*"},
      {"a.idx 500000 none.png", "a.idx: no picture is shown near 0:08:20.000"},
      {"a.idx 0 .", ".: cannot write: not a regular file"}};
  for (const auto& [arguments, reason] : failures) {
    expectPicture(arguments, "", std::string("kssub: ") + reason + "\n", 1);
  }
  expectPicture("a.idx 0 none.png 2>&1", "[^]*kssub: none.png: cannot write: File too large\n", "",
                1, "trap '' XFSZ; ulimit -f 0");
  EXPECT_EQ(countFiles(directory.path("")), 3);

  expectPicture("a.idx --all new/all", "new/all/0001.*\nnew/all/0002.*\n",
                ".*\n.* 1:00:01.000 .* ends inside it\n.* 1:00:02.000 .* at byte 6145 .*\n"
                "kssub: 3 of 5 pictures are broken\n",
                1);
  EXPECT_EQ(countFiles(directory.path("new/all")), 2);
  EXPECT_EQ(readPixel("new/all/0001_00-00-00.000.png", 18, 2), (Rgba{0x44, 0x44, 0x44, 0xFF}));
  EXPECT_EQ(readPixel("new/all/0002_00-00-00.300.png", 18, 2), (Rgba{0x55, 0x55, 0x55, 0xFF}));

  std::string many;  // more than files may be open at first
  for (int i = 0; i < 30; ++i) many += entry("00:00:01:000", "0");
  directory.write("a.idx", many);
  expectPicture("a.idx --all many", "[^]*0030_00-00-01.000.png: .*\n", "", 0);
  EXPECT_EQ(countFiles(directory.path("many")), 30);
}

TEST_F(PictureTest, unfit_indexes_and_arguments_are_refused) {
  const std::string good = entry("00:00:01:000", "0");
  for (const char* name : {"a.sub", "a.srt"}) directory.write(name, packOf(kUnit));
  const struct {
    std::string name, content;
    const char* reason;
  } cases[] = {{"a.idx", good + "  \n", "line 2 is of spaces"},
               {"a.idx", good + "  ; x\n", "line 2 .* ';'"},
               {"a.idx", std::string("\0\n;\n", 4), "zero bytes"},
               {"a.idx", "timestamp: 1\n", "cut short"},
               {"a.idx", "", "empty"},
               {"a.idx", std::string(5001, '\n'), "more than 5000 lines"},
               {"a.idx", good.substr(1, good.size() - 2), "last line is lost\n.*no picture"},
               {"b.idx", good, "b.sub: cannot open: No such file"},
               {"a.txt", good, "not .idx"}};
  for (const auto& [name, content, reason] : cases) {
    directory.write(name, content);
    expectPicture(name + " 1000 out.png", "", std::string(".*") + reason + ".*\n", 1);
  }
  for (const char* arguments : {"", "a.idx", "a.idx 1000", "a.idx 1s out.png",
                                "a.idx 1000 out.png --all out", "--all out"}) {
    expectPicture(arguments, "", "[^]*--help[^]*", 2);
  }
  EXPECT_FALSE(std::filesystem::exists(directory.path("out.png")));
}

}  // namespace
