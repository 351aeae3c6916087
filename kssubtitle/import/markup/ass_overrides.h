// Override tags in the texts of ASS and SSA events, and the styles that they start from.
#pragma once

#include <map>
#include <optional>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// What a style of a script says of text.
struct AssStyle {
  Style style;
  int alignment = 2;  ///< As on a numeric keypad.
};

/// The styles of a script, by name, ignoring the asterisks that old scripts prefix.
class AssStyles {
 public:
  /// The last style of a name wins. Requires: the name outlives the styles.
  void add(std::string_view name, const AssStyle& style);
  /// Null if no style has the name.
  const AssStyle* named(std::string_view name) const noexcept;
  bool empty() const noexcept { return styles_.empty(); }

 private:
  // Not a hash table: a file could choose names that collide.
  std::map<std::string_view, AssStyle> styles_;
};

struct AssTextTraits {
  std::optional<int> alignment;
  bool isUnclosed = false;  ///< A block is opened but not closed.
  bool hasDrawing = false;
};

/// Writes an event's text without its override blocks and drawings. `\N` and `\n` end lines, `\h`
/// is a space.
AssTextTraits writeAssText(std::string_view text, const AssStyle& base, const AssStyles& styles,
                           CueText& out);

/// The alignment of SSA (1 to 3, plus 4 for the top, plus 8 for the middle) as on a numeric
/// keypad; nothing for another number.
std::optional<int> alignmentOfSsa(int alignment) noexcept;
/// A colour as scripts write it, "&HBBGGRR&" or a decimal number, as 0xRRGGBB; nothing if it is
/// not one. White, the default colour, is Style::kNoColour.
std::optional<int> colourOfAss(std::string_view text) noexcept;
/// The integer at the beginning of a column; nothing if there is none.
std::optional<int> integerOfAss(std::string_view text) noexcept;
/// Whether text of this weight is bold: 1, -1, and semi-bold or heavier.
bool isBoldWeight(int weight) noexcept;

}  // namespace kssubtitle::importing
