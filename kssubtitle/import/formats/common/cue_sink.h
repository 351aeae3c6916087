// Collects the cues that a format's reader finds.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kssubtitle/import/ksImportCue.h"
#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/report/notes.h"

namespace kssubtitle::importing {

/// For each cue, in the order of the file: begin(), its text through text(), and finish().
class CueSink {
 public:
  /// `textSize` is the size of the file's text.
  CueSink(CueText& text, Notes& notes, std::size_t textSize) : text_(text), notes_(notes) {
    constexpr std::size_t kShortCue = 48;
    cues_.reserve(textSize / kShortCue);
  }

  /// Begins a cue at `line`. Its end is set later if it is assumed.
  ksImportCue& begin(long long start, long long end, int line) {
    const auto index = static_cast<int>(cues_.size());
    return cues_.emplace_back(ksImportCue{start, end, {}, line, index});
  }
  /// Begins a cue whose end the file does not say: arrange() will assume one.
  ksImportCue& beginWithoutEnd(long long start, int line) {
    ksImportCue& cue = begin(start, start, line);
    cue.isEndAssumed = true;
    return cue;
  }
  CueText& text() noexcept { return text_; }
  /// Ends the cue that was begun last. One without text is noted, and dropped later.
  void finish() {
    finishOrMark();
    if (cues_.back().text.empty()) notes_.add(ksImportProblem::kCueWithoutText, cues_.back().line);
  }
  /// The same where a cue without text only marks the end of the one before it.
  void finishOrMark() { cues_.back().text = text_.finish(); }
  /// finishOrMark() for the last `count` cues, which share a text.
  void finishOrMark(std::size_t count) {
    finishOrMark();
    for (auto cue = cues_.end() - static_cast<std::ptrdiff_t>(count); cue != cues_.end(); ++cue) {
      cue->text = cues_.back().text;
    }
  }

  std::vector<ksImportCue>& cues() noexcept { return cues_; }
  /// The languages that the file has, for the report.
  std::vector<std::string>& languages() noexcept { return languages_; }
  /// To be called if the file names languages, but not the one that was asked for.
  void missLanguage() noexcept { hasLanguage_ = false; }
  bool hasLanguage() const noexcept { return hasLanguage_; }
  Notes& notes() noexcept { return notes_; }

 private:
  CueText& text_;
  Notes& notes_;
  std::vector<ksImportCue> cues_;
  std::vector<std::string> languages_;
  bool hasLanguage_ = true;
};

}  // namespace kssubtitle::importing
