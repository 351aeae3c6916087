// The layouts and virtual tables that a compiled host relies on: of the Itanium C++ ABI, 64-bit.
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "tests/support.h"

// Members behind a virtual table: conditionally supported, and right with both compilers.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

namespace {

// ---- Records ----

template <typename Cue>
consteval bool isCue() {
  return sizeof(Cue) == 56 && offsetof(Cue, start) == 0 && offsetof(Cue, end) == 8 &&
         offsetof(Cue, text) == 16;
}
static_assert(isCue<SUBTITLE_ST>() && isCue<SUBTITLE_ST_U>());
static_assert(isCue<SRC_SESSION_ST>() && isCue<SRC_SESSION_ST_U>());

template <typename Event>
consteval bool isEvent() {
  return sizeof(Event) == 184 && offsetof(Event, layer) == 0 && offsetof(Event, startTime) == 8 &&
         offsetof(Event, endTime) == 16 && offsetof(Event, text) == 24 &&
         offsetof(Event, style) == 64 && offsetof(Event, name) == 104 &&
         offsetof(Event, effect) == 144;
}
static_assert(isEvent<ASS_SESSION_ST>() && isEvent<ASS_SESSION_ST_U>());

template <typename Entry>
consteval bool isEntry() {
  return sizeof(Entry) == 16 && offsetof(Entry, startTime) == 0 && offsetof(Entry, filePos) == 8;
}
static_assert(isEntry<SUB_SESSION_ST>() && isEntry<SUB_SESSION_ST_U>());

// ---- Classes ----

template <typename Class>
consteval bool hasSize(std::size_t size) {
  return sizeof(Class) == size && std::has_virtual_destructor_v<Class>;
}
static_assert(hasSize<ksString>(40) && hasSize<ksWString>(40));
static_assert(hasSize<IParser>(8) && hasSize<ksSubtitleManager>(104));
static_assert(hasSize<ksSrtParser>(128) && hasSize<ksSrtParserU>(128));
static_assert(hasSize<ksAssParser>(352) && hasSize<ksAssParserU>(352));
static_assert(hasSize<ksIdxParser>(304) && hasSize<ksIdxParserU>(304));

template <typename Parser>
consteval bool beginsWithLinesAndSessions() {
  return offsetof(Parser, file) == 8 && offsetof(Parser, lines) == 16 &&
         offsetof(Parser, sessions) == 40;
}
static_assert(beginsWithLinesAndSessions<ksSrtParser>() && offsetof(ksSrtParser, opened) == 120);
static_assert(beginsWithLinesAndSessions<ksSrtParserU>() && offsetof(ksSrtParserU, opened) == 120);

template <typename Ass>
consteval bool isAssParser() {
  return beginsWithLinesAndSessions<Ass>() && offsetof(Ass, opened) == 120 &&
         offsetof(Ass, collisions) == 128 && offsetof(Ass, playResX) == 168 &&
         offsetof(Ass, playResY) == 172 && offsetof(Ass, marginLeft) == 176 &&
         offsetof(Ass, marginTop) == 180 && offsetof(Ass, marginRight) == 184 &&
         offsetof(Ass, marginBottom) == 188 && offsetof(Ass, colours) == 192 &&
         offsetof(Ass, alphas) == 224 && offsetof(Ass, fontName) == 232 &&
         offsetof(Ass, charset) == 272 && offsetof(Ass, alignment) == 276 &&
         offsetof(Ass, borderStyle) == 280 && offsetof(Ass, fontSize) == 288 &&
         offsetof(Ass, fontScaleX) == 296 && offsetof(Ass, fontScaleY) == 304 &&
         offsetof(Ass, fontSpacing) == 312 && offsetof(Ass, fontAngle) == 320 &&
         offsetof(Ass, outlineWidth) == 328 && offsetof(Ass, shadowDepth) == 336 &&
         offsetof(Ass, bold) == 344 && offsetof(Ass, italic) == 345;
}
static_assert(isAssParser<ksAssParser>() && isAssParser<ksAssParserU>());

template <typename Idx>
consteval bool isIdxParser() {
  return beginsWithLinesAndSessions<Idx>() && offsetof(Idx, opened) == 88 &&
         offsetof(Idx, subFilePath) == 96 && offsetof(Idx, useCustomColors) == 136 &&
         offsetof(Idx, trIdx) == 140 && offsetof(Idx, palette) == 144 &&
         offsetof(Idx, customColors) == 208 && offsetof(Idx, spare1) == 224 &&
         offsetof(Idx, spare2) == 264;
}
static_assert(isIdxParser<ksIdxParser>() && isIdxParser<ksIdxParserU>());

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
