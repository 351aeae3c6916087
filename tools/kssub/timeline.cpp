// The command `timeline`: draws when the subtitles of a film are shown.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tools/kssub/commands.h"
#include "tools/kssub/common_options.h"
#include "tools/kssub/open_parser.h"
#include "tools/kssub/open_pictures.h"
#include "tools/kssub/output_file.h"
#include "tools/kssub/reading_speed.h"
#include "tools/kssub/report_text.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/timeline_drawing.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

std::string fileName(const std::string& path) {
  return terminalText(path.substr(path.rfind('/') + 1));
}

std::string spanOf(long long start, long long end) {
  return formatTime(start) + " \u2013 " + formatTime(end);
}

Bar barOf(const ksImportCue& cue) {
  const double speed = charactersPerSecond(cue);
  const auto characters = static_cast<std::size_t>(std::ceil(speed));
  std::string hint = spanOf(cue.start, cue.end) + ", " + counted(characters, "character") +
                     " per second\n" + terminalText(cue.text);
  return {cue.start, cue.end, speed, std::move(hint)};
}

/// Notes refer to lines of the file; each belongs to the last of `shown` at or above its line.
template <typename Shown>
std::vector<NoteMark> marksOf(const ksImportReport& report, std::span<const Shown> shown) {
  std::map<int, long long> startOfLine;
  for (const Shown& one : shown) startOfLine.try_emplace(one.line, one.start);
  std::vector<NoteMark> marks;
  for (const ksImportNote& note : report.notes()) {
    if (note.line == 0 || startOfLine.empty()) continue;
    auto place = startOfLine.upper_bound(note.line);
    if (place != startOfLine.begin()) --place;
    marks.push_back({place->second, "line " + std::to_string(note.line) + ": " +
                                        std::string(ksImportSentence(note.problem))});
  }
  return marks;
}

Track trackOfCues(const ksImportParser& parser) {
  Track track;
  std::ranges::transform(parser.cues(), std::back_inserter(track.bars), barOf);
  track.marks = marksOf(parser.report(), parser.cues());
  track.summary = counted(track.bars.size(), "cue") + ", " + summaryOf(parser.report());
  return track;
}

/// A picture ends where the next one starts, at the latest.
Track trackOfPictures(const ksImportPictures& pictures) {
  Track track;
  const std::span<const ksImportPictureEntry> entries = pictures.entries();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const long long next = i + 1 < entries.size() ? entries[i + 1].start : entries[i].end;
    const long long end = std::min(entries[i].end, next);
    track.bars.push_back({entries[i].start, end, std::nullopt, spanOf(entries[i].start, end)});
  }
  track.marks = marksOf(pictures.report(), entries);
  track.summary = counted(entries.size(), "picture") + ", " + summaryOf(pictures.report());
  return track;
}

Track trackOf(const FileRequest& request) {
  Track track;
  try {
    track = trackOfCues(openedParser(request));
  } catch (const PicturesError&) {
    if (request.path == "-") throw;
    track = trackOfPictures(openPictures(request.path, request.options, std::nullopt));
  }
  track.name = fileName(nameOf(request));
  return track;
}

class Timeline : public Command {
 public:
  Introduction introduction() const override {
    return {"timeline",
            "Draw when cues are shown and how fast they must be read, or when pictures are shown",
            "kssub timeline film.srt film.svg\nkssub timeline film.en.srt film.fr.srt both.png\n"};
  }

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", paths_,
                   "Subtitle files, which are drawn below one another, and last the .svg or "
                   ".png file to write")
        ->required()
        ->expected(2, CLI::detail::expected_max_vector_size)
        ->type_name("");
    addReadingOptions(app, options_);
    app.callback([this] {
      output_ = paths_.back();
      paths_.pop_back();
      if (!output_.ends_with(".svg") && !output_.ends_with(".png")) {
        throw CLI::ValidationError(kssub::quoted(output_) + " is not named .svg or .png");
      }
    });
  }

  int run() override {
    std::vector<Track> tracks;
    for (const std::string& path : paths_) tracks.push_back(trackOf({path, false, options_}));
    const Drawing drawing = drawTimeline(tracks);
    OutputFile file(output_);
    file.write(output_.ends_with(".svg") ? svgOf(drawing) : pngOf(drawing));
    file.finish();
    return kSuccess;
  }

 private:
  std::vector<std::string> paths_;
  std::string output_;
  ksImportOptions options_;
};

}  // namespace

std::unique_ptr<Command> makeTimeline() { return std::make_unique<Timeline>(); }

}  // namespace kssub
