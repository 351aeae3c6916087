// The text class in both widths.
#include <utility>

#include "models/strings_model.h"
#include "support.h"

namespace {

template <typename Char>
class Strings : public testing::Test {
 protected:
  using String = ksBasicString<Char>;

  static String s(std::string_view bytes) { return wide<Char>(bytes); }

  /// Makes one change to the text and to its model.
  static void expectSame(std::string_view before, auto change) {
    String text = s(before);
    StringsModel<Char> model{wide<Char>(before)};
    change(text);
    change(model);
    EXPECT_EQ(text, String(model.text)) << before;
  }
};

TYPED_TEST_SUITE(Strings, Widths);

TYPED_TEST(Strings, operators_compareInWhole) {
  const auto abc = this->s("abc");
  EXPECT_LT(this->s("ab"), abc);
  EXPECT_GT(abc, this->s("ab"));
  EXPECT_GT(this->s("\xE9"), abc);
  EXPECT_EQ(abc, this->s("abc"));
  EXPECT_EQ(abc, this->s("abc").getData());
  EXPECT_NE(abc, this->s("abd"));
  EXPECT_NE(abc, this->s("ab").getData());
  EXPECT_FALSE(abc > abc);
  EXPECT_FALSE(abc < abc);
}

TYPED_TEST(Strings, assembly_takesPartsOfTheTextItselfAndNoStaleEnd) {
  auto text = this->s("a");
  EXPECT_EQ(narrow(text += this->s("b") + this->s("c") + text.getData()), "abca");
  text = this->s("ab");
  EXPECT_EQ(narrow(text.append(this->s("xy"), 1) += TypeParam{'z'}), "abxz");
  text = this->s("ab");
  text.setchar(2, '!');
  EXPECT_EQ(narrow(text += text.getData() + 1), "abb!");
  int length = 7;
  EXPECT_EQ(narrow(text.deepCopy(this->s("new"), nullptr, &length)), "new");
  EXPECT_EQ(length, 7);
  text = text.getData() + 1;
  EXPECT_EQ(narrow(text), "ew");
  text.setchar(2, '!');
  auto moved = std::move(text);
  EXPECT_TRUE(moved == moved.getData());
  moved.setchar(2, '!');
  text = std::move(moved);
  EXPECT_TRUE(text == text.getData());
  text.erase();
  EXPECT_TRUE(text.isEmpty());
}

TYPED_TEST(Strings, loopRules_matchTheirNaiveForm) {
  for (const std::string& text : allTexts(" \"ab", 6)) {
    this->expectSame(text, [](auto& t) { t.TrimLeft(' '); });
    this->expectSame(text, [](auto& t) { t.clearSpaces(); });
    this->expectSame(text, [](auto& t) { t.removeSpaces(); });
    this->expectSame(text, [](auto& t) { t.removeQuo(); });
  }
}

TYPED_TEST(Strings, replaceChars_matchesItsNaiveForm) {
  for (const std::string& from : allTexts("ab", 3)) {
    for (const std::string& to : allTexts("ab", 2)) {
      if (to.starts_with(from)) continue;  // does not end
      for (const std::string& text : allTexts("ab", 7)) {
        SCOPED_TRACE(from + " " + to);
        this->expectSame(
            text, [&](auto& t) { t.replaceChars(wide<TypeParam>(from), wide<TypeParam>(to)); });
      }
    }
  }
}

TEST(NarrowString, lowerCasing_worksInPlaceByteByByte_inAnyLocale) {
  char text[] = "A\xC0z\xFF";
  EXPECT_EQ(ksString::strlwr(text), text);
  EXPECT_STREQ(text, "a\xC0z\xFF");
  wchar_t wideText[] = L"AZ";
  EXPECT_STREQ(ksWString::wcslwr(wideText), L"az");
}

}  // namespace
