// A host in which several threads ask one open parser at once, each about a part of the film:
// prints how long each file runs and how often what is shown changes.
#include <kssubtitle/import.h>

#include <array>
#include <cstddef>
#include <iostream>
#include <numeric>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr long long kFrameTime = 40;
constexpr std::size_t kThreads = 4;

using Span = std::pair<long long, long long>;

/// When what is shown began and will end; both are -1 when nothing is.
Span shownAt(ksImportParser& parser, long long time) {
  const SUBTITLE_ST shown = parser.GetSubTitle(time);
  return {shown.start, shown.end};
}

/// Of the frames from the `first` one up to `end`, how many show something else than the one
/// before.
int countChanges(ksImportParser& parser, long long first, long long end) {
  int changes = 0;
  Span before = shownAt(parser, (first - 1) * kFrameTime);
  for (long long frame = first; frame < end; ++frame) {
    const Span shown = shownAt(parser, frame * kFrameTime);
    if (shown != before) ++changes;
    before = shown;
  }
  return changes;
}

/// Queries change nothing, so that threads may share a parser as long as none opens a file.
int countAllChanges(ksImportParser& parser) {
  const long long frames = parser.DurationTime() / kFrameTime + 1;
  const auto part = [frames](std::size_t i) {
    return frames * static_cast<long long>(i) / static_cast<long long>(kThreads);
  };
  std::array<int, kThreads> changes{};
  std::vector<std::jthread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] { changes[i] = countChanges(parser, part(i), part(i + 1)); });
  }
  threads.clear();  // joins them
  return std::accumulate(changes.begin(), changes.end(), 0);
}

/// False if the file could not be opened.
bool reportOn(const std::string& path) {
  ksImportParser parser;
  if (!parser.Open(path.c_str())) {
    std::cerr << path << ": " << parser.report().refusalSentence() << '\n';
    return false;
  }
  std::cout << path << ": " << parser.DurationTime() << " ms, " << countAllChanges(parser)
            << " changes\n";
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  bool areAllOpen = true;
  for (int i = 1; i < count; ++i) {
    if (!reportOn(arguments[i])) areAllOpen = false;
  }
  return areAllOpen ? 0 : 1;
}
