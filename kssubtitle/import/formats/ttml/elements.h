// The elements of TTML that have times: what they say, and when that is.
#pragma once

#include <limits>
#include <pugixml.hpp>

#include "kssubtitle/import/formats/ttml/styles.h"
#include "kssubtitle/import/formats/ttml/time_expressions.h"

namespace kssubtitle::importing {

/// Elements are followed no deeper than this into each other.
inline constexpr int kMostTtmlDepth = 100;

/// The attributes of an element. Times are in milliseconds, from wherever they count, and negative
/// where it says none.
struct TtmlElement {
  double begin = -1;
  double end = -1;
  double duration = -1;
  bool hasBadTime = false;       ///< One cannot be read.
  bool hasRepairedTime = false;  ///< One is read that the standard does not have.
  bool isSequential = false;
  bool saysSpace = false;
  bool keepsSpace = false;
  const char* language = "";
  const char* region = "";
  const char* styleNames = "";
  TtmlStyle style;

  static constexpr bool isSaid(double time) noexcept { return time >= 0; }
  bool hasTimes() const noexcept { return isSaid(begin) || hasEnd(); }
  bool hasEnd() const noexcept { return isSaid(end) || isSaid(duration); }
};

TtmlElement readTtmlElement(pugi::xml_node node, const TtmlRates& rates) noexcept;

/// A span of time.
struct TtmlInterval {
  static constexpr double kNever = std::numeric_limits<double>::infinity();

  double begin = 0;
  double end = kNever;

  bool holds(double time) const noexcept { return begin <= time && time < end; }
};

/// What holds within an element for those inside of it.
struct TtmlContext {
  static constexpr int kNoLanguage = -1;

  TtmlInterval time;
  TtmlInterval writtenTime;   ///< As if all times counted from the begin of the file.
  bool isSequential = false;  ///< Each child counts from the end of the one before.
  bool keepsSpace = false;
  int language = kNoLanguage;
  const TtmlStyle* region = nullptr;
  TtmlStyle style;
};

/// Places elements in time. They count from the begin of what they stand in; but there are files
/// in which they do not.
class TtmlTimeline {
 public:
  /// Whether all times of the file count from its begin.
  explicit TtmlTimeline(bool isAbsolute) noexcept : isAbsolute_(isAbsolute) {}

  bool isAbsolute() const noexcept { return isAbsolute_; }
  /// When an element is shown that stands in `outer` and counts from `reference`.
  TtmlInterval place(const TtmlElement& element, const TtmlContext& outer,
                     double reference) noexcept;
  /// Whether some elements would be shown only if all times counted from the begin of the file, and
  /// none would be lost.
  bool suggestsAbsolute() const noexcept {
    return !isAbsolute_ && fitsAbsoluteOnly_ && !fitsRelativeOnly_;
  }

 private:
  bool isBetterAbsolute(double begin, const TtmlContext& outer) noexcept;

  bool isAbsolute_;
  bool fitsAbsoluteOnly_ = false;
  bool fitsRelativeOnly_ = false;
};

/// What a document says for all of its elements.
struct TtmlDocument {
  TtmlRates rates;
  TtmlStyles styles;
  TtmlTimeline timeline;

  /// What holds within an element that stands in `outer` and counts from `reference`.
  TtmlContext enter(const TtmlElement& element, const TtmlContext& outer, double reference);
};

}  // namespace kssubtitle::importing
