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

/// MicroDVD.
Likelihood likelihoodOfMicroDvd(std::string_view text);
void readMicroDvd(const FormatInput& input, CueSink& sink);

/// MPL2.
Likelihood likelihoodOfMpl2(std::string_view text);
void readMpl2(const FormatInput& input, CueSink& sink);

/// TMPlayer and VPlayer.
Likelihood likelihoodOfTmPlayer(std::string_view text);
void readTmPlayer(const FormatInput& input, CueSink& sink);

/// SubViewer 2, and SBV, of which the times have three digits behind the point.
Likelihood likelihoodOfSubViewer(std::string_view text);
Likelihood likelihoodOfSbv(std::string_view text);
void readSubViewer(const FormatInput& input, CueSink& sink);

/// LRC.
Likelihood likelihoodOfLrc(std::string_view text);
void readLrc(const FormatInput& input, CueSink& sink);

/// MPsub.
Likelihood likelihoodOfMpsub(std::string_view text);
void readMpsub(const FormatInput& input, CueSink& sink);

/// SubViewer 1.
Likelihood likelihoodOfSubViewer1(std::string_view text);
void readSubViewer1(const FormatInput& input, CueSink& sink);

/// SAMI.
Likelihood likelihoodOfSami(std::string_view text);
void readSami(const FormatInput& input, CueSink& sink);

/// WebVTT.
Likelihood likelihoodOfWebVtt(std::string_view text);
/// Whether there is an arrow in `text`, and every one of them stands between two of its times.
bool hasWebVttTimesAlone(std::string_view text) noexcept;
void readWebVtt(const FormatInput& input, CueSink& sink);

/// TTML.
Likelihood likelihoodOfTtml(std::string_view text);
void readTtml(const FormatInput& input, CueSink& sink);

}  // namespace kssubtitle::importing
