// The colours of a timeline, and what they mean.
#pragma once

#include <array>
#include <cstddef>

namespace kssub {

/// The purpose of a shape, which decides its colour.
enum class Role {
  kBackground,
  kBand,  ///< The strip behind the bars of a row.
  kGrid,
  kText,
  kFaintText,
  kCalm,  ///< A cue that can be read at leisure, and so on to one that is too fast to read.
  kBrisk,
  kFast,
  kTooFast,
  kPicture,
  kNote,
};

struct Paint {
  const char* name;                      ///< The class in SVG.
  std::array<unsigned char, 3> onLight;  ///< Red, green and blue on a light background.
  std::array<unsigned char, 3> onDark;
};

/// In the order of Role.
inline constexpr Paint kPaints[] = {
    {"background", {255, 255, 255}, {17, 20, 25}}, {"band", {240, 242, 245}, {31, 36, 43}},
    {"grid", {214, 218, 224}, {56, 63, 72}},       {"text", {32, 36, 42}, {226, 230, 236}},
    {"faint", {98, 106, 117}, {150, 159, 170}},    {"calm", {58, 124, 188}, {88, 154, 216}},
    {"brisk", {44, 150, 112}, {66, 184, 140}},     {"fast", {219, 152, 20}, {240, 178, 52}},
    {"too-fast", {200, 38, 52}, {244, 84, 92}},    {"picture", {136, 92, 178}, {172, 130, 214}},
    {"note", {32, 36, 42}, {240, 242, 245}},
};

constexpr const Paint& paintOf(Role role) { return kPaints[static_cast<std::size_t>(role)]; }

/// The colours of reading speeds, slowest first, and their captions in the legend.
struct SpeedColour {
  Role role;
  double most;  ///< Characters per second; faster cues have the next colour.
  const char* caption;
};

inline constexpr SpeedColour kSpeedColours[] = {
    {Role::kCalm, 15, "up to 15 characters per second"},
    {Role::kBrisk, 20, "up to 20"},
    {Role::kFast, 25, "up to 25"},
};
inline constexpr const char* kTooFastCaption = "more";

constexpr Role roleOfSpeed(double charactersPerSecond) {
  for (const SpeedColour& colour : kSpeedColours) {
    if (charactersPerSecond <= colour.most) return colour.role;
  }
  return Role::kTooFast;
}

}  // namespace kssub
