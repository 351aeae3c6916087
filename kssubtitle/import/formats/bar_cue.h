// A cue whose lines of text stand below its times, as in the formats of early players.
#pragma once

#include "kssubtitle/import/formats/cue_sink.h"
#include "kssubtitle/import/markup/bar_text.h"

namespace kssubtitle::importing {

/// Takes the lines of one cue after the other; tags go on from line to line.
class BarCue {
 public:
  BarCue(const BarMarkup& markup, CueSink& sink) noexcept : markup_(markup), sink_(sink) {}

  /// Requires: `cue` is the one that the sink has begun last.
  void begin(ksImportCue& cue) noexcept { cue_ = &cue; }
  /// The cue that is being read; null if none is.
  ksImportCue* cue() const noexcept { return cue_; }
  /// Requires: a cue is being read.
  void readLine(std::string_view line) {
    const TextTraits traits = writeBarText(line, markup_, Style(), tags_, sink_.text());
    cue_->alignment = traits.alignment.value_or(cue_->alignment);
  }
  void finish() {
    if (cue_ == nullptr) return;
    if (tags_.isAnyOpen()) sink_.notes().add(ksImportProblem::kTagUnclosed, cue_->line);
    tags_.closeAll();
    sink_.finish();
    cue_ = nullptr;
  }

 private:
  const BarMarkup& markup_;
  CueSink& sink_;
  TagStyle tags_;
  ksImportCue* cue_ = nullptr;
};

}  // namespace kssubtitle::importing
