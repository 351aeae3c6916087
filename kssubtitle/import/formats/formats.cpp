// The table of formats: a new one has its own source beside this, and its row there is listed here.
#include "kssubtitle/import/formats/formats.h"

#include <algorithm>
#include <array>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

constexpr std::array kFormats = {
    &kAss,   &kMicroDvd,   &kMpl2, &kTmPlayer, &kSubViewer, &kSbv,  &kLrc,
    &kMpsub, &kSubViewer1, &kSami, &kWebVtt,   &kSubRip,    &kTtml,
};

constexpr auto kFormatsForHosts = [] {
  std::array<const ksImportFormat*, kFormats.size()> all{};
  std::ranges::transform(kFormats, all.begin(), [](const Format* format) { return &format->info; });
  return all;
}();

}  // namespace

std::span<const Format* const> formats() noexcept { return kFormats; }

const Format* formatNamed(std::string_view name) noexcept {
  const auto found = std::ranges::find_if(
      kFormats, [&](const Format* format) { return equalNoCase(format->info.name, name); });
  return found == kFormats.end() ? nullptr : *found;
}

}  // namespace kssubtitle::importing

std::span<const ksImportFormat* const> ksImportFormats() noexcept {
  return kssubtitle::importing::kFormatsForHosts;
}
