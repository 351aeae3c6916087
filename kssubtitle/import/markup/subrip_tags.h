// The tags that stand in the texts of SubRip cues.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// What a text says beside its characters.
struct TextTraits {
  std::optional<int> alignment;
  bool isUnclosed = false;  ///< A tag is not closed.
};

/// Writes the lines of a cue without `<i> <b> <u> <s> <font ...>` and their ends, paired or not,
/// and without "{\...}" and "{y:...}" with their like; entities become characters. Anything else in
/// brackets is text.
TextTraits writeSubRipText(std::string_view text, CueText& out);
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

/// The length of "{\...}" at the front of `text`, or of "{y:...}" with a letter of `codes` in any
/// case; 0 if there is neither.
std::size_t overrideLength(std::string_view text, std::string_view codes) noexcept;
/// The alignment that "{\an8}" or the older "{\a6}" and their like ask for; nothing if `block` is
/// none. Requires: `block` ends in its brace.
std::optional<int> alignmentOfOverride(std::string_view block) noexcept;

}  // namespace kssubtitle::importing
