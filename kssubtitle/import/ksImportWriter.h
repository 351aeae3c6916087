/// @file
/// Converts cues to the text of a subtitle file.
#pragma once

#include <span>
#include <string>

#include "kssubtitle/import/export.h"
#include "kssubtitle/import/ksImportCue.h"
#include "kssubtitle/import/ksImportOptions.h"

/// The formats that cues can be written in.
enum class ksImportTarget {
  kSubRip,  ///< SubRip.
  kWebVtt,  ///< The W3C's "WebVTT: The Web Video Text Tracks Format".
  kAss,     ///< A script of type v4.00+ with a single style, Default.
  kText,    ///< The texts alone, separated by blank lines.
};

/// How WebVTT has colours; other formats have any colour.
enum class ksImportColors {
  kStandardColors,  ///< The nearest of the eight that the standard has classes for.
  kExactColors,     ///< Any, by a style sheet: players that cannot read one may show nothing.
};

/// Returns the content of a `target` file with `cues`, whose texts are in `markup`: UTF-8 without a
/// BOM, lines ending in LF, cues by start (in the given order where starts are equal), numbered
/// where the format numbers them. The cues may come from a parser, which must have been asked for
/// kHtml if style is to be kept, or be made by the host. Throws nothing but `std::bad_alloc`; any
/// thread may call it.
///
/// Whatever would be read as a tag, an entity, a time or another part of the format is escaped;
/// other text is written to SubRip unchanged, but for an empty pair of tags after an opening brace,
/// which keeps players from hiding the text in braces as an override. ksImportParser reads the same
/// cues back, except:
/// - Cues that are never shown (see ksImportCue) or have no text are left out. A start below 0
///   becomes 0, and no time exceeds 999,999,999,999 hours. ASS has hundredths of a second: times
///   are rounded, to a length of at least one hundredth.
/// - WebVTT has no strike-out, and exact colours only with kExactColors. ASS cannot tell white text
/// from text without a colour. kText has no
///   style, alignment or times.
/// - WebVTT settings preserve `alignment`; other players take them as line 0 or the middle of the
///   picture, and its left or right edge.
/// - ASS texts cannot contain braces, which become parentheses. (A backslash that would begin an
///   escape is followed by an invisible word joiner, U+2060, which the parser removes.)
/// - Texts are normalised as the parser would: no white space at the ends of lines, no empty
///   lines, no NULs, and U+FFFD for bytes that are not UTF-8. An `alignment` outside 1 to 9 is 2.
///
/// The fixed readers answer a written SubRip file alike if its cues do not overlap and it has at
/// most 20,000 lines, except for texts with more than two lines, a line of digits alone, tags (of
/// style or alignment), braces, entities, or an arrow within a line.
KSSUBTITLE_IMPORT_API std::string ksImportWrite(
    std::span<const ksImportCue> cues, ksImportTarget target,
    ksImportMarkup markup = ksImportMarkup::kPlain,
    ksImportColors colors = ksImportColors::kStandardColors);
