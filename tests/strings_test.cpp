// The text class in both widths.
#include <climits>
#include <stdexcept>
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

TYPED_TEST(Strings, pieces_keepTheirBounds) {
  const auto text = this->s("abcdef");
  const auto left = [&](int n) { return narrow(text.Left(n)); };
  const auto right = [&](int n) { return narrow(text.Right(n)); };
  const auto piece = [&](int start, int count) { return narrow(text.substr(start, count)); };
  EXPECT_EQ(left(6), "abcdef");
  EXPECT_EQ(left(2), "ab");
  EXPECT_EQ(left(7) + left(-1), "");
  EXPECT_EQ(right(5), "bcdef");
  EXPECT_EQ(right(6) + right(7) + right(-1), "");
  EXPECT_EQ(piece(2, 3), "cde");
  EXPECT_EQ(piece(4, 100), "ef");
  EXPECT_EQ(piece(0, -1), "abcdef");
  EXPECT_EQ(piece(6, 5) + piece(0, -2) + piece(0, 0) + piece(-1, 3) + piece(99, 0), "");
  EXPECT_THROW(piece(7, 1), std::out_of_range);
}

TYPED_TEST(Strings, characters_areReadAndWrittenWithinBounds) {
  auto text = this->s("ab\xE9");
  EXPECT_EQ(text.getChar(0), TypeParam{'a'});
  EXPECT_EQ(text.getChar(3) + text.getChar(4) + text[-1], 0);
  text.setchar(1, 'x');
  text.setchar(-1, 'y');
  text.setchar(4, 'y');
  EXPECT_EQ(narrow(text), "ax\xE9");
  text.setchar(3, 'z');
  EXPECT_EQ(text.length(), 3);
  EXPECT_TRUE(text.getData() == this->s("ax\xE9z"));
  EXPECT_EQ(narrow(text.MakeLower()), "ax\xE9z");
}

TYPED_TEST(Strings, searches_returnPositions) {
  const auto text = this->s("ab..AB");
  EXPECT_EQ(text.find('b', 1), 1);
  EXPECT_EQ(text.find('b', 2), -1);
  EXPECT_EQ(text.find('a', -1), -1);
  EXPECT_EQ(text.find(this->s("AB"), 0), 4);
  EXPECT_EQ(text.find(this->s(""), 6), 6);
  EXPECT_EQ(text.find(this->s(""), 7), -1);
  EXPECT_EQ(text.findNoCase(this->s("aB"), 5), 0);
  EXPECT_EQ(text.findNoCase(this->s("ab..ab."), 0), -1);
  EXPECT_EQ(text.findNoCase(this->s(""), 3), 0);
  for (const int whole : {-1, 0, 5, 6}) {
    EXPECT_EQ(text.findlastNoCase(this->s("ab"), whole), 4) << whole;
  }
  EXPECT_EQ(text.findlastNoCase(this->s("ab"), 4), 0);
  EXPECT_EQ(text.findlastNoCase(this->s(""), 3), 4);
  EXPECT_EQ(this->s("").findlastNoCase(this->s(""), 3), 0);
  const auto axbyc = this->s("axbyc");
  EXPECT_EQ(axbyc.findlast(this->s("xyz"), -1), 3);
  EXPECT_EQ(axbyc.findlast(this->s("xyz"), 2), 1);
  EXPECT_EQ(axbyc.findlast(this->s("c"), 5), 4);
  EXPECT_EQ(axbyc.findlast(this->s(""), 2) + axbyc.findlast(this->s("c"), 3), -2);
}

TYPED_TEST(Strings, comparison_isSignedWithoutCaseAndOrdinalOtherwise) {
  const auto abc = this->s("abc");
  EXPECT_NE(abc.CompareNoCase(this->s("ABC")), 0);
  EXPECT_EQ(abc.CompareNoCase(this->s("abc")), 0);
  using Text = ksBasicString<TypeParam>;
  EXPECT_TRUE(Text::isEqualNoCase(abc, this->s("aBC")));
  EXPECT_FALSE(Text::isEqualNoCase(abc, this->s("abcd")));
  EXPECT_EQ(Text::compareNoCase(abc, this->s("ABD"), 3), -1);
  EXPECT_EQ(Text::compareNoCase(abc, this->s("ABB"), 3), 1);
  EXPECT_EQ(Text::compareNoCase(abc, this->s("ABD"), 2), 0);
  EXPECT_EQ(Text::compareNoCase(abc, this->s("x"), 0), 0);
  EXPECT_TRUE(this->s("ab") < abc && abc > this->s("ab") && this->s("\xE9") > abc);
  EXPECT_TRUE(abc == this->s("abc").getData() && abc != this->s("ab").getData());
}

TYPED_TEST(Strings, assembly_appendsReplacesAndThrows) {
  EXPECT_EQ(this->changed("ab", [&](auto& t) { t += this->s("c") + this->s("d").getData(); }),
            "abcd");
  EXPECT_EQ(this->changed("ab", [&](auto& t) { t.append(this->s("xy"), 1) += TypeParam{'z'}; }),
            "abxz");
  EXPECT_EQ(this->changed("abcd", [&](auto& t) { t.replace(1, 2, this->s("-")); }), "a-d");
  EXPECT_EQ(this->changed("abcd", [&](auto& t) { t.replace(4, -1, this->s("-")); }), "abcd-");
  auto text = this->s("ab");
  EXPECT_THROW(text.replace(3, 0, text), std::out_of_range);
  EXPECT_THROW((ksBasicString<TypeParam>(text.getData(), -1)), std::length_error);
  EXPECT_EQ(narrow(ksBasicString<TypeParam>(text.getData(), 1)), "a");
  EXPECT_THROW(text.append(text.getData(), -1), std::length_error);
  text.setchar(2, '!');
  EXPECT_EQ(narrow(text += text.getData() + 1), "abb!");
  int length = 7;
  EXPECT_EQ(narrow(text.deepCopy(this->s("new"), nullptr, &length)), "new");
  EXPECT_EQ(length, 7);
  text = text.getData() + 1;
  EXPECT_EQ(narrow(text), "ew");
}

TYPED_TEST(Strings, trailingCleanUp_removesWholeRuns) {
  EXPECT_EQ(this->changed(" x    ", [](auto& t) { t.TrimRight(); }), " x");
  EXPECT_EQ(this->changed("    ", [](auto& t) { t.TrimRight(); }), "");
  EXPECT_EQ(this->changed("x**", [](auto& t) { t.TrimRight('*'); }), "x");
  EXPECT_EQ(this->changed("abc\r\n\r", [](auto& t) { t.removeLastChar(); }), "abc");
  EXPECT_EQ(this->changed("\r\n", [](auto& t) { t.removeLastChar(); }), "");
  EXPECT_EQ(this->changed("A\r\nB ", [](auto& t) { t.removeLastChar(); }), "A\r\nB ");
  EXPECT_EQ(this->changed(std::string_view("AB\0C", 4), [](auto& t) { t.MakeLower(); }), "ab");
}

TYPED_TEST(Strings, isNumeric_takesDigitsOnly) {
  for (const char* text : {"007", "0", "9999999999999"}) EXPECT_TRUE(this->s(text).isNumeric());
  for (const char* text : {"", "-1", "1.5", " 1", "1\r", "\xB2", "/", ":"}) {
    EXPECT_FALSE(this->s(text).isNumeric()) << text;
  }
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
  EXPECT_EQ(this->changed("** x", [](auto& t) { t.TrimLeft('*'); }), "* x");
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

TYPED_TEST(Strings, deleteStr_keepsTheLengthAndTheStaleCharacters) {
  struct Case {
    int start, count;
    std::string after;
  };
  const std::string nul(1, '\0');
  for (const Case& c : {Case{1, 2, "adef" + nul + "f"}, Case{4, 10, "abcd" + nul + "f"},
                        Case{-3, 1, "bcdef" + nul}, Case{2, -1, "abcdef"}, Case{6, 1, "abcdef"},
                        Case{9, 1, "abcdef"}, Case{1, INT_MAX, "a" + nul + "cdef"}}) {
    EXPECT_EQ(
        this->changed("abcdef", [&](auto& t) { EXPECT_EQ(t.deleteStr(c.start, c.count), 6); }),
        c.after)
        << c.start << " " << c.count;
  }
}

TYPED_TEST(Strings, match_findsHandsOutAndCuts) {
  struct Case {
    const char* pattern;
    bool cut;
    const char* replacement;
    int result;
    const char *before, *after;
  };
  for (const Case& c : {Case{"b", true, "Q", 1, "a", "Qc"}, Case{"b", false, "Q", 1, "a", "abc"},
                        Case{"a", true, "", 0, "", "bc"}, Case{"z", true, "Q", 2, "old", "abc"},
                        Case{"abcd", true, "Q", 2, "old", "abc"},
                        Case{"", true, "Q", 0, "", "Qabc"}, Case{"c", true, "", 1, "ab", ""}}) {
    auto text = this->s("abc");
    auto before = this->s("old");
    EXPECT_EQ(text.match(this->s(c.pattern), &before, c.cut, this->s(c.replacement)), c.result);
    EXPECT_EQ(narrow(before) + "/" + narrow(text), std::string(c.before) + "/" + c.after);
    auto itself = this->s("abc");
    EXPECT_EQ(itself.match(this->s(c.pattern), nullptr, c.cut, this->s(c.replacement)), c.result);
    EXPECT_EQ(narrow(itself), c.after);
  }
  auto text = this->s("abc");
  EXPECT_EQ(text.match(this->s("b"), &text, true, this->s("Q")), 1);
  EXPECT_EQ(narrow(text), "a");
}

TYPED_TEST(Strings, split_keepsEmptyPiecesButNotTheLast) {
  const auto joined = [this](const char* text, const char* separator) {
    std::string all;
    for (const auto& [key, piece] : this->s(text).split(this->s(separator))) {
      all += std::to_string(key) + "[" + narrow(piece) + "]";
    }
    return all;
  };
  EXPECT_EQ(joined("a,b,,c", ","), "0[a]1[b]2[]3[c]");
  EXPECT_EQ(joined("a--b----", "--"), "0[a]1[b]2[]");
  EXPECT_EQ(joined("abc", ","), "0[abc]");
  EXPECT_EQ(joined("", ","), "");
}

TYPED_TEST(Strings, inflate_padsToTheWidth) {
  const auto padded = [this](const char* text, int width, const char* fill, bool atFront) {
    return this->changed(text, [&](auto& t) { t.inflate(width, this->s(fill), atFront); });
  };
  EXPECT_EQ(padded("7", 3, "0", true), "007");
  EXPECT_EQ(padded("ab", 7, "xy", false), "abxyxyx");
  EXPECT_EQ(padded("ab", 5, "xyz", true), "xyzab");
  EXPECT_EQ(padded("abcd", 3, "", true) + padded("abcd", 4, "", true), "abcdabcd");
}

TEST(NarrowString, numbers_areDecimalBothWays) {
  EXPECT_EQ(narrow(ksString(-5)), "-5");
  EXPECT_EQ(narrow(ksString("a") + 7 += INT_MIN), "a7-2147483648");
  const std::pair<const char*, int> cases[] = {{"12ab", 12},      {"abc", 0},
                                               {" -7", -7},       {"", 0},
                                               {"4294967297", 1}, {"99999999999999999999", -1}};
  for (const auto& [text, number] : cases) {
    EXPECT_EQ(static_cast<int>(ksString(text)), number) << text;
  }
}

TEST(WideString, numbers_haveNoTextAndAreReadInTheBaseOfTheLength) {
  EXPECT_TRUE(ksWString(42).isEmpty());
  EXPECT_EQ(narrow(ksWString(L"a") + 7 += 7), "a");
  const std::wstring longest(36, L'z');
  const std::pair<std::wstring, int> cases[] = {{L"", 0},    {L"5", 0},     {L"10", 2},
                                                {L"12", 1},  {L"123", 5},   {L"255", 2},
                                                {L" 11", 4}, {longest, -1}, {longest + L"z", 0}};
  for (const auto& [text, number] : cases) {
    EXPECT_EQ(static_cast<int>(ksWString(text)), number) << testing::PrintToString(text);
  }
}

TEST(NarrowString, lowerCasing_worksInPlaceByteByByte) {
  char text[] = "A\xC0z\xFF";
  EXPECT_EQ(ksString::strlwr(text), text);
  EXPECT_STREQ(text, "a\xC0z\xFF");
  wchar_t wideText[] = L"AZ";
  EXPECT_STREQ(ksWString::wcslwr(wideText), L"az");
  EXPECT_EQ(ksString::compareNoCase("\xC0", "A", 1), -1);
}

}  // namespace
