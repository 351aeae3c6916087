// A host in which several threads query one open parser, each about a part of the film: prints how
// long each file is and how often what it shows changes.
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

/// When what is shown starts and ends; both are -1 if nothing is shown.
Span shownAt(ksImportParser& parser, long long time) {
  const SUBTITLE_ST shown = parser.GetSubTitle(time);
  return {shown.start, shown.end};
}

/// How many of the frames from `first` to `end`, exclusive, differ from the frame before.
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

/// Queries change nothing, so threads may share a parser while none opens a file.
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
