// The command `list`: every cue of a file, or every picture.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <optional>
#include <span>

#include "tools/kssub/commands.h"
#include "tools/kssub/common_options.h"
#include "tools/kssub/json_tsv.h"
#include "tools/kssub/list_pictures.h"
#include "tools/kssub/open_pictures.h"
#include "tools/kssub/report_text.h"
#include "tools/kssub/terminal_colours.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

using Cues = std::vector<Cue>;

/// The width of the longest time.
std::size_t timeWidth(const Cues& cues) {
  std::size_t width = 0;
  for (const Cue& cue : cues) {
    width = std::max({width, formatTime(cue.start).size(), formatTime(cue.end).size()});
  }
  return width;
}

class Table {
 public:
  explicit Table(const Cues& cues) : width_(timeWidth(cues)) {}

  void printHeader() const {
    std::cout << coloured(row("start", "end", "text"), Colour::kBold, STDOUT_FILENO) << '\n';
  }

  void print(const Cue& cue) const {
    std::vector<std::string> lines = outputLines(cue.text, 2 * (width_ + kGap.size()));
    if (lines.empty()) lines.emplace_back();
    std::cout << row(formatTime(cue.start), formatTime(cue.end), lines.front()) << '\n';
    for (const std::string& line : std::span(lines).subspan(1)) {
      std::cout << row("", "", line) << '\n';
    }
  }

 private:
  std::string row(const std::string& start, const std::string& end, const std::string& text) const {
    const auto right = [this](const std::string& time) {
      return std::string(width_ - std::min(width_, time.size()), ' ') + time;
    };
    std::string out = right(start) + kGap + right(end);
    return text.empty() ? out : out + kGap + text;
  }

  inline static const std::string kGap = "  ";
  std::size_t width_;
};

void printTable(const Cues& cues) {
  const Table table(cues);
  if (!cues.empty()) table.printHeader();
  for (const Cue& cue : cues) table.print(cue);
}

void printSummary(const Cues& cues, const std::string& summary) {
  std::cout << cues.size() << (cues.size() == 1 ? " cue" : " cues");
  if (!summary.empty()) std::cout << "; " << summary;
  std::cout << '\n';
}

void printRecords(const Cues& cues, Output output) {
  RecordWriter writer(std::cout, output);
  for (const Cue& cue : cues) {
    writer.write({{"start", cue.start}, {"end", cue.end}, {"text", cue.text}});
  }
}

class List : public Command {
 public:
  Introduction introduction() const override {
    return {"list", "Print every cue, or the times and sizes of pictures, as a table",
            "kssub list film.srt --notes\nunzip -p film.zip | kssub list - --json\n"};
  }

  void addOptions(CLI::App& app) override {
    addFile(app, request_);
    addOutput(app, output_);
    app.add_flag("--notes", withNotes_, "Print the problems of the file on standard error");
    addStream(app, stream_);
  }

  int run() override {
    try {
      listCues();
    } catch (const PicturesError&) {
      if (request_.path == "-") throw;  // pictures need two files
      listPictures({request_, stream_, output_, withNotes_});
    }
    return kSuccess;
  }

 private:
  void listCues() const {
    const std::unique_ptr<SubtitleFile> file = openSubtitles(request_);
    if (output_ == Output::kTable) {
      const Listing listing = file->list(Order::kByTime);
      printTable(listing.cues);
      printSummary(listing.cues, listing.summary);
    } else {
      printRecords(file->list(Order::kAsInFile).cues, output_);
    }
    if (withNotes_) printNotes(*file);
  }

  void printNotes(const SubtitleFile& file) const {
    for (const std::string& note : file.notes(request_.path)) {
      std::cerr << terminalText(note) << '\n';
    }
  }

  FileRequest request_;
  Output output_ = Output::kTable;
  bool withNotes_ = false;
  std::optional<int> stream_;
};

}  // namespace

std::unique_ptr<Command> makeList() { return std::make_unique<List>(); }

}  // namespace kssub
