/// @file
/// Writes cues as the text of a subtitle file.
#pragma once

#include <span>
#include <string>

#include "kssubtitle/import/export.h"
#include "kssubtitle/import/ksImportCue.h"
#include "kssubtitle/import/ksImportOptions.h"

/// The formats that cues can be written in.
enum class ksImportTarget {
  kSubRip,
  kWebVtt,
  kAss,   ///< One style, Default.
  kText,  ///< The texts alone, a blank line between two cues.
};

/// The content of a file of the format `target` with `cues`, whose texts have the markup `markup`:
/// UTF-8 without a mark, lines that end in LF, cues by start (those that start together in the
/// order given) and numbered where the format numbers them. `cues` may come from a parser, which
/// must have been asked for kHtml if style is to be kept, or be made by the host.
///
/// What ksImportParser reads from it are the same cues, but for this:
/// - A cue that is never shown, as its end is not behind its start or not above 0, or as it is
///   marked kImportDuplicate, is left out, and so is one without text. A start below 0 becomes 0,
///   and no time goes beyond 999,999,999,999 hours. ASS has hundredths of a second: times are
///   rounded, to one hundredth of length at least.
/// - WebVTT has no strike-out. ASS has no white that differs from no colour. kText has no style, no
///   alignment and no times.
/// - WebVTT settings keep `alignment`; to other players they mean the line 0 or the middle of the
///   picture, and its left or right edge.
/// - ASS cannot have braces in texts, which become parentheses. (A backslash that would begin a
///   code gets a word joiner, U+2060, behind it, which is not seen and which the parser takes off.)
/// - Texts take the form that the parser gives them: no white space at the ends of lines, no empty
///   lines, no zero characters, and U+FFFD for bytes that are no UTF-8. An alignment that is no key
///   of the number pad is 2.
///
/// The fixed readers, too, answer a written SubRip file alike, as long as its cues do not overlap
/// and it has no more than 20,000 lines, but for texts with more than two lines, with a line of
/// digits alone, with tags (of style or alignment), braces or entities, or with an arrow within a
/// line. ksImportReport::fixedReadersAgree() tells of a file.
///
/// What would be read as tags, entities, times or other parts of the format is escaped; SubRip
/// texts are else written as they are. Throws nothing but `std::bad_alloc`.
KSSUBTITLE_IMPORT_API std::string writeCues(std::span<const ksImportCue> cues,
                                            ksImportTarget target,
                                            ksImportMarkup markup = ksImportMarkup::kPlain);
