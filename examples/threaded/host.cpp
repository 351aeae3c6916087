// A host with a thread for each of its files: prints how long each runs and how often what is shown
// changes.
#include <kssubtitle/kssubtitle.h>

#include <cstddef>
#include <iostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr long long kFrameTime = 40;

struct Report {
  bool isOpen = false;
  long long duration = 0;
  int changes = 0;
};

using CueTimes = std::pair<long long, long long>;

/// Of either width; both times are -1 when nothing is shown.
CueTimes cueAt(ksSubtitleManager& subtitles, long long time) {
  const SUBTITLE_ST cue = subtitles.GetSubTitle(time);
  if (cue.start >= 0) return {cue.start, cue.end};
  const SUBTITLE_ST_U wideCue = subtitles.GetSubTitleU(time);
  return {wideCue.start, wideCue.end};
}

int countChanges(ksSubtitleManager& subtitles, long long duration) {
  int changes = 0;
  CueTimes shown(-1, -1);
  for (long long time = 0; time <= duration; time += kFrameTime) {
    const CueTimes cue = cueAt(subtitles, time);
    if (cue != shown) ++changes;
    shown = cue;
  }
  return changes;
}

/// Has a manager of its own: threads may share none, but separate ones have nothing in common.
Report reportOn(const std::string& path) {
  ksSubtitleManager subtitles;
  if (!subtitles.Open(path.c_str())) return {};
  const long long duration = subtitles.DurationTime();
  return {true, duration, countChanges(subtitles, duration)};
}

std::vector<Report> reportOnAll(const std::vector<std::string>& paths) {
  std::vector<Report> reports(paths.size());
  std::vector<std::jthread> threads;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    threads.emplace_back([&report = reports[i], &path = paths[i]] { report = reportOn(path); });
  }
  threads.clear();  // joins them, before the reports are handed out
  return reports;
}

/// False if the file could not be opened.
bool print(const std::string& path, const Report& report) {
  if (report.isOpen) {
    std::cout << path << ": " << report.duration << " ms, " << report.changes << " changes\n";
  } else {
    std::cerr << path << ": cannot open\n";
  }
  return report.isOpen;
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> paths(arguments + 1, arguments + count);
  const std::vector<Report> reports = reportOnAll(paths);
  bool areAllOpen = true;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    if (!print(paths[i], reports[i])) areAllOpen = false;
  }
  return areAllOpen ? 0 : 1;
}
