// The tags that stand in the texts of SubRip cues.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {

/// What a text says beside its characters.
struct TextTraits {
  std::optional<int> alignment;
  bool isUnclosed = false;  ///< A tag is not closed.
};

/// Finds what may be markup in a file's text.
using SubRipMarks = RareCharacters<'<', '{', '&'>;

/// Writes the lines of a cue without `<i> <b> <u> <s> <font ...>` and their ends, paired or not,
/// and without "{\...}" and "{y:...}" with their like; entities become characters. Anything else in
/// brackets is text. `marks` are those of what `text` is a part of.
TextTraits writeSubRipText(std::string_view text, SubRipMarks& marks, CueText& out);
/// Whether what `text`, which is not empty, begins with would stand for something else than itself
/// if some of what follows it were escaped.
bool mayBeSubRipMarkup(std::string_view text) noexcept;

/// A tag at the front of a text.
struct TagAtFront {
  std::size_t length = 0;  ///< 0: there is none.
  StyleTag tag = StyleTag::kItalic;
  bool isClosing = false;
  std::string_view attributes;
};

/// The tag at the front of `text`, which begins with '<'; of the five that the small set has.
TagAtFront tagAtFront(std::string_view text) noexcept;
/// Opens or closes what the tag says. Requires: there is one.
void applyTag(const TagAtFront& tag, TagStyle& style);
/// The value of an attribute in any case, without its quotes; empty if there is none.
std::string_view attributeOf(std::string_view attributes, std::string_view name) noexcept;

/// The length of "{\...}" at the front of `text`, or of "{y:...}" with a letter of `codes` in any
/// case; 0 if there is neither.
std::size_t overrideLength(std::string_view text, std::string_view codes) noexcept;
/// The alignment that "{\an8}" or the older "{\a6}" and their like ask for; nothing if `block` is
/// none. Requires: `block` ends in its brace.
std::optional<int> alignmentOfOverride(std::string_view block) noexcept;

}  // namespace kssubtitle::importing
