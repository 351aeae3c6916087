// The table of formats.
#pragma once

#include <span>
#include <string_view>

#include "kssubtitle/import/formats/common/format.h"

namespace kssubtitle::importing {

// Each is defined in the source of its name.
extern const Format kAss;         ///< Advanced SubStation Alpha and SubStation Alpha.
extern const Format kLrc;         ///< Lyrics.
extern const Format kMicroDvd;    ///< MicroDVD.
extern const Format kMpl2;        ///< MPL2.
extern const Format kMpsub;       ///< MPsub.
extern const Format kSami;        ///< SAMI.
extern const Format kSbv;         ///< SBV: SubViewer 2 with three digits after the point of a time.
extern const Format kSubRip;      ///< SubRip.
extern const Format kSubViewer;   ///< SubViewer 2.
extern const Format kSubViewer1;  ///< SubViewer 1.
extern const Format kTmPlayer;    ///< TMPlayer and VPlayer.
extern const Format kTtml;        ///< TTML.
extern const Format kWebVtt;      ///< WebVTT.

/// Every format, in the order in which they are tried.
std::span<const Format* const> formats() noexcept;
/// The format of that name, in any case; null if there is none.
const Format* formatNamed(std::string_view name) noexcept;

}  // namespace kssubtitle::importing
