// Texts of the formats of early players: a bar ends a line, and codes in braces or signs at a
// line's ends set the style.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/markup/subrip_tags.h"

namespace kssubtitle::importing {

/// What a format knows beside bars and line feeds, which end lines, tags such as `<i>`, and codes
/// such as "{y:i}", of which those in capital letters count for all that follows, not for their
/// line alone.
struct BarMarkup {
  enum class Signs {
    kNone,
    kSlashes,   ///< A line between slashes, or behind one, is italic.
    kPrefixes,  ///< A line behind '/' is italic, behind '\' bold, behind '_' underlined.
  };
  Signs signs = Signs::kNone;
  bool hasBreaks = false;         ///< "[br]" ends a line too.
  bool dropsUnknownTags = false;  ///< Whatever looks like a tag is none of the text.
};

/// Writes the lines of a cue that begins in the style `base`.
TextTraits writeBarText(std::string_view text, const BarMarkup& markup, const Style& base,
                        CueText& out);
/// Writes some lines of a cue, in which the tags in `tags` are open and may be closed.
TextTraits writeBarText(std::string_view text, const BarMarkup& markup, const Style& base,
                        TagStyle& tags, CueText& out);

/// The style that codes such as "{Y:i}{C:$bbggrr}" leave.
Style styleOfCodes(std::string_view codes) noexcept;

}  // namespace kssubtitle::importing
