// A subtitle file as the import library reads it.
#include <algorithm>

#include "tools/kssub/open_parser.h"
#include "tools/kssub/report_text.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

class ImportedFile : public SubtitleFile {
 public:
  explicit ImportedFile(const FileRequest& request) : parser_(openedParser(request)) {}

  long long duration() override { return parser_.DurationTime(); }

  std::optional<Cue> cueAt(long long time) override {
    const SUBTITLE_ST answer = parser_.GetSubTitle(time);
    if (answer.text.isEmpty()) return std::nullopt;
    return Cue{answer.start, answer.end, answer.text.getData() + 1};
  }

  Listing list(Order order) override {
    std::vector<ksImportCue> cues(parser_.cues().begin(), parser_.cues().end());
    if (order == Order::kAsInFile) std::ranges::sort(cues, {}, &ksImportCue::index);
    Listing listing{{}, summaryOf(parser_.report())};
    if (parser_.report().languages().size() > 1) {
      listing.summary += "; languages: " + terminalText(languagesIn(parser_.report(), ", "));
    }
    for (const ksImportCue& cue : cues) {
      listing.cues.push_back({cue.start, cue.end, std::string(cue.text)});
    }
    return listing;
  }

  std::vector<std::string> notes(std::string_view path) const override {
    return noteLines(path, parser_.report());
  }

 private:
  ksImportParser parser_;
};

}  // namespace

std::unique_ptr<SubtitleFile> openImported(const FileRequest& request) {
  return std::make_unique<ImportedFile>(request);
}

std::unique_ptr<SubtitleFile> openSubtitles(const FileRequest& request) {
  return request.isExact ? openExact(request.path) : openImported(request);
}

}  // namespace kssub
