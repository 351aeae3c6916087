// The command `at`: what is shown at given times.
#include <CLI/CLI.hpp>
#include <iostream>

#include "tools/kssub/command_line.h"
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

class At : public Command {
 public:
  Introduction introduction() const override {
    return {"at", "Print the duration and what is shown at each time",
            "kssub at film.srt 0:42 1:02:03.456\n"};
  }

  void addOptions(CLI::App& app) override {
    addFile(app, request_);
    const auto addTimes = [this](const std::vector<std::string>& texts) {
      for (const std::string& text : texts) times_.push_back(requireTime(text));
    };
    app.add_option_function<std::vector<std::string>>("TIME", addTimes, "Times to ask for")
        ->required()
        ->type_name("");
    app.add_flag("--json", asJson_, "Print one JSON object a line");
    explainTimes(app);
  }

  int run() override {
    const std::unique_ptr<SubtitleFile> file = openSubtitles(request_);
    if (!asJson_) std::cout << "duration: " << formatTime(file->duration()) << '\n';
    for (const long long time : times_) {
      (asJson_ ? printObject : printAnswer)(time, file->cueAt(time));
    }
    return kSuccess;
  }

 private:
  FileRequest request_;
  std::vector<long long> times_;
  bool asJson_ = false;
};

}  // namespace

std::unique_ptr<Command> makeAt() { return std::make_unique<At>(); }

}  // namespace kssub
