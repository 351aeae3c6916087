// Tags, overrides and entities in the texts of SubRip cues.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"

namespace kssubtitle::importing {

/// What a text says besides its characters.
struct TextTraits {
  std::optional<int> alignment;
  bool isUnclosed = false;  ///< A tag is not closed.
};

/// Writes the lines of a cue without `<i> <b> <u> <s> <font ...>` and their ends, paired or not,
/// and without "{\...}", "{y:...}" and the like; entities become characters, and `\N` ends a line.
/// Anything else in brackets, and any other backslash, is text.
TextTraits writeSubRipText(std::string_view text, CueText& out);
/// Whether `text`, which is not empty, begins with markup other than an override, or would if some
/// of what follows were escaped.
bool mayBeSubRipMarkup(std::string_view text) noexcept;

/// A tag at the beginning of a text.
struct TagAtFront {
  std::size_t length = 0;  ///< 0: there is none.
  StyleTag tag = StyleTag::kItalic;
  bool isClosing = false;
  std::string_view attributes;
};

/// The tag at the beginning of `text`, which begins with '<', if it is one of the small set.
TagAtFront tagAtFront(std::string_view text) noexcept;

/// The length of the `\N` of ASS, with one backslash or two, at the beginning of `text`; 0 if there
/// is none.
std::size_t lineBreakLength(std::string_view text) noexcept;

/// The letters of the codes that occur in SubRip, for overrideLength().
inline constexpr std::string_view kSubRipCodes = "yfscp";
/// The length of "{\...}" at the beginning of `text`, or of "{y:...}" with a letter of `codes` in
/// any case; 0 if there is neither.
std::size_t overrideLength(std::string_view text, std::string_view codes) noexcept;
/// The alignment that a block such as "{\an8}" or the older "{\a6}" asks for, if any. Requires:
/// `block` ends in its brace.
std::optional<int> alignmentOfOverride(std::string_view block) noexcept;

}  // namespace kssubtitle::importing
