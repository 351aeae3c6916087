// Times as TTML has them.
#pragma once

#include <pugixml.hpp>

namespace kssubtitle::importing {

/// What times are counted in, each in a second.
struct TtmlRates {
  double frames = 30;
  double subFrames = 1;  ///< In a frame.
  double ticks = 1;
};

/// The rates that the root element of a document states; `frameRate` where it states none, if that
/// is usable.
TtmlRates ttmlRatesOf(pugi::xml_node root, double frameRate) noexcept;

/// The milliseconds, not rounded, of "h:m:s", with a fraction or frames behind it, "m:s", "s", or a
/// number and one of the units h, m, s, ms, f and t; negative if `text` is none of these. Sets
/// `isRepaired` if it is one that the standard does not have.
double ttmlTime(const char* text, const TtmlRates& rates, bool& isRepaired) noexcept;

}  // namespace kssubtitle::importing
