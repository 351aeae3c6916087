// The command `at`: what is shown at given times.
#include <CLI/CLI.hpp>
#include <iostream>

#include "tools/kssub/commands.h"
#include "tools/kssub/common_options.h"
#include "tools/kssub/json_tsv.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

constexpr std::size_t kIndent = 4;

void printAnswer(long long time, const std::optional<Cue>& cue) {
  std::cout << formatTime(time) << ": ";
  if (cue) {
    std::cout << formatTime(cue->start) << " --> " << formatTime(cue->end) << '\n';
    for (const std::string& line : outputLines(cue->text, kIndent)) {
      std::cout << std::string(kIndent, ' ') << line << '\n';
    }
  } else {
    std::cout << "nothing is shown\n";
  }
}

std::vector<Field> recordOf(long long time, const std::optional<Cue>& cue) {
  if (!cue) return {{"time", time}, {"start", {}}, {"end", {}}, {"text", {}}};
  return {{"time", time}, {"start", cue->start}, {"end", cue->end}, {"text", cue->text}};
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
    app.add_option_function<std::vector<std::string>>("TIME", addTimes, "The times")
        ->required()
        ->type_name("");
    addOutput(app, output_);
    explainTimes(app);
  }

  int run() override {
    const std::unique_ptr<SubtitleFile> file = openSubtitles(request_);
    if (output_ == Output::kTable) {
      std::cout << "duration: " << formatTime(file->duration()) << '\n';
      for (const long long time : times_) printAnswer(time, file->cueAt(time));
    } else {
      RecordWriter writer(std::cout, output_);
      for (const long long time : times_) writer.write(recordOf(time, file->cueAt(time)));
    }
    return kSuccess;
  }

 private:
  FileRequest request_;
  std::vector<long long> times_;
  Output output_ = Output::kTable;
};

}  // namespace

std::unique_ptr<Command> makeAt() { return std::make_unique<At>(); }

}  // namespace kssub
