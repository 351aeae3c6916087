// The text class in both widths.
#include <utility>

#include "support.h"

namespace {

template <typename Char>
class Strings : public testing::Test {
 protected:
  using String = ksBasicString<Char>;

  static String s(std::string_view bytes) { return wide<Char>(bytes); }

  template <typename Change>
  static std::string changed(std::string_view before, Change change) {
    String text = s(before);
    change(text);
    return narrow(text);
  }
};

TYPED_TEST_SUITE(Strings, Widths);

TYPED_TEST(Strings, operators_compareInWhole) {
  const auto abc = this->s("abc");
  EXPECT_TRUE(this->s("ab") < abc && abc > this->s("ab") && this->s("\xE9") > abc);
  EXPECT_TRUE(abc == this->s("abc").getData() && abc != this->s("ab").getData());
}

TYPED_TEST(Strings, assembly_takesPartsOfTheTextItself) {
  EXPECT_EQ(this->changed("ab", [&](auto& t) { t += this->s("c") + this->s("d").getData(); }),
            "abcd");
  EXPECT_EQ(this->changed("ab", [&](auto& t) { t.append(this->s("xy"), 1) += TypeParam{'z'}; }),
            "abxz");
  auto text = this->s("ab");
  text.setchar(2, '!');
  EXPECT_EQ(narrow(text += text.getData() + 1), "abb!");
  int length = 7;
  EXPECT_EQ(narrow(text.deepCopy(this->s("new"), nullptr, &length)), "new");
  EXPECT_EQ(length, 7);
  text = text.getData() + 1;
  EXPECT_EQ(narrow(text), "ew");
}

// The rules of the loops, written out one character at a time.
struct Naive {
  static std::string trimLeft(std::string t) {
    for (std::size_t i = 0; i < t.size() && t[i] == ' '; ++i) t.erase(i, 1);
    return t;
  }
  static std::string clearSpaces(std::string t) { return replaceChars(std::move(t), " ", ""); }
  static std::string removeSpaces(std::string t) {
    while (!t.empty() && t.front() == ' ') t.erase(0, 1);
    while (!t.empty() && t.back() == ' ') t.pop_back();
    return t;
  }
  static std::string removeQuo(const std::string& t) {
    std::size_t quotes = 0;
    while (quotes + 1 < t.size() && t[quotes] == '"') ++quotes;
    return t.substr(quotes);
  }
  static std::string replaceChars(std::string t, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; at == 0 && (at = t.find(from)) != t.npos;) {
      t.replace(at, from.size(), to);
    }
    return t;
  }
};

TYPED_TEST(Strings, loopRules_matchTheirNaiveForm) {
  for (const std::string& text : allTexts(" \"ab", 6)) {
    EXPECT_EQ(this->changed(text, [](auto& t) { t.TrimLeft(); }), Naive::trimLeft(text)) << text;
    EXPECT_EQ(this->changed(text, [](auto& t) { t.clearSpaces(); }), Naive::clearSpaces(text));
    EXPECT_EQ(this->changed(text, [](auto& t) { t.removeSpaces(); }), Naive::removeSpaces(text));
    EXPECT_EQ(this->changed(text, [](auto& t) { t.removeQuo(); }), Naive::removeQuo(text));
  }
}

TYPED_TEST(Strings, replaceChars_matchesItsNaiveForm) {
  for (const std::string& from : allTexts("ab", 3)) {
    for (const std::string& to : allTexts("ab", 2)) {
      if (to.starts_with(from)) continue;  // does not end
      for (const std::string& text : allTexts("ab", 7)) {
        EXPECT_EQ(this->changed(text, [&](auto& t) { t.replaceChars(this->s(from), this->s(to)); }),
                  Naive::replaceChars(text, from, to))
            << text << " " << from << " " << to;
      }
    }
  }
}

TEST(NarrowString, lowerCasing_worksInPlaceByteByByte) {
  char text[] = "A\xC0z\xFF";
  EXPECT_EQ(ksString::strlwr(text), text);
  EXPECT_STREQ(text, "a\xC0z\xFF");
  wchar_t wideText[] = L"AZ";
  EXPECT_STREQ(ksWString::wcslwr(wideText), L"az");
}

}  // namespace
