// What can be done to the cues of a film: each a function from cues to cues.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kssub {

/// A cue whose text, in ksImportMarkup::kHtml, is its own.
struct EditedCue {
  long long start;  ///< Milliseconds.
  long long end;
  int alignment;
  std::string text;
};

/// By start. Those that are never shown are out of place in any edit but of times.
using EditedCues = std::vector<EditedCue>;

/// How times change: they are multiplied, then moved.
struct TimeChange {
  long double factor = 1;
  long double offset = 0;  ///< Milliseconds.

  /// Rounded to the nearest millisecond.
  long long operator()(long long time) const;
};

/// A time and what it is to become.
struct TimePair {
  long long before;
  long long after;
};

/// The change that leads through one pair, by moving alone, or through two. Requires: the times
/// before are different.
TimeChange changeThrough(const std::vector<TimePair>& pairs);

/// Requires: the factor is above 0.
EditedCues retimed(EditedCues cues, const TimeChange& change);

/// Whether no moment shows the cue.
bool isNeverShown(const EditedCue& cue);

/// Those that are shown at some moment from `from` on and before `until`, whole.
EditedCues within(EditedCues cues, long long from, long long until);

/// Each cue ends where a later one begins, if not before. Those that begin together become one, as
/// long as the longest and with the texts one below the other.
EditedCues withoutOverlaps(EditedCues cues);

/// Each cue lasts as long as that, but no longer than to where the next one begins.
EditedCues lasting(EditedCues cues, long long least);

/// Without descriptions of sounds: words in brackets or parentheses, unless a letter stands
/// directly in front, and names in capitals with a colon in front of what is said. Lines from
/// which that takes the last letter or digit go, and cues without anything else.
EditedCues withoutSounds(EditedCues cues);

/// Lines of at most so many characters where there are blanks to break them at, about equally long.
/// Lines that fit stay as they are, in texts of which all fit; lines that begin with a dash begin a
/// line always.
EditedCues wrapped(EditedCues cues, std::size_t width);

}  // namespace kssub
