/// @file
/// A cue as the import library reads it from a file.
#pragma once

#include <string_view>

/// What is special about a cue; values of ksImportCue::flags, which is a sum of them.
enum ksImportCueFlag : int {
  kImportEndAssumed = 1,  ///< The file says no end; it is the next cue's start, or a few seconds.
  kImportDuplicate = 2,   ///< An earlier cue has the same start, end and text: it is never shown.
};

/// One cue. Its text belongs to the parser that it comes from.
struct ksImportCue {
  long long start = 0;  ///< Milliseconds, as the file has it, of either sign.
  long long end = 0;    ///< Milliseconds; the first moment at which the cue is not shown any more.
  std::string_view text;  ///< UTF-8 in the chosen markup, lines separated by '\n', not empty.
  int line = 0;           ///< Where it begins in the file: a line number, from 1.
  int index = 0;          ///< Its place among all cues of the file, those without text included.
  /// 1 to 9 as on a number pad; 2, bottom centre, where nothing is said. In WebVTT `align` gives
  /// the column, and `line` the third of the picture.
  int alignment = 2;
  int flags = 0;  ///< A sum of ksImportCueFlag values.
};
