// The attributes of the elements of TTML that have times.
#include "kssubtitle/import/formats/ttml/elements.h"

#include "kssubtitle/import/formats/ttml/names.h"

namespace kssubtitle::importing {
namespace {

void setTime(double& time, std::string_view value, const TtmlRates& rates,
             TtmlElement& element) noexcept {
  const double read = ttmlTime(value, rates, element.hasRepairedTime);
  if (read < 0) {
    if (value.empty() || value == "indefinite") return;
    element.hasBadTime = true;
  }
  time = read;
}

/// Reads an attribute. Returns whether it is one that is not about style.
bool readAttribute(TtmlElement& element, std::string_view name, std::string_view value,
                   const TtmlRates& rates) noexcept {
  if (name == "begin") {
    setTime(element.begin, value, rates, element);
  } else if (name == "end") {
    setTime(element.end, value, rates, element);
  } else if (name == "dur") {
    setTime(element.duration, value, rates, element);
  } else if (name == "region") {
    element.region = value;
  } else if (name == "style") {
    element.styleNames = value;
  } else if (name == "space") {
    element.hasSpace = true;
    element.keepsSpace = value == "preserve";
  } else if (name == "lang") {
    element.language = value;
  } else if (name == "timeContainer") {
    element.isSequential = value == "seq";
  } else if (name == "role") {
    element.isOwnLine = value.starts_with("x-translation") || value.starts_with("x-roman");
  } else {
    return false;
  }
  return true;
}

/// Whether a time with that name was given.
bool hasTime(const TtmlElement& element, std::string_view name) noexcept {
  return (name == "begin" && TtmlElement::isGiven(element.begin)) ||
         (name == "end" && TtmlElement::isGiven(element.end)) ||
         (name == "dur" && TtmlElement::isGiven(element.duration));
}

}  // namespace

/// Times in other namespaces count if there are none in the standard's.
TtmlElement readTtmlElement(pugi::xml_node node, const TtmlRates& rates) noexcept {
  TtmlElement element;
  for (const pugi::xml_attribute attribute : node.attributes()) {
    const std::string_view name = localName(attribute.name());
    const bool hasPrefix = name.data() != attribute.name();
    if (hasPrefix && hasTime(element, name)) continue;
    if (!readAttribute(element, name, attribute.value(), rates)) {
      element.style.set(name, attribute.value());
    }
  }
  return element;
}

}  // namespace kssubtitle::importing
