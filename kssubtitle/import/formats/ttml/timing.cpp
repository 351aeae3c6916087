// When the elements of TTML are shown.
#include "kssubtitle/import/formats/ttml/timing.h"

#include <algorithm>

namespace kssubtitle::importing {
namespace {

/// When an element is shown that counts from `origin`, or begins at `reference` by default.
TtmlInterval timeFrom(double origin, double reference, const TtmlElement& element,
                      const TtmlInterval& outer) noexcept {
  TtmlInterval time;
  time.begin = TtmlElement::isGiven(element.begin) ? origin + element.begin : reference;
  if (TtmlElement::isGiven(element.end)) time.end = origin + element.end;
  if (TtmlElement::isGiven(element.duration))
    time.end = std::min(time.end, time.begin + element.duration);
  time.end = std::min(time.end, outer.end);
  return time;
}

}  // namespace

TtmlInterval TtmlTimeline::place(const TtmlElement& element, const TtmlContext& outer,
                                 double reference) noexcept {
  const bool isAbsolute = isAbsolute_ || (TtmlElement::isGiven(element.begin) &&
                                          isBetterAbsolute(element.begin, outer));
  return timeFrom(isAbsolute ? 0 : reference, reference, element, outer.time);
}

bool TtmlTimeline::isBetterAbsolute(double begin, const TtmlContext& outer) noexcept {
  if (outer.isSequential) return false;
  const bool fitsWritten = outer.writtenTime.holds(begin);
  const bool fitsRelative = outer.time.begin + begin < outer.time.end;
  Votes& votes = outer.isInParagraph ? parts_ : paragraphs_;
  if (fitsWritten && !fitsRelative) ++votes.absolute;
  if (fitsRelative && !fitsWritten) ++votes.relative;
  return !fitsRelative && outer.time.holds(begin);
}

TtmlContext TtmlDocument::enter(const TtmlElement& element, const TtmlContext& outer,
                                double reference) {
  TtmlContext context = outer;
  context.time = timeline.place(element, outer, reference);
  context.writtenTime = timeFrom(0, outer.writtenTime.begin, element, outer.writtenTime);
  context.isSequential = element.isSequential;
  context.isInstant = element.isSequential || (outer.isInstant && !element.hasTimes());
  if (element.hasSpace) context.keepsSpace = element.keepsSpace;
  if (!element.styleNames.empty()) context.style.take(styles.named(element.styleNames));
  context.style.take(element.style);
  if (element.region.empty()) return context;
  if (const TtmlStyle* const region = styles.region(element.region)) context.region = region;
  return context;
}

}  // namespace kssubtitle::importing
