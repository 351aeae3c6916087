// Takes the cues that a format's reader finds.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kssubtitle/import/ksImportCue.h"
#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/report/notes.h"

namespace kssubtitle::importing {

/// One cue after the other, in the order of the file: begin(), then its text, then finish().
class CueSink {
 public:
  /// `textSize` is that of the file.
  CueSink(CueText& text, Notes& notes, std::size_t textSize) : text_(text), notes_(notes) {
    constexpr std::size_t kShortCue = 48;
    cues_.reserve(textSize / kShortCue);
  }

  /// Begins a cue at `line`. Its end is set later if it is assumed.
  ksImportCue& begin(long long start, long long end, int line) {
    const auto index = static_cast<int>(cues_.size());
    return cues_.emplace_back(ksImportCue{start, end, {}, line, index});
  }
  /// Begins a cue whose end the file does not say: it will be where the next one begins.
  ksImportCue& beginWithoutEnd(long long start, int line) {
    ksImportCue& cue = begin(start, start, line);
    cue.isEndAssumed = true;
    return cue;
  }
  CueText& text() noexcept { return text_; }
  /// Ends the cue that was begun last. One without text is noted and left out.
  void finish() {
    finishOrMark();
    if (cues_.back().text.empty()) notes_.add(ksImportProblem::kCueWithoutText, cues_.back().line);
  }
  /// Ends it: one without text only marks where the one before it ends.
  void finishOrMark() { cues_.back().text = text_.finish(); }
  /// Ends the last `count` cues, at least one, which share one text.
  void finishOrMark(std::size_t count) {
    finishOrMark();
    if (count > 1) shareText(count);
  }

  std::vector<ksImportCue>& cues() noexcept { return cues_; }
  /// What the file says it holds.
  std::vector<std::string>& languages() noexcept { return languages_; }
  Notes& notes() noexcept { return notes_; }

 private:
  void shareText(std::size_t count) noexcept;

  CueText& text_;
  Notes& notes_;
  std::vector<ksImportCue> cues_;
  std::vector<std::string> languages_;
};

/// Puts the cues in their order, gives ends to those that have none, leaves out what has no text,
/// and tells what is there twice. An end that is not said is where the next cue begins, at most
/// `longestAssumed` milliseconds after the start; the last cue's is five seconds after it.
void arrange(std::vector<ksImportCue>& cues, long long longestAssumed, Notes& notes);

}  // namespace kssubtitle::importing
