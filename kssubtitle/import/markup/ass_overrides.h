// Overrides in the texts of ASS and SSA events, and the styles that they start from.
#pragma once

#include <map>
#include <optional>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// What a style of a script says of text.
struct AssStyle {
  Style style;
  int alignment = 2;  ///< As on a number pad.
};

/// The styles of a script, by name; the asterisks that old scripts put in front do not count.
class AssStyles {
 public:
  /// The last style of a name counts. Requires: the name outlives the styles.
  void add(std::string_view name, const AssStyle& style);
  /// Null if there is none of that name.
  const AssStyle* named(std::string_view name) const noexcept;
  bool empty() const noexcept { return styles_.empty(); }

 private:
  // A file may choose names that hashes do not tell apart.
  std::map<std::string_view, AssStyle> styles_;
};

struct AssTextTraits {
  std::optional<int> alignment;
  bool isUnclosed = false;  ///< A block is opened that does not end.
};

/// Writes an event's text without its overrides and drawings. `\N` and `\n` end lines, `\h` is a
/// space.
AssTextTraits writeAssText(std::string_view text, const AssStyle& base, const AssStyles& styles,
                           CueText& out);

/// The alignment of SSA (1 to 3, plus 4 for the top, plus 8 for the middle) as on a number pad;
/// nothing for another number.
std::optional<int> alignmentOfSsa(int alignment) noexcept;
/// A colour as scripts write it, "&HBBGGRR&" or a decimal number, as 0xRRGGBB; nothing if it is
/// none. White, the colour of text that says nothing, is Style::kNoColour.
std::optional<int> colourOfAss(std::string_view text) noexcept;
/// The integer at the front of a column; nothing if there is none.
std::optional<int> integerOfAss(std::string_view text) noexcept;
/// Whether text of this weight is bold: 1, and numbers from semi-bold on.
bool isBoldWeight(int weight) noexcept;

}  // namespace kssubtitle::importing
