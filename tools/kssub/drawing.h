// A drawing as a list of shapes, which can be written as SVG or PNG.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "tools/kssub/timeline_colours.h"

namespace kssub {

// Lengths are in pixels from the upper left corner. Texts are UTF-8.

struct Rectangle {
  Role role;
  double x, y, width, height;
  std::string hint;  ///< What a viewer may show when it is pointed at; may be empty.
};

/// A triangle that points down at (x, y).
struct Pointer {
  Role role;
  double x, y;
  std::string hint;
};

enum class Anchor { kStart, kMiddle, kEnd };

/// One line of text with its baseline at `y`.
struct Label {
  Role role;
  double x, y;
  Anchor anchor;
  std::string text;
};

inline constexpr double kFontSize = 12;
inline constexpr double kPointerSize = 6;

/// Each shape covers the ones before it.
struct Drawing {
  double width = 0;
  double height = 0;
  std::vector<std::variant<Rectangle, Pointer, Label>> shapes;
};

/// The drawing as SVG with colours for light and for dark backgrounds.
std::string svgOf(const Drawing& drawing);
/// The drawing as PNG on a light background. Throws std::runtime_error.
std::string pngOf(const Drawing& drawing);

}  // namespace kssub
