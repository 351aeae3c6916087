// What objects hold that nobody has used.
#include "support.h"

namespace {

template <typename Char>
class NewObjects : public testing::Test {};

TYPED_TEST_SUITE(NewObjects, Widths);

TYPED_TEST(NewObjects, holdNothing) {
  constexpr bool kNarrow = std::is_same_v<TypeParam, char>;
  const typename Width<TypeParam>::Srt srt;
  const typename Width<TypeParam>::Ass ass;
  const std::conditional_t<kNarrow, ksIdxParser, ksIdxParserU> idx;
  const typename decltype(srt.sessions)::mapped_type cue;
  const typename decltype(ass.sessions)::mapped_type event;
  const typename decltype(idx.sessions)::mapped_type entry;
  const double zeros[] = {
      static_cast<double>(srt.opened + ass.opened + ass.bold + ass.italic + idx.opened),
      static_cast<double>(cue.start + cue.end + event.layer + event.startTime + event.endTime),
      static_cast<double>(entry.startTime + entry.filePos + idx.useCustomColors + idx.trIdx),
      static_cast<double>(ass.playResX + ass.playResY + ass.charset + ass.alignment),
      static_cast<double>(ass.marginLeft + ass.marginTop + ass.marginRight + ass.marginBottom),
      static_cast<double>(ass.borderStyle) + ass.fontSize + ass.fontScaleX + ass.fontScaleY,
      ass.fontSpacing + ass.fontAngle + ass.outlineWidth + ass.shadowDepth};
  for (const double& zero : zeros) EXPECT_EQ(zero, 0) << &zero - zeros;
}

}  // namespace
