// The layouts and virtual tables that a compiled host relies on: of the Itanium C++ ABI, 64-bit.
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "tests/support.h"

namespace {

using Offsets = std::vector<std::ptrdiff_t>;

/// Where the members stand, and behind them the size of the whole.
template <typename Class, typename... Member>
Offsets layout(Member Class::*... members) {
  const Class object;
  const auto at = [&object](const auto& member) {
    return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&object);
  };
  return {at(object.*members)..., sizeof(Class)};
}

template <typename Char>
class Layout : public testing::Test {};
TYPED_TEST_SUITE(Layout, Widths);

TYPED_TEST(Layout, isTheOneThatHostsAreCompiledAgainst) {
  constexpr bool kNarrow = std::is_same_v<TypeParam, char>;
  using Cue = std::conditional_t<kNarrow, SUBTITLE_ST, SUBTITLE_ST_U>;
  using SrtCue = std::conditional_t<kNarrow, SRC_SESSION_ST, SRC_SESSION_ST_U>;
  using Event = std::conditional_t<kNarrow, ASS_SESSION_ST, ASS_SESSION_ST_U>;
  using Entry = std::conditional_t<kNarrow, SUB_SESSION_ST, SUB_SESSION_ST_U>;
  using Srt = typename Width<TypeParam>::Srt;
  using A = typename Width<TypeParam>::Ass;
  using Idx = std::conditional_t<kNarrow, ksIdxParser, ksIdxParserU>;
  EXPECT_EQ(layout(&Cue::start, &Cue::end, &Cue::text), Offsets({0, 8, 16, 56}));
  EXPECT_EQ(layout(&SrtCue::start, &SrtCue::end, &SrtCue::text), Offsets({0, 8, 16, 56}));
  EXPECT_EQ(layout(&Event::layer, &Event::startTime, &Event::endTime, &Event::text, &Event::style,
                   &Event::name, &Event::effect),
            Offsets({0, 8, 16, 24, 64, 104, 144, 184}));
  EXPECT_EQ(layout(&Entry::startTime, &Entry::filePos), Offsets({0, 8, 16}));
  EXPECT_EQ(layout(&Srt::file, &Srt::lines, &Srt::sessions, &Srt::opened),
            Offsets({8, 16, 40, 120, 128}));
  EXPECT_EQ(layout(&A::file, &A::lines, &A::sessions, &A::opened, &A::collisions, &A::playResX,
                   &A::playResY, &A::marginLeft, &A::marginTop, &A::marginRight, &A::marginBottom,
                   &A::colours, &A::alphas, &A::fontName, &A::charset, &A::alignment,
                   &A::borderStyle, &A::fontSize, &A::fontScaleX, &A::fontScaleY, &A::fontSpacing,
                   &A::fontAngle, &A::outlineWidth, &A::shadowDepth, &A::bold, &A::italic),
            Offsets({8,   16,  40,  120, 128, 168, 172, 176, 180, 184, 188, 192, 224, 232,
                     272, 276, 280, 288, 296, 304, 312, 320, 328, 336, 344, 345, 352}));
  EXPECT_EQ(layout(&Idx::file, &Idx::lines, &Idx::sessions, &Idx::opened, &Idx::subFilePath,
                   &Idx::useCustomColors, &Idx::trIdx, &Idx::palette, &Idx::customColors,
                   &Idx::spare1, &Idx::spare2),
            Offsets({8, 16, 40, 88, 96, 136, 140, 144, 208, 224, 264, 304}));
}

template <typename... Class>
constexpr bool kDestroyedThroughBases = (std::has_virtual_destructor_v<Class> && ...);
static_assert(kDestroyedThroughBases<ksString, ksWString, IParser, ksIdxParser, ksIdxParserU,
                                     ksSubtitleManager>);
static_assert(sizeof(ksString) == 40 && sizeof(ksWString) == 40 && sizeof(IParser) == 8 &&
              sizeof(ksSubtitleManager) == 104);

// ---- Virtual tables; how many slots they have stands with the exported symbols ----

/// A pointer to a virtual member is the offset of its slot, plus 1 on some processors.
template <typename Member>
std::ptrdiff_t slotOf(Member member) {
  std::ptrdiff_t offset;
  std::memcpy(&offset, &member, sizeof offset);
  return offset / static_cast<std::ptrdiff_t>(sizeof(void*));
}

// The parsers override these members, and so keep the slots.
TEST(Slots, are_those_of_the_interface) {
  EXPECT_EQ(slotOf(&IParser::Open), 2);  // behind the two forms of the destructor
  EXPECT_EQ(slotOf(&IParser::IsOpen), 3);
  EXPECT_EQ(slotOf(&IParser::DurationTime), 4);
  EXPECT_EQ(slotOf(&IParser::GetSubTitle), 5);
  EXPECT_EQ(slotOf(&IParser::GetSubTitleU), 6);
}

}  // namespace
