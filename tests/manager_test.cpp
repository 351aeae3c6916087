// The manager's choice of a parser.
#include "support.h"

namespace {

constexpr char kSrt[] = "1\n00:00:01,000 --> 00:00:02,000\nsubrip\n";
constexpr char kAss[] = "Dialogue: 0,0:00:01.00,0:00:03.00,s,n,0,0,0,,script\n";

template <typename Char>
class Manager : public testing::Test {
 protected:
  bool open(std::string_view name, std::string_view content) {
    return manager.Open(dir.write(name, Width<Char>::encode(content)).c_str());
  }
  std::string at(long long t) { return describe(Width<Char>::ask(manager, t)); }

  TempDir dir;
  ksSubtitleManager manager;
};

TYPED_TEST_SUITE(Manager, Widths);

TYPED_TEST(Manager, theExtensionAndTheMarkChooseTheParser) {
  for (const char* name : {"a.srt", "b.ass", "c.x.ssa"}) {
    const bool subrip = name[0] == 'a';
    ASSERT_TRUE(this->open(name, subrip ? kSrt : kAss)) << name;
    EXPECT_TRUE(this->manager.IsOpen());
    EXPECT_EQ(this->manager.DurationTime(), subrip ? 2000 : 3000);
    EXPECT_EQ(this->at(1500), subrip ? "1000-2000 |subrip" : "1000-3000 |script");
    EXPECT_EQ(describe(Width<TypeParam>::askOther(this->manager, 1500)), "nothing");
  }
}

TYPED_TEST(Manager, refusedFiles_unbindTheParser) {
  std::filesystem::create_directory(this->dir.path("dir.srt"));
  for (const char* name : {"a.SRT", "a.txt", "a.srtx", "srt", "dir.srt/name"}) {
    ASSERT_TRUE(this->open("a.srt", kSrt));
    EXPECT_FALSE(this->open(name, kSrt)) << name;
    EXPECT_FALSE(this->manager.IsOpen());
    EXPECT_EQ(this->manager.DurationTime(), 0);
    EXPECT_EQ(this->at(1500), "nothing");
  }
  const std::string unreadable[] = {"", this->dir.path("missing.srt"), this->dir.path("dir.srt"),
                                    this->dir.write("one.srt", "x")};
  for (const std::string& path : unreadable) {
    ASSERT_TRUE(this->open("a.srt", kSrt));
    EXPECT_FALSE(this->manager.Open(path.c_str())) << path;
    EXPECT_FALSE(this->manager.IsOpen());
  }
  EXPECT_FALSE(this->manager.Open(nullptr));
}

TYPED_TEST(Manager, aFileThatItsParserRefuses_leavesThatParserBound) {
  const std::string tooLong(20001, '\n');
  EXPECT_FALSE(this->open("long.srt", tooLong));
  EXPECT_FALSE(this->manager.IsOpen());
  ASSERT_TRUE(this->open("a.srt", kSrt));
  EXPECT_FALSE(this->open("long.srt", tooLong));
  EXPECT_TRUE(this->manager.IsOpen());
  EXPECT_EQ(this->at(1500), "nothing");
}

TEST(ManagerFiles, theBareMarkIsAnEmptyWideFile) {
  TempDir dir;
  ksSubtitleManager manager;
  EXPECT_TRUE(manager.Open(dir.write("x.srt", "\xFF\xFE").c_str()));
  EXPECT_TRUE(manager.IsOpen());
  EXPECT_EQ(describe(manager.GetSubTitleU(0)) + describe(manager.GetSubTitle(0)), "nothingnothing");
}

}  // namespace
