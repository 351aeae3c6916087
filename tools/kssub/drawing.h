// A flat picture as a description: what is drawn where, and what for. It becomes SVG or PNG.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace kssub {

/// What a shape is for, which decides its colour.
enum class Role {
  kBackground,
  kBand,  ///< A strip that things stand on.
  kGrid,
  kText,
  kFaintText,
  kCalm,  ///< Text that can be read at leisure, and so on up to text that nobody can read in time.
  kBrisk,
  kFast,
  kTooFast,
  kPicture,
  kNote,
};

struct Paint {
  const char* name;                      ///< For classes of SVG.
  std::array<unsigned char, 3> onLight;  ///< Red, green and blue for a light background.
  std::array<unsigned char, 3> onDark;
};

inline constexpr std::size_t kRoles = static_cast<std::size_t>(Role::kNote) + 1;
extern const std::array<Paint, kRoles> kPaints;

inline const Paint& paintOf(Role role) { return kPaints[static_cast<std::size_t>(role)]; }

// Lengths are pixels from the upper left corner. Texts are UTF-8.

struct Rectangle {
  Role role;
  double x, y, width, height;
  std::string hint;  ///< What a viewer may tell of it on demand; may be empty.
};

/// A triangle that points down at a place.
struct Pointer {
  Role role;
  double x, y;
  std::string hint;
};

enum class Anchor { kStart, kMiddle, kEnd };

/// One line of text, whose base line is at `y`.
struct Label {
  Role role;
  double x, y;
  Anchor anchor;
  std::string text;
};

inline constexpr double kFontSize = 12;
inline constexpr double kPointerSize = 6;

/// Shapes in the order in which they cover each other.
struct Drawing {
  double width = 0;
  double height = 0;
  std::vector<std::variant<Rectangle, Pointer, Label>> shapes;
};

/// The picture as SVG, in the colours that suit the viewer's background.
std::string svgOf(const Drawing& drawing);
/// The picture as PNG on a light background. Throws std::runtime_error.
std::string pngOf(const Drawing& drawing);

}  // namespace kssub
