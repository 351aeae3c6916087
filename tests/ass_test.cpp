// ASS and SSA conversion, override tags and queries.
#include "support.h"

namespace {

/// "{...}" and "<...>" taken out one removal at a time, as the class's own deleteStr() and
/// replaceChars() would.
std::string naiveOverrideRemoval(std::string text) {
  for (const auto& [opening, closing] : {std::pair{'{', '}'}, std::pair{'<', '>'}}) {
    std::size_t open = 0;
    for (std::size_t allowed = text.size(); allowed > 0; --allowed) {
      open = text.find(opening, open);
      const std::size_t close = text.find(closing, open);
      if (open == text.npos || close == text.npos) break;
      for (std::size_t to = open, from = close + 1; from <= text.size(); ++to, ++from) {
        text[to] = from == text.size() ? '\0' : text[from];
      }
    }
  }
  for (std::size_t at = 0; at == 0 && (at = text.find("\\N")) != text.npos;) {
    text.replace(at, 2, "\n");
  }
  return text;
}

template <typename Char>
class Ass : public testing::Test {
 protected:
  using Parser = typename Width<Char>::Ass;

  static constexpr const char* kAssHead = "ScriptType: v4.00+\n";

  void open(const std::string& content) {
    ASSERT_TRUE(parser.Open(dir.write("file.ass", Width<Char>::encode(content)).c_str()));
  }

  std::string event(int key) {
    const auto& e = parser.sessions.at(key);
    return std::to_string(e.layer) + " " + std::to_string(e.startTime) + "-" +
           std::to_string(e.endTime) + " [" + narrow(e.style) + "][" + narrow(e.name) + "][" +
           narrow(e.effect) + "]" + shown(e.text);
  }

  /// The event that one line becomes behind this head.
  std::string event(const std::string& head, const std::string& line) {
    open(head + line + "\n");
    return event(1);
  }

  std::string cleaned(std::string_view text) {
    if constexpr (std::is_same_v<Char, char>) {
      return narrow(parser.RemoveSSATags(wide<Char>(text), 0));
    } else {
      return narrow(parser.RemoveSSATags(wide<Char>(text)));
    }
  }

  std::string at(long long t) { return describe(Width<Char>::ask(parser, t)); }

  TempDir dir;
  Parser parser;
};

TYPED_TEST_SUITE(Ass, Widths);

TYPED_TEST(Ass, events_areReadByTheScriptType) {
  const std::string line =
      "Dialogue: 3,0:00:01.50,1:02:03.04,*default,Bob,1,2,3,Fx,Hello, {\\b1}world\\Nbye";
  const std::string rest = " 1500-3723040 [Default][Bob][Fx]\nHello, world\nbye";
  EXPECT_EQ(this->event("ScriptType: v4.00+\n", line), "3" + rest);
  EXPECT_EQ(this->event("scripttype:4.00+  \n", line), "3" + rest);
  EXPECT_EQ(this->event("ScriptType: v4.00\n", line), "0" + rest);
  EXPECT_EQ(this->event("[V4+ Styles]\n", line), "0" + rest);
  EXPECT_EQ(this->event("ScriptType: v4.00+\r\n", line), "0" + rest);
  EXPECT_EQ(this->event("ScriptType: .00\n", line), "0" + rest);
  EXPECT_EQ(this->event("",
                        "  DIALOGUE: Marked=0,0:00:01.50,1:02:03.04,*default,Bob,1,2,3,Fx,"
                        "Hello, world\\Nbye"),
            "0" + rest);
  EXPECT_EQ(this->event("[v4+ styles]\n",
                        "Dialogue: 0,0:00:01.00,0:00:02.00,A,B,0,0,0,,x=y,0:00:07.00,0:00:08.00,C,,"
                        "0,0,0,e,cut"),
            "0 7000-8000 [C][][e]\ncut");
}

TYPED_TEST(Ass, malformedEvents_areKept) {
  const std::string head = this->kAssHead;
  EXPECT_EQ(this->event(head, "Dialogue:"), "-1 -3661010--3661010 [][][]\n");
  EXPECT_EQ(this->event(head, "Dialogue: x"), "-1 -3661010--3661010 [x][x][]\nx");
  EXPECT_EQ(this->event(head, "Dialogue: &H10,0:00:01.0,600:00:00.00,s,n,0,0,0,effect,eff"),
            "-1 1000--2134967296 [s][n][]\neff");
  EXPECT_EQ(this->event(head, "Dialogue: 99999999999,0:00:01.0,0:00:02.0,***s, n x,0,0,0,,"),
            "1215752191 1000-2000 [*s][nx][]\n");
}

TYPED_TEST(Ass, otherLines_makeNoEvents) {
  this->open(
      "; Dialogue: 1\nComment: 0,0:00:01.00,0:00:02.00,s,n,0,0,0,,x\n[Events]\n"
      "Format: Layer\nDialogue\nDialogue: 0,0:00:05.00,0:00:06.00,s,n,0,0,0,,lost");
  EXPECT_EQ(this->parser.sessions.size(), 1U);  // "Dialogue" is its own key and value
}

TYPED_TEST(Ass, scriptInformation_isKeptFromFileToFile) {
  this->open("PlayResX: 640\nplayresy:480 px\nCollisions: ReVerse, x\n");
  EXPECT_EQ(this->parser.playResX, 640);
  EXPECT_EQ(this->parser.playResY, 480);
  EXPECT_EQ(narrow(this->parser.collisions), "1");
  this->open("Collisions: Normal, reverse\n");
  EXPECT_EQ(narrow(this->parser.collisions), "0");
  EXPECT_EQ(this->parser.playResX, 640);
}

TYPED_TEST(Ass, styles_takeTheColumnsInOrder) {
  auto& p = this->parser;
  p.colours[0] = 0x80123456;
  p.colours[3] = 0x7FABCDEF;
  this->open("[V4+ Styles]\nStyle: *N,Arial,20.5,-1,0,90,80,2,1.5,3,2,1,7,10,20,30,204,9\n");
  EXPECT_EQ(narrow(p.fontName), "Arial");
  EXPECT_TRUE(p.bold && !p.italic);
  const double reals[] = {p.fontSize,  p.fontScaleX,   p.fontScaleY, p.fontSpacing,
                          p.fontAngle, p.outlineWidth, p.shadowDepth};
  EXPECT_EQ(testing::PrintToString(reals), "{ 20.5, 90, 80, 2, 1.5, 2, 1 }");
  const int integers[] = {p.borderStyle, p.alignment,    p.marginLeft, p.marginRight,
                          p.marginTop,   p.marginBottom, p.charset};
  EXPECT_EQ(testing::PrintToString(integers), "{ 3, 7, 10, 20, 30, 30, 204 }");
  EXPECT_EQ(p.colours[0], 0x123456U);
  EXPECT_EQ(p.alphas[0], 0x80);
  for (const auto& [ssa, keypad] : {std::pair{2, 2}, {5, 7}, {10, 5}, {-1, 9}}) {
    this->open("[V4 Styles]\nStyle: N,Arial,x,4,2,1," + std::to_string(ssa) + ",10,20,30,300,1\n");
    EXPECT_EQ(p.alignment, keypad) << ssa;
  }
  EXPECT_EQ(p.fontSize, -1.0);
  EXPECT_EQ(p.borderStyle, 4);
  EXPECT_EQ(p.colours[2], 0xABCDEFU);
  const int alphas[] = {p.alphas[0], p.alphas[2], p.alphas[3]};
  EXPECT_EQ(testing::PrintToString(alphas), "{ 255, 255, 128 }");
  this->open("Style: N,Arial,20,2,1,5,10,20,30,0,7\n");  // no border style before any header
  EXPECT_EQ(p.outlineWidth, 2.0);
  EXPECT_EQ(p.charset, 7);
  EXPECT_EQ(p.alphas[1], 0);
}

TYPED_TEST(Ass, overrideTags_leaveStaleCharactersBehind) {
  using namespace std::string_literals;
  EXPECT_EQ(this->cleaned("Hello, {\\b1}world\\Nbye"), "Hello, world\nbye\0Nbye"s);
  EXPECT_EQ(this->cleaned("a{b<c>d"), "a{bd\0>d"s);
  EXPECT_EQ(this->cleaned("{a}{"), "{\0}{"s);
  EXPECT_EQ(this->cleaned("\\N\\N\\Na\\n\\h"), "\n\n\\Na\\n\\h");
  EXPECT_EQ(this->cleaned("a\\Nb\\Nc"), "a\nb\\Nc");
}

TYPED_TEST(Ass, overrideTags_matchTheirNaiveForm) {
  for (const std::string& text : allTexts("{}<>a", 5)) {
    EXPECT_EQ(this->cleaned(text), naiveOverrideRemoval(text)) << text;
  }
  for (const std::string& text : allTexts("{}a", 8)) {
    EXPECT_EQ(this->cleaned(text), naiveOverrideRemoval(text)) << text;
  }
}

TYPED_TEST(Ass, fieldReaders_takeTheFrontOfTheText) {
  auto& p = this->parser;
  ksBasicString<TypeParam> text(wide<TypeParam>("   a b, 12x,&H1F,-3.5e1,,z"));
  EXPECT_EQ(narrow(p.GetStr(text, ',')), " ab");
  EXPECT_EQ(p.GetInt(text, ','), 12);
  EXPECT_EQ(p.GetInt(text, ','), -1);
  EXPECT_EQ(p.GetFloat(text, ','), -35.0);
  EXPECT_EQ(p.GetInt(text, ','), -1);
  EXPECT_EQ(p.GetFloat(text, ','), -1.0);
  EXPECT_EQ(narrow(p.GetStr(text, ',')) + narrow(text), "zz");
  ksBasicString<TypeParam> empty;
  EXPECT_EQ(narrow(p.GetStr(empty, ',')), "");
}

TEST(AssWidths, findChar_differsBelowZero) {
  EXPECT_EQ(ksAssParser().FindChar("a{\\fe1{", '{', 2, 0), 6);
  EXPECT_EQ(ksAssParser().FindChar("{a", '{', -1, 0), 0);
  EXPECT_EQ(ksAssParserU().FindChar(L"{a", '{', -1), -1);
  EXPECT_EQ(ksAssParserU().FindChar(L"a{{", '{', 2), 2);
}

TYPED_TEST(Ass, queries_returnTheLastCoveringEvent) {
  this->open(std::string(this->kAssHead) +
             "Dialogue: 0,0:00:01.00,0:00:09.00,s,n,0,0,0,,first\n"
             "Dialogue: 0,0:00:02.00,0:00:04.00,s,n,0,0,0,,second\n");
  EXPECT_EQ(this->at(999), "nothing");
  EXPECT_EQ(this->at(1000), "1000-9000 |first");
  EXPECT_EQ(this->at(2000), "2000-4000 |second");
  EXPECT_EQ(this->at(4000), "2000-4000 |second");
  EXPECT_EQ(this->at(9000), "1000-9000 |first");
  EXPECT_EQ(this->parser.DurationTime(), 4000);  // of the last line
  EXPECT_EQ(describe(Width<TypeParam>::askOther(this->parser, 1000)), "nothing");
}

TYPED_TEST(Ass, durationWithoutEvents_addsARecordWithEachCall) {
  this->open("no event\n");
  EXPECT_EQ(Width<TypeParam>::ask(this->parser, 0).start, -1);
  EXPECT_EQ(this->parser.DurationTime() + this->parser.DurationTime(), 0);
  EXPECT_EQ(this->parser.sessions.size(), 2U);
  EXPECT_EQ(this->at(0), "0-0 ");
  EXPECT_EQ(this->at(-1), "nothing");
}

}  // namespace
