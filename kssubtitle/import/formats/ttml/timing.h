// When the elements of TTML are shown: begin, end, duration, parallel and sequential containers.
#pragma once

#include <cstddef>
#include <limits>

#include "kssubtitle/import/formats/ttml/elements.h"
#include "kssubtitle/import/formats/ttml/styles.h"
#include "kssubtitle/import/formats/ttml/time_expressions.h"

namespace kssubtitle::importing {

/// A span of time in milliseconds.
struct TtmlInterval {
  static constexpr double kNever = std::numeric_limits<double>::infinity();

  double begin = 0;
  double end = kNever;

  bool holds(double time) const noexcept { return begin <= time && time < end; }
};

/// What applies to the children of an element.
struct TtmlContext {
  static constexpr int kNoLanguage = -1;

  TtmlInterval time;
  TtmlInterval writtenTime;   ///< If all times counted from the beginning of the file.
  bool isSequential = false;  ///< Each child counts from the end of the previous one.
  bool isInstant = false;     ///< Its own text has no duration, as in a sequential container and
                              ///< in elements without times within one.
  bool keepsSpace = false;
  int language = kNoLanguage;
  bool isInParagraph = false;
  const TtmlStyle* region = nullptr;
  TtmlStyle style;
};

/// Places elements in time. Times count from the beginning of the parent (TTML2, section 12.3), but
/// in some files they count from the beginning of the file.
class TtmlTimeline {
 public:
  /// `isAbsolute`: all times count from the beginning of the file.
  explicit TtmlTimeline(bool isAbsolute) noexcept : isAbsolute_(isAbsolute) {}

  bool isAbsolute() const noexcept { return isAbsolute_; }
  /// When an element in `outer` is shown that counts from `reference`.
  TtmlInterval place(const TtmlElement& element, const TtmlContext& outer,
                     double reference) noexcept;
  /// Whether more paragraphs, or parts of them if those do not decide it, are shown if all times
  /// count from the beginning of the file. A few may have stray times.
  bool suggestsAbsolute() const noexcept {
    if (isAbsolute_) return false;
    if (paragraphs_.absolute != paragraphs_.relative) {
      return paragraphs_.absolute > paragraphs_.relative;
    }
    return parts_.absolute > 0 && parts_.absolute >= parts_.relative;
  }

 private:
  /// How many elements are shown only if times count from one or the other.
  struct Votes {
    std::size_t absolute = 0;
    std::size_t relative = 0;
  };

  bool isBetterAbsolute(double begin, const TtmlContext& outer) noexcept;

  bool isAbsolute_;
  Votes paragraphs_;  // and the elements around them
  Votes parts_;       // of paragraphs
};

/// What a document defines for all of its elements.
struct TtmlDocument {
  TtmlRates rates;
  TtmlStyles styles;
  TtmlTimeline timeline;

  /// What applies within an element in `outer` that counts from `reference`.
  TtmlContext enter(const TtmlElement& element, const TtmlContext& outer, double reference);
};

}  // namespace kssubtitle::importing
