// Memory that runs out, thousands of files, threads, and files that change under the reader.
#include <malloc.h>

#include <atomic>
#include <clocale>
#include <cstdlib>
#include <functional>
#include <new>
#include <optional>
#include <thread>
#include <tuple>
#include <utility>

#include "import_support.h"
#include "program_stream_writer.h"

namespace {

std::atomic<long> liveBytes = 0;
thread_local long allocationsUntilFailure = 0;
thread_local std::function<void()> beforeNextOpen[3];
thread_local std::size_t opens = 0;
thread_local std::function<void()> beforeNextRead;

}  // namespace

// All memory of the library comes from here.
void* operator new(std::size_t size) {
  if (allocationsUntilFailure > 0 && --allocationsUntilFailure == 0) throw std::bad_alloc();
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  liveBytes.fetch_add(static_cast<long>(malloc_usable_size(memory)), std::memory_order_relaxed);
  return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* memory) noexcept {
  liveBytes.fetch_sub(static_cast<long>(malloc_usable_size(memory)), std::memory_order_relaxed);
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

// The detector of encodings loses what it has when memory runs out while it is made.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libuchardet";
}

// The linker leads the library's calls of fopen() here, so that a file can change just before one.
extern "C" std::FILE* __real_fopen(const char* path, const char* mode);
extern "C" std::FILE* __wrap_fopen(const char* path, const char* mode) {
  if (opens < std::size(beforeNextOpen) && beforeNextOpen[opens]) beforeNextOpen[opens]();
  ++opens;
  return __real_fopen(path, mode);
}

extern "C" std::size_t __real_fread(void* to, std::size_t size, std::size_t n, std::FILE* file);
extern "C" std::size_t __wrap_fread(void* to, std::size_t size, std::size_t n, std::FILE* file) {
  if (beforeNextRead) std::exchange(beforeNextRead, nullptr)();
  return __real_fread(to, size, n, file);
}

namespace {

constexpr char kSrt[] =
    "1\n00:00:01,000 --> 00:00:02,000\nA first line that no small text holds\nand one more\n\n"
    "2\n00:00:02,500 --> 00:00:03,000\nBye\n";
constexpr char kAss[] =
    "ScriptType: v4.00+\nStyle: Default,A font of a long name,20.5,-1,0\n"
    "Dialogue: 0,0:00:01.00,0:00:03.00,Default,A speaker,0,0,0,Effect,"
    "{\\b1}Hello, <i>world\\Nfrom a line that no small text holds\n"
    "Dialogue: 1,0:00:02.00,0:00:02.50,Default,,0,0,0,,short\n";

/// A host's work: opens a file and asks every question of it; returns the answers.
struct Player {
  std::string use(const std::string& path) {
    std::string all = manager.Open(path.c_str()) ? "opened" : "refused";
    for (long long t = 0; t <= manager.DurationTime() + 500; t += 500) {
      all += "; " + describe(manager.GetSubTitle(t)) + "; " + describe(manager.GetSubTitleU(t));
    }
    return all;
  }
  ksSubtitleManager manager;
};

constexpr char kIdx[] =
    "palette: 000001, ffffff\ntimestamp: 00:00:09:000, filepos: 0\n"
    "timestamp: 00:00:01:000, filepos: 000000000\n";

/// The same for an index; closes the stream that its packet leaves open.
struct PicturePlayer {
  ~PicturePlayer() { close(stream); }
  std::string use(const std::string& path) {
    std::string all = parser.Open(path.c_str()) ? "opened" : "refused";
    close(stream);
    parser.subFilePath = (path.substr(0, path.rfind('.')) + ".sub").c_str();
    stream = nextDescriptor();
    int size = 0;
    int controlOffset = 0;
    const std::unique_ptr<unsigned char[]> unit(parser.GetPacket(1000, size, controlOffset));
    return all + std::to_string(parser.GetFilePos(1000)) + (unit ? "unit" : "no unit");
  }
  ksIdxParser parser;
  int stream = -1;
};

/// The same for a wide index, which fetches no packets; the path is of one character.
struct WidePicturePlayer {
  std::string use(const std::string& path) {
    std::string all = parser.Open(wide<wchar_t>(path).data()) ? "opened" : "refused";
    parser.sessions.erase(0);
    parser.GetFilePos(5000);  // adds it again, empty
    for (const auto& [key, entry] : parser.sessions) all += " " + std::to_string(entry.startTime);
    return all;
  }
  ksIdxParserU parser;
};

/// Every operation on texts that takes memory.
template <typename Char>
struct TextUser {
  std::string use(const std::string& path) {
    ksBasicString<Char> s(wide<Char>(path));
    (s += s) += ksBasicString<Char>(1234567890);
    s.replaceChars(wide<Char>("/").c_str(), wide<Char>(" a much longer separator ").c_str());
    s.append(s.Left(40).getData(), 30);
    ksBasicString<Char> copy = s + s.substr(1, 60) + s.getData();
    copy.replace(2, 3, s);
    ksBasicString<Char> before;
    const int matched = copy.match(s.Right(20), &before, true, s);
    std::string all = narrow(s) + std::to_string(matched) + narrow(before);
    for (const auto& [key, piece] : copy.split(s.Right(2))) all += narrow(piece);
    copy.inflate(copy.length() + 50, s, true);
    return all + narrow(copy.MakeLower());
  }
};

/// A host of the import library, which opens every file while it has it open already.
struct ImportPlayer {
  std::string use(const std::string& path) {
    ksImportOptions options;
    options.markup = ksImportMarkup::kHtml;
    options.fallbackEncoding = "windows-1251, which is no name";
    try {
      parser.Open(path.c_str());
      parser.Open(path.c_str(), options);
    } catch (const std::bad_alloc&) {
      EXPECT_FALSE(parser.IsOpen());
      EXPECT_TRUE(parser.cues().empty());
      EXPECT_EQ(parser.report().refusal(), ksImportRefusal::kNotOpened);
      throw;
    }
    std::string all = cuesOf(parser) + notesOf(parser);
    for (long long t = 0; t <= parser.DurationTime(); t += 500) {
      all += describe(parser.GetSubTitle(t)) + describe(parser.GetSubTitleU(t));
    }
    for (const auto target : {ksImportTarget::kWebVtt, ksImportTarget::kAss}) {
      all += ksImportWrite(parser.cues(), target, options.markup);
    }
    return all;
  }
  ksImportParser parser;
};

/// The same for pictures.
struct ImportPicturePlayer {
  std::string use(const std::string& path) {
    try {
      pictures.Open(path.c_str());
      pictures.Open(path.c_str());
    } catch (const std::bad_alloc&) {
      EXPECT_FALSE(pictures.IsOpen());
      EXPECT_TRUE(pictures.entries().empty());
      throw;
    }
    std::string all = pictures.Select(1) ? "selected" : "one language";
    for (std::size_t i = 0; i < pictures.entries().size(); ++i) {
      const auto picture = pictures.Picture(i);
      all += picture ? std::to_string(picture->rgba.size()) + " " : "none ";
    }
    return all;
  }
  ksImportPictures pictures;
};

class HardUse : public testing::Test {
 protected:
  HardUse() {
    opens = 0;
    dir.write("film.sub", pack(5, ' ', "..unit"));
  }

  void expectUseSurvivesAnyFailure(auto makeUser, const std::string& path, bool mayLeak = false) {
    const std::string expected = makeUser()->use(path);
    bool failed = true;
    long n = 1;
    for (; failed; ++n) {
      const std::ptrdiff_t descriptors = openDescriptors();
      const long bytes = liveBytes;
      {
        decltype(makeUser()) user;
        std::string answers;
        allocationsUntilFailure = n;
        try {
          user = makeUser();
          answers = user->use(path);
          failed = false;
        } catch (const std::bad_alloc&) {
        }
        allocationsUntilFailure = 0;
        EXPECT_EQ(user ? user->use(path) : expected, expected) << path << ", allocation " << n;
      }
      EXPECT_TRUE(mayLeak || liveBytes == bytes) << path << ", allocation " << n;
      EXPECT_EQ(openDescriptors(), descriptors) << path << ", allocation " << n;
    }
    EXPECT_GT(n, 4);
  }

  std::vector<std::string> files() const {
    return {dir.write("narrow.srt", kSrt),
            dir.write("wide.srt", Width<wchar_t>::encode(kSrt)),
            dir.write("locale.srt", "\xFF\xFE" + std::string(kSrt)),
            dir.write("narrow.ass", kAss),
            dir.write("wide.ssa", Width<wchar_t>::encode(kAss)),
            dir.write("long.srt", std::string(20001, '\n')),
            dir.write("one.srt", "x"),
            dir.path("missing.ass")};
  }

  WorkingDir dir;
};

TEST_F(HardUse, memoryThatRunsOut_leavesUsableObjectsAndNoLeaks) {
  for (const std::string& path : files()) {
    expectUseSurvivesAnyFailure([] { return std::make_unique<Player>(); }, path);
  }
  const std::string index = dir.write("film.idx", kIdx);
  expectUseSurvivesAnyFailure([] { return std::make_unique<PicturePlayer>(); }, index);
  EXPECT_EQ(PicturePlayer().use(index), "opened0unit");
  dir.write("w", Width<wchar_t>::encode(kIdx).substr(2));
  expectUseSurvivesAnyFailure([] { return std::make_unique<WidePicturePlayer>(); }, "w");
  EXPECT_EQ(WidePicturePlayer().use("w"), "opened 0 1000");
  expectUseSurvivesAnyFailure([] { return std::make_unique<TextUser<char>>(); }, "/a/b/c");
  expectUseSurvivesAnyFailure([] { return std::make_unique<TextUser<wchar_t>>(); }, "/a/b/c");
}

TEST_F(HardUse, memoryThatRunsOut_leavesTheImportParserClosedAndUsable) {
  std::vector<std::string> paths = files();
  const std::string overlaps = std::string(kSrt) + "\n3\n00:00:01,500 --> 00:00:09,000\n<i>C</i>\n";
  paths.push_back(dir.write("overlaps.srt", overlaps + "\n3\n00:00:01,500 --> 00:00:09,000\nD"));
  paths.push_back(dir.write("zeros.srt", overlaps + "zero\n" + std::string(1, '\0')));
  paths.push_back(dir.write("bad.srt", "\xEF\xBB\xBF" + overlaps + "\xFF"));
  for (const std::string& path : paths) {
    expectUseSurvivesAnyFailure([] { return std::make_unique<ImportPlayer>(); }, path);
  }
  // libuchardet keeps what its constructors have taken when memory runs out in them.
  const std::string detected =
      dir.write("detected.srt", overlaps + "\xCF\xF0\xE8\xE2\xE5\xF2, \xEA\xE0\xEA");
  expectUseSurvivesAnyFailure([] { return std::make_unique<ImportPlayer>(); }, detected, true);
}

TEST_F(HardUse, memoryThatRunsOut_leavesPicturesClosedAndUsable) {
  const std::string unit = makeUnit({.rows = {"0123", "32"}});
  dir.write("p.SUB", packsOf(unit) + packsOf(unit, 1000, 3));
  const std::string index = dir.write("p.idx",
                                      "id: \xC3\xA9, index: 0\ntimestamp: 0:0:1:0, filepos: 0\nx\n"
                                      "id: a, index: 3\ntimestamp: 0:0:1:0, filepos: 800\n"
                                      "timestamp: 0:0:2:0, filepos: 0\n");
  for (const std::string& path : {index, dir.write("alone.sub", packsOf(unit))}) {
    expectUseSurvivesAnyFailure([] { return std::make_unique<ImportPicturePlayer>(); }, path);
  }
}

TEST_F(HardUse, filesThatShrinkWhileTheyAreRead_areImportedAsFarAsTheyGo) {
  ksImportParser parser;
  const std::pair<std::uintmax_t, const char*> cases[] = {
      {0, ""}, {80, "1000-2000 A first line that no small text holds|and one mo"}};
  for (const auto& [size, cues] : cases) {
    const std::string path = dir.write("film.srt", kSrt + std::string(200000, '\n'));
    beforeNextRead = [&, to = size] { std::filesystem::resize_file(path, to); };
    EXPECT_EQ(parser.Open(path.c_str()), size > 0);
    EXPECT_FALSE(beforeNextRead);
    EXPECT_EQ(cuesOf(parser), cues);
    EXPECT_EQ(parser.report().size(), size);
  }
}

TEST_F(HardUse, tenThousandFiles_takeNoMoreThanTheFirstOnes) {
  Player player;
  ksIdxParser parser;
  const std::vector<std::string> paths = files();
  const std::string index = dir.write("film.idx", kIdx);
  std::ptrdiff_t descriptors = 0;
  long bytes = 0;
  for (std::size_t i = 0; i < 10000; ++i) {
    if (i == 2 * paths.size())
      std::tie(descriptors, bytes) = std::pair(openDescriptors(), +liveBytes);
    player.use(paths[i % paths.size()]);
    if (i % paths.size() == 0) {
      EXPECT_TRUE(parser.Open(index.c_str()));
      EXPECT_EQ(parser.GetFilePos(1000), 0);
    }
  }
  EXPECT_EQ(openDescriptors(), descriptors);
  // Blocks that malloc() hands out again may be somewhat larger than was asked for.
  EXPECT_LT(liveBytes, bytes + 1000);
}

/// Uses objects of a kind in several threads, each with its own, on all files in turn.
template <typename User>
void expectThreadsDoNotMix(const std::vector<std::string>& paths) {
  std::vector<std::string> expected;
  for (const std::string& path : paths) expected.push_back(User().use(path));
  for (const std::size_t threads : {2U, 8U}) {
    std::atomic<int> differences = 0;
    std::vector<std::jthread> running;
    for (std::size_t first = 0; first < threads; ++first) {
      running.emplace_back([&, first] {
        User user;
        for (std::size_t i = first; i < first + 50; ++i) {
          differences += user.use(paths[i % paths.size()]) != expected[i % paths.size()];
        }
      });
    }
    running.clear();
    EXPECT_EQ(differences, 0);
  }
}

TEST_F(HardUse, threadsWithAnObjectEach_getTheirOwnAnswers) {
  expectThreadsDoNotMix<Player>(files());
  expectThreadsDoNotMix<ImportPlayer>(files());
}

/// Asks in eight threads at once what `answers` returns in one.
template <typename Answers>
void expectThreadsAgree(Answers answers) {
  const std::string expected = answers();
  std::atomic<int> differences = 0;
  std::vector<std::jthread> running;
  for (int i = 0; i < 8; ++i) {
    running.emplace_back([&] { differences += answers() != expected; });
  }
  running.clear();
  EXPECT_EQ(differences, 0);
}

/// Everything that a parser answers about a film of 100 cues, three at a time.
std::string answersOf(ksImportParser& parser) {
  std::string all;
  for (long long t = 0; t < 12000; t += 37) {
    const SUBTITLE_ST narrowAnswer = parser.GetSubTitle(t);
    const SUBTITLE_ST_U wideAnswer = parser.GetSubTitleU(t);
    all += std::to_string(narrowAnswer.start + wideAnswer.end) + narrowAnswer.text.getData();
  }
  for (const ksImportCue& cue : parser.cues()) all += cue.text;
  return all + std::to_string(parser.report().notes().size()) +
         std::to_string(parser.DurationTime());
}

TEST_F(HardUse, threadsThatAskOneParser_getTheSameAnswers) {
  std::string film;
  for (int i = 1000; i < 1100; ++i) {
    const auto time = [](int tenths) {
      return "0:0:" + std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
    };
    film += time(i - 1000) + " --> " + time(i - 970) + "\nA" + std::to_string(i) + "\n\n";
  }
  ksImportParser parser;
  ASSERT_TRUE(parser.OpenMemory(film.data(), film.size()));
  expectThreadsAgree([&] { return answersOf(parser); });
}

TEST_F(HardUse, threadsThatAskForPictures_getTheSameOnes) {
  std::string stream;
  for (unsigned i = 0; i < 60; ++i) {  // more than are kept
    const UnitParts parts{.rows = {2, std::string(1 + i, '1')}};
    stream += packHeader() + subpicturePacket(makeUnit(parts), i * 1000);
  }
  ksImportPictures pictures;
  ASSERT_TRUE(pictures.OpenMemory(nullptr, 0, stream.data(), stream.size()));
  ASSERT_EQ(pictures.entries().size(), 60U);
  expectThreadsAgree([&] {
    std::string all;
    for (long long t = 0; t < 60000; t += 700) {
      const auto picture = pictures.PictureAt(t);
      all += picture ? std::to_string(picture->start) + ":" + std::to_string(picture->width) : "-";
    }
    return all;
  });
}

// The manager looks at the mark, then the parser opens the file, and for wide text that is not
// UTF-16 once more; only the last of these does not look whether the file is empty.
TEST_F(HardUse, filesThatChangeBetweenTwoOpens_areReadAsTheyAre) {
  using namespace std::string_literals;
  const std::string path = dir.path("file.srt");
  const auto replaceBy = [&](const char* target) {
    std::filesystem::remove(path);
    std::filesystem::create_symlink(target, path);
  };
  const struct {
    const char* name;
    std::function<void()> change;
    const char *atSecondOpen, *atThirdOpen;
    int streamsLeft;
  } cases[] = {
      {"vanishes", [&] { std::filesystem::remove(path); }, "refused", "refused", 0},
      {"is a link to itself", [&] { replaceBy("file.srt"); }, "refused", "refused", 0},
      {"is empty", [&] { std::filesystem::resize_file(path, 0); }, "refused", "opened", 1},
      {"is a device", [&] { replaceBy("/dev/zero"); }, "refused", "opened", 1},
      {"cannot be read", [&] { replaceBy("/proc/self/mem"); }, "refused", "opened", 1},
      {"is cut", [&] { std::filesystem::resize_file(path, 3); }, "opened", "opened", 0},
      {"is of another width", [&] { dir.write("file.srt", "1\n0\0x"s); }, "opened", "opened", 0},
      {"is too long", [&] { dir.write("file.srt", std::string(30000, '\n')); }, "refused",
       "refused", 0},
  };
  const std::string utf16 = Width<wchar_t>::encode(kSrt);
  const std::string ofLocale = "\xFF\xFE"s + kSrt;
  // A file, and before which open it changes.
  const std::pair<std::string, std::size_t> originals[] = {
      {kSrt, 1}, {utf16, 1}, {ofLocale, 1}, {ofLocale, 2}};
  for (const auto& [name, change, atSecondOpen, atThirdOpen, streamsLeft] : cases) {
    for (const auto& [content, open] : originals) {
      SCOPED_TRACE(name + " before open "s + std::to_string(open) + content);
      std::filesystem::remove(path);
      dir.write("file.srt", content);
      Player player;
      const std::ptrdiff_t descriptors = openDescriptors();
      beforeNextOpen[open] = change;
      opens = 0;
      const std::string answers = player.use(path);
      beforeNextOpen[open] = nullptr;
      EXPECT_GT(opens, open);
      EXPECT_TRUE(answers.starts_with(open == 1 ? atSecondOpen : atThirdOpen)) << answers;
      EXPECT_EQ(openDescriptors() - descriptors, open == 1 ? streamsLeft : 0);
      std::filesystem::remove(path);
      dir.write("file.srt", kSrt);
      EXPECT_EQ(player.use(path), Player().use(path));
    }
  }
}

// The decimal point of style columns and the case of 'I' in keys are the locale's.
TEST_F(HardUse, locales_changeNoTimes) {
  const std::vector<std::string> paths = files();
  const std::string capitals = "DIALOGUE: 0,0:00:01.00,0:00:02.00,,,0,0,0,,x\n";
  std::vector<std::string> expected;
  for (const std::string& path : paths) expected.push_back(Player().use(path));
  const auto expectDifferences = [&](auto parser, auto encode, double fontSize,
                                     std::size_t events) {
    parser.Open(dir.write("style.ass", encode(kAss)).c_str());
    EXPECT_EQ(parser.fontSize, fontSize);
    parser.Open(dir.write("capitals.ass", encode(capitals)).c_str());
    EXPECT_EQ(parser.sessions.size(), events);
  };
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const std::tuple<const char*, double, std::size_t> locales[] = {{"C", 20.5, 1},
                                                                  {"C.UTF-8", 20.5, 1},
                                                                  {"de_DE.UTF-8", 20, 1},
                                                                  {"tr_TR.UTF-8", 20, 0},
                                                                  {"tr_TR.ISO-8859-9", 20, 0}};
  for (const auto& [name, fontSize, events] : locales) {
    SCOPED_TRACE(name);
    ASSERT_NE(std::setlocale(LC_ALL, name), nullptr);
    for (std::size_t i = 0; i < paths.size(); ++i) EXPECT_EQ(Player().use(paths[i]), expected[i]);
    expectDifferences(ksAssParser(), Width<char>::encode, fontSize, events);
    expectDifferences(ksAssParserU(), Width<wchar_t>::encode, fontSize, events);
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST_F(HardUse, endlessFilesAndPathsAtTheSystemsLimit_endWithAnAnswer) {
  Player player;
  std::filesystem::create_symlink("/dev/zero", dir.path("zero.srt"));
  EXPECT_EQ(player.use(dir.path("zero.srt")), "refused; nothing; nothing; nothing; nothing");
  const std::string holes = dir.write("holes.ass", kAss);
  std::filesystem::resize_file(holes, 2147483647);
  EXPECT_TRUE(player.use(holes).starts_with("opened; nothing; nothing; nothing; nothing; 1000-"));
  const std::string name = "/film.srt";
  const std::string index = "/film.idx";
  for (const std::size_t length : {4095U, 4096U, 100000U}) {
    std::string directory = dir.path("");
    while (directory.size() + name.size() < length - 1) directory += "/.";
    directory.resize(length - name.size(), '/');
    dir.write("film.srt", kSrt);
    dir.write("film.idx", "timestamp: 00:00:09:000, filepos: 0\n");
    EXPECT_EQ(player.manager.Open((directory + name).c_str()), length < 4096);
    EXPECT_EQ(PicturePlayer().use(directory + index),
              length < 4096 ? "opened0unit" : "refused0no unit");
  }
}

}  // namespace
