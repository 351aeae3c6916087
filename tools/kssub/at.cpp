// The command `at`: what is shown at given times.
#include <iostream>

#include "tools/kssub/commands.h"
#include "tools/kssub/json.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

void printCue(const Cue& cue) {
  std::cout << formatTime(cue.start) << " --> " << formatTime(cue.end) << '\n';
  for (const std::string& line : terminalLines(cue.text)) std::cout << "    " << line << '\n';
}

void printAnswer(long long time, const std::optional<Cue>& cue) {
  std::cout << formatTime(time) << ": ";
  if (cue) {
    printCue(*cue);
  } else {
    std::cout << "nothing is shown\n";
  }
}

void printObject(long long time, const std::optional<Cue>& cue) {
  std::cout << "{\"time\":" << time;
  if (cue) {
    std::cout << ",\"start\":" << cue->start << ",\"end\":" << cue->end
              << ",\"text\":" << jsonString(cue->text) << "}\n";
  } else {
    std::cout << ",\"start\":null,\"end\":null,\"text\":null}\n";
  }
}

}  // namespace

void at(const FileRequest& request, const std::vector<long long>& times, Output output) {
  const std::unique_ptr<SubtitleFile> file = openSubtitles(request);
  const bool isJson = output == Output::kJson;
  if (!isJson) std::cout << "duration: " << formatTime(file->duration()) << '\n';
  for (const long long time : times) {
    (isJson ? printObject : printAnswer)(time, file->cueAt(time));
  }
}

}  // namespace kssub
