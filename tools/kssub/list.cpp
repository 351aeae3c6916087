// The command `list`: every cue of a file.
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <span>

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

}  // namespace

void list(const FileRequest& request, Output output, bool withNotes) {
  const std::unique_ptr<SubtitleFile> file = openSubtitles(request);
  if (output == Output::kJson) {
    printObjects(file->list(Order::kAsInFile).cues);
  } else {
    const Listing listing = file->list(Order::kByTime);
    printTable(listing.cues);
    printSummary(listing.cues, listing.summary);
  }
  if (!withNotes) return;
  for (const std::string& note : file->notes(request.path)) std::cerr << terminalText(note) << '\n';
}

}  // namespace kssub
