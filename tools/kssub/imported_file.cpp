// A subtitle file as the import library reads it.
#include <algorithm>

#include "tools/kssub/reading.h"

namespace kssub {
namespace {

std::string nameOf(ksImportLineEnds ends) {
  switch (ends) {
    case ksImportLineEnds::kLf:
      return "LF";
    case ksImportLineEnds::kCrLf:
      return "CR LF";
    case ksImportLineEnds::kCr:
      return "CR";
    case ksImportLineEnds::kCrCrLf:
      return "CR CR LF";
    case ksImportLineEnds::kMixed:
      return "mixed line ends";
    case ksImportLineEnds::kNone:
      break;
  }
  return "no line ends";
}

/// How sure the encoding is, where it is not plain from the text; with a blank in front.
std::string doubtOf(ksImportEncodingSource source) {
  switch (source) {
    case ksImportEncodingSource::kDetected:
      return " (detected)";
    case ksImportEncodingSource::kFallback:
      return " (assumed)";
    case ksImportEncodingSource::kGiven:
      return " (given)";
    default:
      return "";
  }
}

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
    Listing listing{{}, summary()};
    for (const ksImportCue& cue : cues) {
      listing.cues.push_back({cue.start, cue.end, std::string(cue.text)});
    }
    return listing;
  }

  std::vector<std::string> notes(std::string_view path) const override {
    std::vector<std::string> lines;
    for (const ksImportNote& note : parser_.report().notes()) {
      std::string place(path);
      if (note.line > 0) place += ':' + std::to_string(note.line);
      lines.push_back(place + ": " + std::string(describe(note)));
    }
    const std::size_t more = countNotes() - lines.size();
    if (more > 0) {
      lines.push_back(std::string(path) + ": " + std::to_string(more) + " more are not shown.");
    }
    return lines;
  }

 private:
  std::string summary() const {
    const ksImportReport& report = parser_.report();
    std::string text = std::string(report.format()) + ", " + std::string(report.encoding()) +
                       doubtOf(report.encodingSource()) + ", " + nameOf(report.lineEnds());
    const std::size_t notes = countNotes();
    if (notes > 0) text += "; " + std::to_string(notes) + (notes == 1 ? " note" : " notes");
    return text;
  }

  std::size_t countNotes() const {
    std::size_t count = 0;
    for (std::size_t i = 0; i < kImportProblems; ++i) {
      count += parser_.report().count(static_cast<ksImportProblem>(i));
    }
    return count;
  }

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
