/// @file
/// A cue of a subtitle file.
#pragma once

#include <string_view>

/// One cue: a text, and when it is shown. The text belongs to the parser that returned the cue.
///
/// A cue is shown at `t` if start <= t < end, and at `end` itself unless another cue is shown then.
struct ksImportCue {
  long long start = 0;  ///< Milliseconds from the start of the media; may be negative.
  /// Milliseconds. At `end` itself the cue is still shown if no other is. A cue whose `end` is not
  /// after max(start, 0) is never shown.
  long long end = 0;
  std::string_view text;  ///< UTF-8 in the chosen markup; '\n' separates lines; never empty.
  int line = 0;           ///< The line of the file on which it begins, from 1.
  int index = 0;          ///< Its position in the file, from 0, counting cues without text too.
  /// Where it is placed, 1 to 9 as on a numeric keypad; 2, bottom centre, if the file does not say.
  /// In WebVTT `align` gives the column and `line` the third of the picture.
  int alignment = 2;
  bool isEndAssumed = false;  ///< The file gives no end: it is the next start, or a few seconds.
  /// An earlier cue has the same start, end and text, whatever its style; never shown.
  bool isDuplicate = false;
};
