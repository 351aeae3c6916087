// The edits of the command `convert`, each a function from cues to cues.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kssub {

/// A cue that owns its text, which is in ksImportMarkup::kHtml.
struct EditedCue {
  long long start;  ///< Milliseconds.
  long long end;
  int alignment;
  std::string text;
};

/// By start. Every edit but retimed() expects that all of them are shown.
using EditedCues = std::vector<EditedCue>;

/// Maps `before` to `after`, and times around it at numerator / denominator of their distance.
struct TimeChange {
  long long before = 0;  ///< Milliseconds, as all times.
  long long after = 0;
  long long numerator = 1;  ///< Above 0, as the denominator.
  long long denominator = 1;

  /// Rounded to the nearest millisecond; exact, and so the same on every processor.
  long long operator()(long long time) const;
};

/// A time and what it is to become.
struct TimePair {
  long long before;
  long long after;
};

/// The change that fits one pair, by a shift alone, or two. Requires: of two pairs, both times of
/// one are before those of the other.
TimeChange changeThrough(const std::vector<TimePair>& pairs);

EditedCues retimed(EditedCues cues, const TimeChange& change);

/// Whether the cue is shown at no time.
bool isNeverShown(const EditedCue& cue);

/// The cues, uncut, that are shown at some time t with from <= t < until.
EditedCues within(EditedCues cues, long long from, long long until);

/// Ends each cue where the next one begins at the latest. Cues that begin together become one,
/// which ends with the last of them and has their texts below one another.
EditedCues withoutOverlaps(EditedCues cues);

/// Extends cues to `least` milliseconds, but not beyond the start of the next one.
EditedCues lasting(EditedCues cues, long long least);

/// Removes descriptions of sounds: words in brackets or parentheses, unless a letter directly
/// precedes them, and speakers' names in capitals followed by a colon. Lines that lose their last
/// letter or digit are removed, and so are cues that become empty.
EditedCues withoutSounds(EditedCues cues);

/// Breaks texts that have a line of more than `width` characters at spaces, into lines of about
/// equal length. A line that begins with a dash remains the beginning of a line.
EditedCues wrapped(EditedCues cues, std::size_t width);

}  // namespace kssub
