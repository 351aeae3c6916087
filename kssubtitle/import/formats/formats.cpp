// The table of the formats that are known: a new one has its source beside this and a row here.
#include "kssubtitle/import/formats/formats.h"

#include <algorithm>
#include <array>
#include <string>

#include "kssubtitle/import/formats/readers.h"
#include "kssubtitle/import/ksImportFormats.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

constexpr std::string_view kWebVttExtensions = "vtt webvtt";

constexpr Format kFormats[] = {
    {"ass", "ass ssa", likelihoodOfAss, readAss},
    {"microdvd", "sub txt", likelihoodOfMicroDvd, readMicroDvd, kUpToTheNext},
    {"mpl2", "txt mpl", likelihoodOfMpl2, readMpl2, kUpToTheNext},
    {"tmplayer", "txt sub", likelihoodOfTmPlayer, readTmPlayer, 10000},
    {"subviewer", "sub", likelihoodOfSubViewer, readSubViewer},
    {"sbv", "sbv", likelihoodOfSbv, readSubViewer},
    {"lrc", "lrc", likelihoodOfLrc, readLrc, kUpToTheNext},
    {"mpsub", "sub", likelihoodOfMpsub, readMpsub},
    {"subviewer1", "sub", likelihoodOfSubViewer1, readSubViewer1, kUpToTheNext},
    {"sami", "smi sami", likelihoodOfSami, readSami},
    {"webvtt", kWebVttExtensions, likelihoodOfWebVtt, readWebVtt, 0, true},
    {"subrip", "srt", likelihoodOfSubRip, readSubRip},
    {"ttml", "ttml dfxp itt xml", likelihoodOfTtml, readTtml, kUpToTheNext},
};

constexpr auto kFormatsForHosts = [] {
  std::array<ksImportFormat, std::size(kFormats)> formats;
  std::ranges::transform(kFormats, formats.begin(), [](const Format& format) {
    return ksImportFormat{format.name, format.extensions};
  });
  return formats;
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
  for (const Format& format : kFormats) {
    const Likelihood likelihood = format.likelihood(text);
    if (likelihood == Likelihood::kNone) continue;
    const int rank =
        2 * static_cast<int>(likelihood) + (hasExtension(path, format.extensions) ? 1 : 0);
    if (rank > bestRank) {
      best = {&format, likelihood};
      bestRank = rank;
    }
  }
  return best;
}

}  // namespace

std::span<const Format> formats() noexcept { return kFormats; }

const Format* formatNamed(std::string_view name) noexcept {
  const auto* const found =
      std::find_if(std::begin(kFormats), std::end(kFormats),
                   [&](const Format& format) { return equalNoCase(format.name, name); });
  return found == std::end(kFormats) ? nullptr : found;
}

const Format* recognise(std::string_view text, std::string_view path) noexcept {
  constexpr std::size_t kUsuallyEnough = 4096;
  const Match first = mostLikely(text.substr(0, kUsuallyEnough), path);
  const bool isClear = first.likelihood >= Likelihood::kLikely || text.size() <= kUsuallyEnough;
  return isClear ? first.format : mostLikely(text, path).format;
}

bool isWebVttWithoutSignature(std::string_view text, std::string_view path) noexcept {
  return hasExtension(path, kWebVttExtensions) && hasWebVttTimesAlone(text);
}

}  // namespace kssubtitle::importing

std::span<const ksImportFormat> ksImportFormats() noexcept {
  return kssubtitle::importing::kFormatsForHosts;
}
