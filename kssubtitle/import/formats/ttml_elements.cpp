// The elements of TTML that have times: what they say, and when that is.
#include "kssubtitle/import/formats/ttml_elements.h"

#include <algorithm>

#include "kssubtitle/import/formats/ttml_names.h"

namespace kssubtitle::importing {
namespace {

void setTime(std::optional<double>& time, std::string_view value, const TtmlRates& rates,
             TtmlElement& element) noexcept {
  if (value.empty() || value == "indefinite") return;
  time = ttmlTime(value, rates);
  if (!time) element.hasBadTime = true;
}

/// When an element is shown that counts from `origin`, or begins at `reference` if it does not say.
TtmlInterval timeFrom(double origin, double reference, const TtmlElement& element,
                      const TtmlInterval& outer) noexcept {
  TtmlInterval time;
  time.begin = element.begin ? origin + *element.begin : reference;
  if (element.end) time.end = origin + *element.end;
  if (element.duration) time.end = std::min(time.end, time.begin + *element.duration);
  time.end = std::min(time.end, outer.end);
  return time;
}

}  // namespace

TtmlElement readTtmlElement(pugi::xml_node node, const TtmlRates& rates) noexcept {
  TtmlElement element;
  for (pugi::xml_attribute attribute = node.first_attribute(); attribute;
       attribute = attribute.next_attribute()) {
    const std::string_view name = localName(attribute.name());
    const std::string_view value = attribute.value();
    if (is(name, "begin")) {
      setTime(element.begin, value, rates, element);
    } else if (is(name, "end")) {
      setTime(element.end, value, rates, element);
    } else if (is(name, "dur")) {
      setTime(element.duration, value, rates, element);
    } else if (is(name, "timeContainer")) {
      element.isSequential = value == "seq";
    } else if (is(name, "space")) {
      element.keepsSpace = value == "preserve";
    } else if (is(name, "lang")) {
      element.language = value;
    } else if (is(name, "region")) {
      element.region = value;
    } else if (is(name, "style")) {
      element.styleNames = value;
    } else {
      element.style.set(name, value);
    }
  }
  return element;
}

TtmlInterval TtmlTimeline::place(const TtmlElement& element, const TtmlContext& outer,
                                 double reference) noexcept {
  const bool isAbsolute = isAbsolute_ || (element.begin && isBetterAbsolute(*element.begin, outer));
  return timeFrom(isAbsolute ? 0 : reference, reference, element, outer.time);
}

bool TtmlTimeline::isBetterAbsolute(double begin, const TtmlContext& outer) noexcept {
  if (outer.isSequential) return false;
  const bool fitsWritten = outer.writtenTime.holds(begin);
  const bool fitsRelative = outer.time.begin + begin < outer.time.end;
  if (fitsWritten && !fitsRelative) fitsAbsoluteOnly_ = true;
  if (fitsRelative && !fitsWritten) fitsRelativeOnly_ = true;
  return !fitsRelative && outer.time.holds(begin);
}

TtmlContext TtmlDocument::enter(const TtmlElement& element, const TtmlContext& outer,
                                double reference) {
  TtmlContext context = outer;
  context.time = timeline.place(element, outer, reference);
  context.writtenTime = timeFrom(0, outer.writtenTime.begin, element, outer.writtenTime);
  context.isSequential = element.isSequential;
  context.keepsSpace = element.keepsSpace.value_or(outer.keepsSpace);
  if (!element.styleNames.empty()) context.style.take(styles.named(element.styleNames));
  context.style.take(element.style);
  if (const TtmlStyle* const region = styles.region(element.region)) context.region = region;
  return context;
}

}  // namespace kssubtitle::importing
