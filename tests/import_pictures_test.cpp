// The pictures of VobSub files: indexes and program streams as people have them, made here.
#include <array>
#include <atomic>
#include <filesystem>
#include <random>
#include <thread>

#include "import_support.h"
#include "program_stream_writer.h"

namespace {

using namespace std::string_literals;

constexpr char kPalette[] =
    "palette: 000000, 111111, 222222, 333333, 444444, 555555, 666666, 777777\n";

std::string entry(const std::string& time, std::size_t position) {
  char place[32];
  std::snprintf(place, sizeof place, ", filepos: %09zx\n", position);
  return "timestamp: " + time + place;
}

bool open(ksImportPictures& pictures, const std::string& index, const std::string& stream,
          const ksImportOptions& options = {}) {
  return pictures.OpenMemory(index.data(), index.size(), stream.data(), stream.size(), options);
}

/// "START-END LEFT,TOP WIDTHxHEIGHT" of every entry; with '?' where the end is assumed, '!' where a
/// picture is forced, '-' for a damaged one.
std::string entriesOf(const ksImportPictures& pictures) {
  std::string all;
  for (const ksImportPictureEntry& each : pictures.entries()) {
    const ksImportRectangle& where = each.rectangle;
    all += (all.empty() ? "" : "; ") + std::to_string(each.start) + "-" + std::to_string(each.end);
    if (each.isEndAssumed) all += '?';
    if (each.isForced) all += '!';
    all += each.damage.empty()
               ? " " + std::to_string(where.left) + "," + std::to_string(where.top) + " " +
                     std::to_string(where.width) + "x" + std::to_string(where.height)
               : " -";
  }
  return all;
}

std::string streamsOf(const ksImportPictures& pictures) {
  std::string all;
  for (const ksImportPictureStream& each : pictures.streams()) {
    all += std::to_string(each.index) + each.language + "/" + each.name + "*" +
           std::to_string(each.pictures) + " ";
  }
  return all + "> " + std::to_string(pictures.selected());
}

std::string notesOf(const ksImportPictures& pictures) {
  std::string all;
  for (const ksImportNote& note : pictures.report().notes()) {
    all += std::to_string(note.line) + ":" + std::to_string(static_cast<int>(note.problem)) + " ";
  }
  return all;
}

std::string note(int line, ksImportProblem problem) {
  return std::to_string(line) + ":" + std::to_string(static_cast<int>(problem)) + " ";
}

/// Red and alpha of each pixel, in hexadecimal.
std::string pixelsOf(const std::shared_ptr<const ksImportPicture>& picture) {
  std::string all;
  if (!picture) return "none";
  for (std::size_t i = 0; i < picture->rgba.size(); i += 4) {
    char pixel[8];
    std::snprintf(pixel, sizeof pixel, "%02x%02x ", picture->rgba[i], picture->rgba[i + 3]);
    all += pixel;
  }
  return all;
}

TEST(ImportPictures, indexes_are_read_as_people_write_them) {
  const std::string a = packsOf(makeUnit({.left = 10, .top = 20}));
  const std::string stream = a + a + packsOf(makeUnit({.stop = 90}), 0, 3);
  const std::string e = entry("00:00:01:000", 0);
  const auto three = [&](const std::string& first, const std::string& last) {
    return first + "timestamp: 0:0:1:0, filepos: 0\n" + last + "timestamp: 0:0:9:0, filepos: 800\n";
  };
  const std::string usual = "1000-9000? 10,20 1x1; 9000-14000? 10,20 1x1";
  const struct {
    const char* name;
    std::string index, entries, streams = "0/*2 > 0";
  } cases[] = {
      {"plain", three("", ""), usual},
      {"comments", three("# id: x, index: 3\n; x\n \n\t\n", "  #\nsmooth: x\n"), usual},
      {"keys", "SIZE:720X576\n TimeStamp : 0:0:1:0 FILEPOS:0\nTIMESTAMP:00:00:09:000,filepos:800",
       usual},
      {"utf16", Width<wchar_t>::encode(three("", "")), usual},
      {"bom_and_cr", "\xEF\xBB\xBFtimestamp: 0:0:1:0, filepos: 0\rtimestamp: 0:0:9:0, filepos: 800",
       usual},
      {"sorted", entry("00:00:09:000", 0x800) + e, usual},
      {"negative", three("time offset: -00:00:02:000\n", ""),
       "-1000-7000? 10,20 1x1; 7000-12000? 10,20 1x1"},
      {"fraction", entry("00:00:01.25", 0) + entry("-00:00:01,5", 0),
       "-1500-1250? 10,20 1x1; 1250-6250? 10,20 1x1"},
      {"offset", three("time offset: 250\n", ""), "1250-9250? 10,20 1x1; 9250-14250? 10,20 1x1"},
      {"delays", three("delay: 00:00:01:000\ndelay: -1\n", "delay: -00:00:00:500\n"),
       "1999-9499? 10,20 1x1; 9499-14499? 10,20 1x1"},
      {"delay_ends", three("id: a, index: 1\ndelay: 5000\n", "id: b, index: 0\n"), "6000-11000? -",
       "1a/*1 0b/*1 > 0"},
      {"placed", three("org: -5, 7\nscale: 200%, 50%\n", ""),
       "1000-9000? 15,17 2x0; 9000-14000? 15,17 2x0"},
      {"chosen", three("langidx: 3\nid: de, index: 0\nalt: Deutsch\n", "id: --, index: 3\n"),
       "9000-10024 0,0 1x1", "0de/Deutsch*1 3/*1 > 1"},
      {"without_pictures", three("langidx: 3\nid: fr, index: 3\nid: en\n", ""),
       "1000-9000? -; "
       "9000-14000? -",
       "3fr/*0 1en/*2 > 1"},
      {"empty", "# VobSub index file\nid: en, index: 0\nid: de, index: 1\n", "",
       "0en/*0 1de/*0 > 0"},
      {"stop", "id: fr, index: 3\n" + entry("00:00:01:000", 0x1000), "1000-2024 0,0 1x1",
       "3fr/*1 > 0"},
      {"same_place", e + entry("00:00:01:000", 0), "1000-6000? 10,20 1x1; 1000-6000? 10,20 1x1"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    ksImportPictures pictures;
    EXPECT_TRUE(open(pictures, each.index, stream));
    EXPECT_EQ(entriesOf(pictures), each.entries);
    EXPECT_EQ(streamsOf(pictures), each.streams);
    EXPECT_EQ(pictures.report().refusal(), ksImportRefusal::kNone);
  }
  ksImportPictures pictures;
  open(pictures, "size: x\nalpha: 101\ntimestamp: 1, filepos: 0\ntimestamp: 0:0:1:0\n" + e, stream);
  EXPECT_EQ(notesOf(pictures),
            note(1, ksImportProblem::kLineIgnored) + note(2, ksImportProblem::kLineIgnored) +
                note(3, ksImportProblem::kTimeUnreadable) + note(4, ksImportProblem::kLineIgnored) +
                note(5, ksImportProblem::kEndAssumed));
}

TEST(ImportPictures, units_are_gathered_from_any_packs) {
  std::mt19937 random(7);
  UnitParts parts{.rows = std::vector<std::string>(9, std::string(1500, '0'))};
  for (std::string& row : parts.rows) {
    for (char& code : row) code = static_cast<char>('0' + random() % 4);
  }
  const std::string unit = makeUnit(parts);
  const std::string one = unit.substr(0, 1);
  const std::string two = unit.substr(1, 5000);
  const std::string three = unit.substr(5001);
  const std::string other = packsOf(makeUnit({}), 5000, 1);
  const auto joined = [&](const std::string& between) {
    return packHeader() + subpicturePacket(one, 1000) + between + subpicturePacket(two) + between +
           packHeader() + subpicturePacket(three) + other;
  };
  const std::string cases[] = {
      packsOf(unit, 1000),
      joined(""),
      joined(other),
      joined(packHeader(7)),
      joined("\0\0\1\xBA\x21"s + std::string(7, '\1')),  // of MPEG-1
      joined(packet(0xBB, "system") + packet(0xBE, "padding") + packet(0xE0, "film")),
      joined(packet(0xBD, "\x81\0\0\x80sound"s) + packet(0xBF, "navigation") + "\0\0\1\xB9"s),
      joined("junk that is \0\0\1\x20 nothing"s + packHeader()),
      packHeader(3) + subpicturePacket(unit, 1000, 0, 9)};
  for (const std::string& stream : cases) {
    ksImportPictures pictures, alone;
    EXPECT_TRUE(open(pictures, kPalette + entry("00:00:01:000", 0), stream));
    ASSERT_EQ(entriesOf(pictures), "1000-6000? 0,0 1500x9") << &stream - cases;
    const auto picture = pictures.Picture(0);
    for (std::size_t i = 0; i < picture->rgba.size(); i += 4) {
      const int code = parts.rows[i / 6000][i / 4 % 1500] - '0';
      ASSERT_EQ(picture->rgba[i + 1], code * 0x11) << i;
      ASSERT_EQ(picture->rgba[i + 3], code == 0 ? 0 : 0xFF) << i;
    }
    EXPECT_TRUE(open(alone, "", stream));
    EXPECT_EQ(entriesOf(alone), "1000-6000? 0,0 1500x9");
  }
}

TEST(ImportPictures, damaged_units_are_reported_and_the_others_shown) {
  const std::string good = packsOf(makeUnit({}));
  const std::string unit = makeUnit({.rows = {"0123", "3210"}});
  const auto changed = [&](std::size_t at, char byte) {
    std::string bytes = unit;
    bytes.at(at) = byte;
    return packsOf(bytes);
  };
  const std::size_t control = static_cast<unsigned char>(unit[3]);
  const struct {
    std::string stream;
    const char* damage;
  } cases[] = {
      {changed(0, '\x40'), "inside it"},
      {changed(3, 0x7F), "too early"},
      {changed(control + 3, static_cast<char>(control + 1)), "overlap"},
      {changed(control + 4, 8), "unknown"},
      {changed(control + 13, '\x40'), "area ends"},
      {changed(4, '\xFF'), "pixels"},
      {changed(control + 19, '\x7F'), "pixels"},
      {packsOf(makeUnit({.commands = "\7"s + "\0\1"s})), "impossible size"},
      {packsOf("\0\x0A\0\4\0\0\0\4\1\xFF"s), "no picture"},
      {packHeader() + subpicturePacket(unit.substr(0, 9), 0) + subpicturePacket(unit.substr(9), 1),
       "inside it"},
      {packsOf(makeUnit({}), 0, 1), "language"},
      {"JUNK" + good, "Nothing begins"},
      {"", "language"},
  };
  for (const auto& [stream, damage] : cases) {
    ksImportPictures pictures;
    EXPECT_TRUE(open(pictures,
                     entry("00:00:01:000", good.size()) + entry("00:00:03:000", 0) +
                         entry("00:00:05:000", good.size() + stream.size()),
                     good + stream + good));
    const bool isMissing = stream.empty();  // two entries lead to the same unit
    EXPECT_EQ(entriesOf(pictures), isMissing
                                       ? "1000-3000? 0,0 1x1; 3000-5000? 0,0 1x1; 5000-10000? "
                                         "0,0 1x1"
                                       : "1000-3000? -; 3000-5000? 0,0 1x1; 5000-10000? 0,0 "
                                         "1x1")
        << damage;
    if (isMissing) continue;
    EXPECT_NE(pictures.entries()[0].damage.find(damage), std::string::npos)
        << pictures.entries()[0].damage << ", not " << damage;
    EXPECT_EQ(pictures.report().count(ksImportProblem::kPictureDamaged), 1U);
    EXPECT_EQ(pictures.PictureAt(1000), nullptr);
    EXPECT_NE(pictures.PictureAt(3000), nullptr);
  }
  ksImportPictures pictures;
  EXPECT_FALSE(pictures.Picture(0));
  EXPECT_FALSE(pictures.PictureAt(0));
  EXPECT_FALSE(pictures.Select(0));
}

TEST(ImportPictures, units_say_when_and_how_they_are_shown) {
  const UnitParts row{.rows = {"0123"}};
  const auto with = [&](auto change) {
    UnitParts parts = row;
    change(parts);
    return makeUnit(parts);
  };
  const struct {
    const char* name;
    std::string index, unit, entries, pixels;
  } cases[] = {
      {"plain", kPalette, makeUnit(row), "1000-6000? 0,0 4x1", "0000 11ff 22ff 33ff "},
      {"delays", kPalette, with([](UnitParts& p) { p.start = 9, p.stop = 90; }),
       "1102-2024 0,0 4x1", "0000 11ff 22ff 33ff "},
      {"stop_before_start", kPalette, with([](UnitParts& p) { p.start = 9, p.stop = 8; }),
       "1102-6102? 0,0 4x1", "0000 11ff 22ff 33ff "},
      {"forced", kPalette, with([](UnitParts& p) { p.commands = "\0"s; }), "1000-6000?! 0,0 4x1",
       "0000 11ff 22ff 33ff "},
      {"colours_change", kPalette, with([](UnitParts& p) { p.commands = "\1\7\0\6\1\2\5\4"s; }),
       "1000-6000? 0,0 4x1", "0000 11ff 22ff 33ff "},
      {"fades", kPalette, with([](UnitParts& p) { p.later = "\3\x77\x77\4\x11\x10"; }),
       "1000-6000? 0,0 4x1", "0000 11ff 22ff 33ff "},
      {"appears", kPalette, with([](UnitParts& p) { p.later = "\3\x76\x54\4\xFF\xFF"; }),
       "1000-6000? 0,0 4x1", "44ff 55ff 66ff 77ff "},
      {"alpha", std::string(kPalette) + "alpha: 50%\n",
       with([](UnitParts& p) { p.later = "\4\xFF\xF8"; }), "1000-6000? 0,0 4x1",
       "0044 117f 227f 337f "},
      {"custom", "custom colors: ON, tridx: 0100, colors: a00000, b00000, c00000, d00000\n",
       makeUnit(row), "1000-6000? 0,0 4x1", "a0ff b000 c0ff d0ff "},
      {"custom_off", std::string(kPalette) + "custom colors: OFF, tridx: 0, colors: a00000\n",
       makeUnit(row), "1000-6000? 0,0 4x1", "0000 11ff 22ff 33ff "},
      {"greys", "", makeUnit(row), "1000-6000? 0,0 4x1", "ff00 ffff 7fff 00ff "},
      {"two_greys", "", with([](UnitParts& p) { p.later = "\3\x12\x10\4\xFF\xFF"; }),
       "1000-6000? 0,0 4x1", "ffff 7fff 00ff 7fff "},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    ksImportPictures pictures;
    EXPECT_TRUE(open(pictures, each.index + entry("00:00:01:000", 0), packsOf(each.unit)));
    EXPECT_EQ(entriesOf(pictures), each.entries);
    EXPECT_EQ(pixelsOf(pictures.Picture(0)), each.pixels);
    EXPECT_EQ(pictures.report().count(ksImportProblem::kColoursChange),
              each.name == "colours_change"s ? 1U : 0U);
  }
}

TEST(ImportPictures, times_lead_to_pictures_that_are_kept_for_a_while) {
  const std::string plain = packsOf(makeUnit({.top = 478, .stop = 90}));  // for 1,024 ms
  const std::string forced = packsOf(makeUnit({.top = 500, .commands = "\0"s}));
  std::string index = entry("00:00:01:000", 0) + entry("00:00:02:000", plain.size());
  index += entry("00:00:03:000", 0);
  ksImportPictures pictures;
  open(pictures, index, plain + forced);
  const auto at = [&pictures](long long t) {
    const auto picture = pictures.PictureAt(t);
    return picture ? picture->start : -1;
  };
  EXPECT_EQ((std::array{at(999), at(1000), at(1999), at(2000), at(3000), at(4023), at(4024)}),
            (std::array{-1LL, 1000LL, 1000LL, 2000LL, 3000LL, 3000LL, -1LL}));
  const auto picture = pictures.PictureAt(2500);
  EXPECT_TRUE(picture->isForced);
  EXPECT_EQ(picture->end, 3000);
  EXPECT_EQ((std::array{picture->frameWidth, picture->frameHeight}), (std::array{720, 576}));
  EXPECT_EQ(pictures.PictureAt(2400), picture);
  open(pictures, "forced subs: ON\nsize: 720x480\n" + index, plain + forced);
  EXPECT_EQ((std::array{at(1500), at(2500), at(3500)}), (std::array{-1LL, 2000LL, -1LL}));
  EXPECT_EQ(pictures.PictureAt(2500)->frameHeight, 480);
  open(pictures, index, packsOf(makeUnit({.top = 1079})));
  EXPECT_EQ(pictures.PictureAt(1000)->frameHeight, 1080);

  const std::string large =
      packsOf(makeUnit({.rows = std::vector(512, std::string(2048, '1'))}));  // 4 MB
  const std::tuple<std::string, std::size_t, std::size_t> kept[] = {{plain, 50, 32}, {large, 7, 5}};
  for (const auto& [stream, asks, most] : kept) {
    std::string many;
    for (std::size_t i = 0; i < asks; ++i) many += entry("0:0:" + std::to_string(i) + ":0", 0);
    open(pictures, many, stream);
    std::vector<std::weak_ptr<const ksImportPicture>> asked;
    for (std::size_t i = 0; i < asks; ++i) asked.push_back(pictures.Picture(i));
    const auto isKept = [](const auto& each) { return !each.expired(); };
    EXPECT_EQ(static_cast<std::size_t>(std::ranges::count_if(asked, isKept)), most);
    EXPECT_TRUE(isKept(asked.back()));
  }
}

TEST(ImportPictures, each_language_has_its_pictures) {
  const std::string english = packsOf(makeUnit({.left = 1}), 1000, 0);
  const std::string german = packsOf(makeUnit({.left = 2}), 1000, 2);
  const std::string index = "id: en, index: 0\n" + entry("00:00:01:000", 0) +
                            "id: de, index: 2\nalt: Deutsch\n" + entry("00:00:02:000", 0);
  ksImportOptions options;
  options.language = "DE";
  ksImportPictures pictures;
  open(pictures, index, english + german, options);
  EXPECT_EQ(entriesOf(pictures), "2000-7000? 2,0 1x1");
  EXPECT_EQ(pictures.report().languages().size(), 2U);
  EXPECT_TRUE(pictures.Select(0));
  EXPECT_EQ(entriesOf(pictures), "1000-6000? 1,0 1x1");
  EXPECT_FALSE(pictures.Select(2));
  ksImportPictures moved = std::move(pictures);
  EXPECT_EQ(moved.Picture(0)->rectangle.left, 1);
  EXPECT_FALSE(pictures.IsOpen());  // NOLINT(bugprone-use-after-move)
  moved = ksImportPictures();
  EXPECT_FALSE(moved.IsOpen());
  options.language = "deutsch";
  open(pictures, index, english + german, options);
  EXPECT_EQ(streamsOf(pictures), "0en/*1 2de/Deutsch*1 > 1");
  EXPECT_TRUE(pictures.report().hasLanguage());
  options.language = "fr";
  open(pictures, index, english + german, options);
  EXPECT_FALSE(pictures.report().hasLanguage());
  open(pictures, "", german + packsOf(makeUnit({}), 1000, 31) + english);
  EXPECT_EQ(streamsOf(pictures), "0/*1 2/*1 31/*1 > 0");
}

TEST(ImportPictures, several_threads_may_ask_at_once) {
  std::string index, stream;
  for (unsigned i = 0; i < 50; ++i) {
    index += entry("0:0:" + std::to_string(i) + ":0", stream.size());
    stream += packsOf(makeUnit({.left = i}));
  }
  ksImportPictures pictures;
  open(pictures, index, stream);
  std::atomic<int> wrong = 0;
  std::vector<std::jthread> threads;
  for (long long first = 0; first < 4; ++first) {
    threads.emplace_back([&, first] {
      for (long long i = first; i < 500; ++i) {
        const auto picture = pictures.PictureAt(i % 50 * 1000);
        wrong += !picture || picture->rectangle.left != i % 50;
      }
    });
  }
  threads.clear();
  EXPECT_EQ(wrong, 0);
}

TEST(ImportPictures, files_are_found_beside_each_other) {
  const TempDir directory;
  const std::string stream = packsOf(makeUnit({}), 2000);
  const std::string index = entry("00:00:01:000", 0);
  const struct {
    const char *given, *other;
  } pairs[] = {{"a.idx", "a.sub"}, {"b.IDX", "b.SUB"}, {"c.d.Sub", "c.d.Idx"}, {"e.sub", "e.IDX"}};
  ksImportPictures pictures;
  for (const auto& [given, other] : pairs) {
    const bool isIndex = std::string_view(other).find_first_of("sS") != std::string_view::npos;
    directory.write(other, isIndex ? stream : index);
    EXPECT_TRUE(pictures.Open(directory.write(given, isIndex ? index : stream).c_str())) << given;
    EXPECT_EQ(entriesOf(pictures), "1000-6000? 0,0 1x1") << given;
  }
  const std::string far = stream + std::string(200000, '\xFF') + packsOf(makeUnit({}), 3000);
  EXPECT_TRUE(pictures.Open(directory.write("alone.sub", far).c_str()));
  EXPECT_EQ(entriesOf(pictures), "2000-3000? 0,0 1x1; 3000-8000? 0,0 1x1");
  EXPECT_NE(pictures.Picture(0), nullptr);
  std::filesystem::resize_file(directory.path("alone.sub"), 20);
  EXPECT_EQ(pictures.Picture(1), nullptr);

  EXPECT_EQ(notesOf(pictures), note(0, ksImportProblem::kEndAssumed));

  const std::string cut = packHeader() + subpicturePacket(makeUnit({}).substr(0, 1), 1000);
  const std::string start = cut + std::string(200000, '\xFF');
  open(pictures, index + entry("00:00:01:500", 2000) + entry("00:00:02:000", start.size()),
       start + stream);
  EXPECT_EQ(entriesOf(pictures), "1000-1500? -; 1500-2000? -; 2000-7000? 0,0 1x1");

  // An index that cannot be read is not the same as none.
  const std::string blind = note(0, ksImportProblem::kIndexUnreadable);
  directory.write("empty_index.sub", stream);
  directory.write("empty_index.idx", "");
  directory.write("large_index.sub", stream);
  directory.write("large_index.idx", index + std::string(200, '\n'));
  directory.write("directory.sub", stream);
  std::filesystem::create_directory(directory.path("directory.idx"));
  ksImportOptions options;
  options.maxBytes = 200;
  for (const char* const name : {"empty_index.sub", "large_index.sub", "directory.sub"}) {
    EXPECT_TRUE(pictures.Open(directory.path(name).c_str(), options)) << name;
    EXPECT_EQ(entriesOf(pictures), "2000-7000? 0,0 1x1");
    EXPECT_TRUE(notesOf(pictures).starts_with(blind)) << name;
    EXPECT_TRUE(pictures.Select(0) && notesOf(pictures).starts_with(blind)) << name;
  }

  const struct {
    const char* name;
    std::string content;
    ksImportRefusal refusal;
    int error = 0;
  } refused[] = {{"lone.idx", index, ksImportRefusal::kCannotOpen, ENOENT},
                 {"text.idx", "1\n", ksImportRefusal::kUnknownFormat},
                 {"text.sub", "{1}{2}x\n", ksImportRefusal::kUnknownFormat},
                 {"zip.idx", "PK\3\4", ksImportRefusal::kBinary},
                 {"film.sub", packHeader() + packet(0xE0, "film"), ksImportRefusal::kUnknownFormat},
                 {"empty.idx", "", ksImportRefusal::kEmpty},
                 {"large.idx", index + std::string(200, '\n'), ksImportRefusal::kTooLarge}};
  for (const auto& [name, content, refusal, error] : refused) {
    EXPECT_FALSE(pictures.Open(directory.write(name, content).c_str(), options)) << name;
    EXPECT_EQ(pictures.report().refusal(), refusal) << name;
    EXPECT_EQ(pictures.report().systemError(), error) << name;
    EXPECT_FALSE(pictures.report().refusalSentence().empty() || pictures.IsOpen()) << name;
  }
  EXPECT_FALSE(pictures.Open(directory.path("none.idx").c_str()));
  EXPECT_EQ(pictures.report().systemError(), ENOENT);
  EXPECT_FALSE(pictures.Open(directory.path("").c_str()));
  EXPECT_FALSE(open(pictures, index + std::string(200, '\n'), stream, options));
  EXPECT_EQ(pictures.report().refusal(), ksImportRefusal::kTooLarge);
  EXPECT_FALSE(open(pictures, "", ""));
  EXPECT_EQ(pictures.report().refusal(), ksImportRefusal::kEmpty);
}

}  // namespace
