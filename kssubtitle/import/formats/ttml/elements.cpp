// The elements of TTML that have times: what they say, and when that is.
#include "kssubtitle/import/formats/ttml/elements.h"

#include <algorithm>

#include "kssubtitle/import/formats/ttml/names.h"

namespace kssubtitle::importing {
namespace {

void setTime(double& time, const char* value, const TtmlRates& rates,
             TtmlElement& element) noexcept {
  const double read = ttmlTime(value, rates, element.hasRepairedTime);
  if (read < 0) {
    if (*value == '\0' || is(value, "indefinite")) return;
    element.hasBadTime = true;
  }
  time = read;
}

/// When an element is shown that counts from `origin`, or begins at `reference` if it does not say.
TtmlInterval timeFrom(double origin, double reference, const TtmlElement& element,
                      const TtmlInterval& outer) noexcept {
  TtmlInterval time;
  time.begin = TtmlElement::isSaid(element.begin) ? origin + element.begin : reference;
  if (TtmlElement::isSaid(element.end)) time.end = origin + element.end;
  if (TtmlElement::isSaid(element.duration))
    time.end = std::min(time.end, time.begin + element.duration);
  time.end = std::min(time.end, outer.end);
  return time;
}

/// Takes note of an attribute; whether it is one that is no style.
bool takeAttribute(TtmlElement& element, const char* name, const char* value,
                   const TtmlRates& rates) noexcept {
  if (is(name, "begin")) {
    setTime(element.begin, value, rates, element);
  } else if (is(name, "end")) {
    setTime(element.end, value, rates, element);
  } else if (is(name, "dur")) {
    setTime(element.duration, value, rates, element);
  } else if (is(name, "region")) {
    element.region = value;
  } else if (is(name, "style")) {
    element.styleNames = value;
  } else if (is(name, "space")) {
    element.saysSpace = true;
    element.keepsSpace = is(value, "preserve");
  } else if (is(name, "lang")) {
    element.language = value;
  } else if (is(name, "timeContainer")) {
    element.isSequential = is(value, "seq");
  } else {
    return false;
  }
  return true;
}

/// Whether a time of that name was said.
bool saysTime(const TtmlElement& element, const char* name) noexcept {
  return (is(name, "begin") && TtmlElement::isSaid(element.begin)) ||
         (is(name, "end") && TtmlElement::isSaid(element.end)) ||
         (is(name, "dur") && TtmlElement::isSaid(element.duration));
}

}  // namespace

/// Most names have no prefix: they are looked at as they stand first. Times of other name spaces
/// count where there are none of the standard's.
TtmlElement readTtmlElement(pugi::xml_node node, const TtmlRates& rates) noexcept {
  TtmlElement element;
  pugi::xml_attribute attribute = node.first_attribute();
  for (const char* name; *(name = attribute.name()) != '\0';
       attribute = attribute.next_attribute()) {
    const char* const value = attribute.value();
    if (takeAttribute(element, name, value, rates)) continue;
    const char* const local = localName(name);
    if (local != name && saysTime(element, local)) continue;
    if (local == name || !takeAttribute(element, local, value, rates)) {
      element.style.set(local, value);
    }
  }
  return element;
}

TtmlInterval TtmlTimeline::place(const TtmlElement& element, const TtmlContext& outer,
                                 double reference) noexcept {
  const bool isAbsolute =
      isAbsolute_ || (TtmlElement::isSaid(element.begin) && isBetterAbsolute(element.begin, outer));
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
  if (element.saysSpace) context.keepsSpace = element.keepsSpace;
  if (*element.styleNames != '\0') context.style.take(styles.named(element.styleNames));
  context.style.take(element.style);
  if (*element.region == '\0') return context;
  if (const TtmlStyle* const region = styles.region(element.region)) context.region = region;
  return context;
}

}  // namespace kssubtitle::importing
