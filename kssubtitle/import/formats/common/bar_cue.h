// A cue whose lines of text stand below its times, as in the formats of early players.
#pragma once

#include "kssubtitle/import/formats/common/cue_sink.h"
#include "kssubtitle/import/markup/bar_text.h"

namespace kssubtitle::importing {

/// Takes the lines of one cue after the other; tags go on from line to line.
class BarCue {
 public:
  BarCue(std::string_view fileText, const BarMarkup& markup, CueSink& sink) noexcept
      : writer_(fileText, markup, sink.text()), sink_(sink) {}

  /// Requires: `cue` is the one that the sink has begun last.
  void begin(ksImportCue& cue) noexcept { cue_ = &cue; }
  /// The cue that is being read; null if none is.
  ksImportCue* cue() const noexcept { return cue_; }
  /// Requires: a cue is being read.
  void readLine(std::string_view line) { writer_.write(line, cue_->alignment); }
  void finish() {
    if (cue_ == nullptr) return;
    if (writer_.closeTags()) sink_.notes().add(ksImportProblem::kTagUnclosed, cue_->line);
    sink_.finish();
    cue_ = nullptr;
  }

 private:
  BarWriter writer_;
  CueSink& sink_;
  ksImportCue* cue_ = nullptr;
};

}  // namespace kssubtitle::importing
