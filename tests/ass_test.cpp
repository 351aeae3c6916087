// Override tags.
#include "models/override_model.h"
#include "support.h"

namespace {

template <typename Char>
class Ass : public testing::Test {};

TYPED_TEST_SUITE(Ass, Widths);

TYPED_TEST(Ass, overrideTags_matchTheirNaiveForm) {
  typename Width<TypeParam>::Ass parser;
  for (const auto& texts : {allTexts("{}<>a", 5), allTexts("{}a", 8)}) {
    for (const std::string& text : texts) {
      const auto cleaned = Width<TypeParam>::removeTags(parser, wide<TypeParam>(text));
      EXPECT_EQ(narrow(cleaned), naiveOverrideRemoval(text)) << text;
    }
  }
}

}  // namespace
