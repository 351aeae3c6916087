/// @file
/// Whether the fixed readers, those of ksSubtitleManager, answer a file as it is meant.
#pragma once

#include <string_view>
#include <vector>

#include "kssubtitle/import/export.h"
#include "kssubtitle/import/ksImportOptions.h"

/// What a file must satisfy for the fixed readers to answer it as it is meant.
enum class ksImportConditionCode {
  kReadable,   ///< It can be read as subtitles.
  kFormat,     ///< It is SubRip or an ASS or SSA script.
  kExtension,  ///< Its name ends in the extension of its format, in lower case.
  kEncoding,   ///< It is UTF-8 without a BOM, or UTF-16LE with one.
  kLineEnds,   ///< Every line ends in LF, the last one too.
  kLineCount,  ///< It has at most 20,000 lines.
  kCuesAlone,  ///< It holds nothing but cues with text, each once.
  kScript,     ///< A script is of type v4.00+, with the usual columns and keys.
  kNumbers,    ///< Cues are numbered 1, 2, 3 and so on, directly above their times.
  kTimes,      ///< Times have the standard form of the format.
  kOrder,      ///< Cues follow one another without overlapping.
  kVerbatim,   ///< Texts are shown as they are written.
  kTwoLines,   ///< Texts have at most two lines.
  kSigns,      ///< Texts contain none of < > { } & \ and no no-break space.
  kDigits,     ///< No line of text consists of digits alone.
  kAnswers,    ///< Whatever else: the answers differ, though none of the above says why.
};

/// A condition that a file does not satisfy. Its texts are valid for as long as the library is
/// loaded.
struct ksImportCondition {
  ksImportConditionCode code;  ///< Which one it is.
  std::string_view name;       ///< A word or two, such as "line ends".
  std::string_view sentence;   ///< One English sentence on a file that does not satisfy it.
};

/// Why ksSubtitleManager does not answer the file at `path` (NUL-terminated, not null) as
/// ksImportParser does with `options` (in plain text, whatever their markup); empty if it does.
///
/// Empty means proved: both libraries open the file, and their answers, in the query of the file's
/// width, are equal at every time at which either changes and one millisecond before and after.
/// Only where they differ the file is searched for reasons. A file whose lines end in anything but
/// LF, and one that would cost the fixed readers a multiple of its size (see docs/limits.md), is
/// not opened with them: it differs.
///
/// The file should be a regular one; it is read several times. Nothing throws but
/// `std::bad_alloc`. Threads may call this at once.
KSSUBTITLE_IMPORT_API std::vector<ksImportCondition> ksWhyFixedReadersDiffer(
    const char* path, const ksImportOptions& options = {});
