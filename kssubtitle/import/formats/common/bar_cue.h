// A cue whose lines of text follow the line of its times, as in the formats of early players.
#pragma once

#include "kssubtitle/import/formats/common/cue_sink.h"
#include "kssubtitle/import/markup/bar_separated_text.h"

namespace kssubtitle::importing {

/// Writes one cue after the other, line by line; a tag goes on until it is closed or the cue ends.
class BarCue {
 public:
  BarCue(const BarMarkup& markup, CueSink& sink) noexcept
      : writer_(markup, sink.text()), sink_(sink) {}

  /// Requires: the sink has begun `cue` last.
  void begin(ksImportCue& cue) noexcept { cue_ = &cue; }
  /// The cue that is being read, or null.
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
