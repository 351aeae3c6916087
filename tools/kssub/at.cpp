// The command `at`: what is shown at given times.
#include <iostream>

#include "tools/kssub/commands.h"
#include "tools/kssub/subtitle_file.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

void printCue(const Cue& cue) {
  std::cout << formatTime(cue.start) << " --> " << formatTime(cue.end) << '\n';
  for (const std::string_view line : linesOf(cue.text)) std::cout << "    " << line << '\n';
}

void printAnswer(long long time, const std::optional<Cue>& cue) {
  std::cout << formatTime(time) << ": ";
  if (cue) {
    printCue(*cue);
  } else {
    std::cout << "nothing is shown\n";
  }
}

}  // namespace

void at(const std::string& path, const std::vector<long long>& times) {
  SubtitleFile file(path);
  std::cout << "duration: " << formatTime(file.duration()) << '\n';
  for (const long long time : times) printAnswer(time, file.cueAt(time));
}

}  // namespace kssub
