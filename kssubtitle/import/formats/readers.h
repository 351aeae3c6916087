// The readers of all formats; each stands in a source of its own.
#pragma once

#include <string_view>

#include "kssubtitle/import/formats/formats.h"

namespace kssubtitle::importing {

/// Advanced SubStation Alpha and SubStation Alpha, in all their versions.
Likelihood likelihoodOfAss(std::string_view text);
void readAss(const FormatInput& input, CueSink& sink);

/// SubRip.
Likelihood likelihoodOfSubRip(std::string_view text);
void readSubRip(const FormatInput& input, CueSink& sink);

}  // namespace kssubtitle::importing
