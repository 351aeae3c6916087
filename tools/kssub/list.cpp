// The command `list`: every cue of a file.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <span>

#include "tools/kssub/command_line.h"
#include "tools/kssub/commands.h"
#include "tools/kssub/json.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

using Cues = std::vector<Cue>;

void printRow(int width, std::string_view start, std::string_view end, std::string_view text) {
  std::cout << std::setw(width) << start << "  " << std::setw(width) << end;
  if (!text.empty()) std::cout << "  " << text;
  std::cout << '\n';
}

void printCue(int width, const Cue& cue) {
  std::vector<std::string> lines = terminalLines(cue.text);
  if (lines.empty()) lines.emplace_back();
  printRow(width, formatTime(cue.start), formatTime(cue.end), lines.front());
  for (const std::string& line : std::span(lines).subspan(1)) printRow(width, "", "", line);
}

int timeWidth(const Cues& cues) {
  std::size_t width = 0;
  for (const Cue& cue : cues) {
    width = std::max({width, formatTime(cue.start).size(), formatTime(cue.end).size()});
  }
  return static_cast<int>(width);
}

void printTable(const Cues& cues) {
  const int width = timeWidth(cues);
  if (!cues.empty()) printRow(width, "start", "end", "text");
  for (const Cue& cue : cues) printCue(width, cue);
}

void printSummary(const Cues& cues, const std::string& summary) {
  std::cout << cues.size() << (cues.size() == 1 ? " cue" : " cues");
  if (!summary.empty()) std::cout << "; " << summary;
  std::cout << '\n';
}

void printObjects(const Cues& cues) {
  for (const Cue& cue : cues) {
    std::cout << "{\"start\":" << cue.start << ",\"end\":" << cue.end
              << ",\"text\":" << jsonString(cue.text) << "}\n";
  }
}

class List : public Command {
 public:
  Introduction introduction() const override {
    return {"list", "Print every cue as a table",
            "kssub list film.srt --notes\nunzip -p film.zip | kssub list - --json\n"};
  }

  void addOptions(CLI::App& app) override {
    addFile(app, request_);
    app.add_flag("--json", asJson_, "Print one JSON object a line");
    app.add_flag("--notes", withNotes_, "Tell the file's problems on standard error");
  }

  int run() override {
    const std::unique_ptr<SubtitleFile> file = openSubtitles(request_);
    if (asJson_) {
      printObjects(file->list(Order::kAsInFile).cues);
    } else {
      const Listing listing = file->list(Order::kByTime);
      printTable(listing.cues);
      printSummary(listing.cues, listing.summary);
    }
    if (withNotes_) printNotes(*file);
    return kSuccess;
  }

 private:
  void printNotes(const SubtitleFile& file) const {
    for (const std::string& note : file.notes(request_.path)) {
      std::cerr << terminalText(note) << '\n';
    }
  }

  FileRequest request_;
  bool asJson_ = false;
  bool withNotes_ = false;
};

}  // namespace

std::unique_ptr<Command> makeList() { return std::make_unique<List>(); }

}  // namespace kssub
