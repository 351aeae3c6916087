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

/// Whether `extensions` names that of `path`.
bool hasExtension(std::string_view path, std::string_view extensions) noexcept {
  const std::size_t dot = path.rfind('.');
  if (dot == path.npos) return false;
  const std::string_view extension = path.substr(dot + 1);
  while (!extensions.empty()) {
    const std::size_t end = std::min(extensions.find(' '), extensions.size());
    if (equalNoCase(extensions.substr(0, end), extension)) return true;
    extensions.remove_prefix(std::min(end + 1, extensions.size()));
  }
  return false;
}

struct Match {
  const Format* format = nullptr;
  Likelihood likelihood = Likelihood::kNone;
};

Match mostLikely(std::string_view text, std::string_view path) noexcept {
  Match best;
  int bestRank = 1;
  for (const Format* const format : kFormats) {
    const Likelihood likelihood = format->likelihood(text);
    if (likelihood == Likelihood::kNone) continue;
    const int rank =
        2 * static_cast<int>(likelihood) + (hasExtension(path, format->info.extensions) ? 1 : 0);
    if (rank > bestRank) {
      best = {format, likelihood};
      bestRank = rank;
    }
  }
  return best;
}

}  // namespace

std::span<const Format* const> formats() noexcept { return kFormats; }

const Format* formatNamed(std::string_view name) noexcept {
  const auto found = std::ranges::find_if(
      kFormats, [&](const Format* format) { return equalNoCase(format->info.name, name); });
  return found == kFormats.end() ? nullptr : *found;
}

const Format* recognise(std::string_view text, std::string_view path) noexcept {
  constexpr std::size_t kUsuallyEnough = 4096;
  const Match first = mostLikely(text.substr(0, kUsuallyEnough), path);
  const bool isClear = first.likelihood >= Likelihood::kLikely || text.size() <= kUsuallyEnough;
  return isClear ? first.format : mostLikely(text, path).format;
}

const Format* formatLackingSignature(std::string_view text, std::string_view path,
                                     const Format* recognised) noexcept {
  const auto found = std::ranges::find_if(kFormats, [&](const Format* format) {
    return format != recognised && format->lacksSignature != nullptr &&
           hasExtension(path, format->info.extensions) && format->lacksSignature(text);
  });
  return found == kFormats.end() ? nullptr : *found;
}

}  // namespace kssubtitle::importing

std::span<const ksImportFormat* const> ksImportFormats() noexcept {
  return kssubtitle::importing::kFormatsForHosts;
}
