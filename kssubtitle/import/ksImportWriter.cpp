// Selects the cues that can be written, and the writer.
#include "kssubtitle/import/ksImportWriter.h"

#include <algorithm>
#include <vector>

#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/ksImportFormats.h"
#include "kssubtitle/import/writers/writers.h"

using namespace kssubtitle::importing;

namespace {

/// The greatest time that readers accept, 999999999999:59:59.990, in milliseconds.
constexpr long long kLatest = 3'599'999'999'999'999'990;

constexpr ksImportFormat kText = {
    .name = "text", .extensions = "txt", .target = ksImportTarget::kText};

constexpr const ksImportFormat* kWritten[] = {&kSubRip.info, &kWebVtt.info, &kAss.info, &kText};

/// The cues to write, in the order in which they are written.
std::vector<OutgoingCue> outgoing(std::span<const ksImportCue> cues, ksImportMarkup markup) {
  std::vector<OutgoingCue> all;
  all.reserve(cues.size());
  for (const ksImportCue& cue : cues) {
    const long long start = std::max(cue.start, 0LL);
    const long long end = std::min(cue.end, kLatest);
    if (end <= start || cue.isDuplicate) continue;
    const bool isKey = cue.alignment >= 1 && cue.alignment <= 9;
    OutgoingCue next{start, end, isKey ? cue.alignment : 2, styledText(cue.text, markup)};
    if (!next.text.characters.empty()) all.push_back(std::move(next));
  }
  std::ranges::stable_sort(all, {}, &OutgoingCue::start);
  return all;
}

}  // namespace

std::string ksImportWrite(std::span<const ksImportCue> cues, ksImportTarget target,
                          ksImportMarkup markup, ksImportColors colors) {
  const std::vector<OutgoingCue> all = outgoing(cues, markup);
  switch (target) {
    case ksImportTarget::kSubRip:
      return writeSubRip(all);
    case ksImportTarget::kWebVtt:
      return writeWebVtt(all, colors);
    case ksImportTarget::kAss:
      return writeAss(all);
    case ksImportTarget::kText:
      break;
  }
  return writeText(all);
}

std::span<const ksImportFormat* const> ksImportWrittenFormats() noexcept { return kWritten; }
