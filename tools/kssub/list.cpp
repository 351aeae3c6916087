// The command `list`: every cue that a file's answers hold.
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <set>
#include <span>
#include <utility>

#include "kssubtitle/parsers/ass/ksAssParser.h"
#include "kssubtitle/parsers/srt/ksSrtParser.h"
#include "tools/kssub/commands.h"
#include "tools/kssub/subtitle_file.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

using Cues = std::vector<Cue>;

template <typename Record>
Cue cueOfRecord(const Record& record) {
  if constexpr (requires { record.startTime; }) {
    return makeCue(record.startTime, record.endTime, record.text);
  } else {
    return makeCue(record.start, record.end, record.text);
  }
}

template <typename Parser>
Cues recordsOf(const std::string& path) {
  Cues records;
  Parser parser;
  parser.Open(path.c_str());
  for (const auto& [key, record] : std::as_const(parser.sessions)) {
    records.push_back(cueOfRecord(record));
  }
  return records;
}

/// What the file holds; the manager tells only what is shown.
Cues readRecords(const std::string& path, const FileForm& form) {
  if (form.format == Format::kSubRip) {
    return form.isWide ? recordsOf<ksSrtParserU>(path) : recordsOf<ksSrtParser>(path);
  }
  return form.isWide ? recordsOf<ksAssParserU>(path) : recordsOf<ksAssParser>(path);
}

/// The only times at which the answer can change, in order.
std::set<long long> turningTimes(const Cues& records) {
  std::set<long long> times{0};
  for (const Cue& record : records) {
    times.insert(record.start);
    times.insert(record.end + 1);
  }
  times.erase(times.begin(), times.lower_bound(0));
  return times;
}

/// Each cue once, in the order of its first appearance.
Cues shownCues(SubtitleFile& file, const std::set<long long>& times) {
  Cues cues;
  std::set<Cue> known;
  for (const long long time : times) {
    const std::optional<Cue> cue = file.cueAt(time);
    if (cue && known.insert(*cue).second) cues.push_back(*cue);
  }
  return cues;
}

void printRow(int width, std::string_view start, std::string_view end, std::string_view text) {
  std::cout << std::setw(width) << start << "  " << std::setw(width) << end;
  if (!text.empty()) std::cout << "  " << text;
  std::cout << '\n';
}

void printCue(int width, const Cue& cue) {
  std::vector<std::string_view> lines = linesOf(cue.text);
  if (lines.empty()) lines.emplace_back();
  printRow(width, formatTime(cue.start), formatTime(cue.end), lines.front());
  for (const std::string_view line : std::span(lines).subspan(1)) printRow(width, "", "", line);
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

void printSummary(const Cues& cues, const Cues& records) {
  const std::set<Cue> shown(cues.begin(), cues.end());
  const auto hidden =
      std::ranges::count_if(records, [&](const Cue& record) { return !shown.contains(record); });
  std::cout << cues.size() << (cues.size() == 1 ? " cue" : " cues");
  if (hidden > 0) {
    std::cout << "; " << hidden << (hidden == 1 ? " record" : " records")
              << " of the file never shown (no valid times, or covered by others)";
  }
  std::cout << '\n';
}

}  // namespace

void list(const std::string& path) {
  SubtitleFile file(path);
  const Cues records = readRecords(path, file.form());
  const Cues cues = shownCues(file, turningTimes(records));
  printTable(cues);
  printSummary(cues, records);
}

}  // namespace kssub
