// Time expressions of TTML (TTML2, section 12.3.1).
#pragma once

#include <pugixml.hpp>
#include <string_view>

namespace kssubtitle::importing {

/// The units of times, per second.
struct TtmlRates {
  double frames = 30;
  double subFrames = 1;  ///< Per frame.
  double ticks = 1;
};

/// The rates that the root element of a document gives; `frameRate` if it gives none and that is
/// usable.
TtmlRates ttmlRatesOf(pugi::xml_node root, double frameRate) noexcept;

/// The milliseconds, not rounded, of "h:m:s" with a fraction or frames after it, of "m:s", of "s",
/// or of a number with one of the units h, m, s, ms, f and t; negative if `text` is not one of
/// these. Sets `isRepaired` if the standard does not have the form.
double ttmlTime(std::string_view text, const TtmlRates& rates, bool& isRepaired) noexcept;

}  // namespace kssubtitle::importing
