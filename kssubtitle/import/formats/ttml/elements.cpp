// The attributes of the elements of TTML that have times.
#include "kssubtitle/import/formats/ttml/elements.h"

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

/// Reads an attribute. Returns whether it is one that is not about style.
bool readAttribute(TtmlElement& element, const char* name, const char* value,
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
    element.hasSpace = true;
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

/// Whether a time with that name was given.
bool hasTime(const TtmlElement& element, const char* name) noexcept {
  return (is(name, "begin") && TtmlElement::isGiven(element.begin)) ||
         (is(name, "end") && TtmlElement::isGiven(element.end)) ||
         (is(name, "dur") && TtmlElement::isGiven(element.duration));
}

}  // namespace

/// Most names have no prefix, so that they are first compared as they are. Times in other
/// namespaces count if there are none in the standard's.
TtmlElement readTtmlElement(pugi::xml_node node, const TtmlRates& rates) noexcept {
  TtmlElement element;
  pugi::xml_attribute attribute = node.first_attribute();
  for (const char* name; *(name = attribute.name()) != '\0';
       attribute = attribute.next_attribute()) {
    const char* const value = attribute.value();
    if (readAttribute(element, name, value, rates)) continue;
    const char* const local = localName(name);
    if (local != name && hasTime(element, local)) continue;
    if (local == name || !readAttribute(element, local, value, rates)) {
      element.style.set(local, value);
    }
  }
  return element;
}

}  // namespace kssubtitle::importing
