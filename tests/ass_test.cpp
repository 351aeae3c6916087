// Override tags.
#include "fuzz/override_model.h"
#include "support.h"

namespace {

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
