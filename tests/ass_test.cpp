// Override tags.
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

  std::string cleaned(std::string_view text) {
    if constexpr (std::is_same_v<Char, char>) {
      return narrow(parser.RemoveSSATags(wide<Char>(text), 0));
    } else {
      return narrow(parser.RemoveSSATags(wide<Char>(text)));
    }
  }

  Parser parser;
};

TYPED_TEST_SUITE(Ass, Widths);

TYPED_TEST(Ass, overrideTags_matchTheirNaiveForm) {
  for (const std::string& text : allTexts("{}<>a", 5)) {
    EXPECT_EQ(this->cleaned(text), naiveOverrideRemoval(text)) << text;
  }
  for (const std::string& text : allTexts("{}a", 8)) {
    EXPECT_EQ(this->cleaned(text), naiveOverrideRemoval(text)) << text;
  }
}

}  // namespace
