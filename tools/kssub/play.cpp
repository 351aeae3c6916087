// The command `play`: shows the cues in real time, as a player does.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <iostream>
#include <iterator>
#include <thread>

#include "tools/kssub/commands.h"
#include "tools/kssub/common_options.h"
#include "tools/kssub/terminal_colours.h"
#include "tools/kssub/terminal_columns.h"
#include "tools/kssub/terminal_screen.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

constexpr std::chrono::microseconds kPollInterval(1'000'000 / 60);
constexpr double kSeekStep = 5000;

/// Media time in milliseconds; a double, because high speeds exceed the range of integers.
class MediaClock {
 public:
  MediaClock(long long from, double speed) : base_(static_cast<double>(from)), speed_(speed) {}

  double now() const {
    if (isHeld_) return base_;
    const std::chrono::duration<double, std::milli> elapsed = Clock::now() - begin_;
    return base_ + elapsed.count() * speed_;
  }
  void moveTo(double time) {
    base_ = time;
    begin_ = Clock::now();
  }
  bool isHeld() const { return isHeld_; }
  void hold(bool isHeld) {
    moveTo(now());
    isHeld_ = isHeld;
  }

 private:
  using Clock = std::chrono::steady_clock;
  double base_;  // the media time at begin_
  double speed_;
  bool isHeld_ = false;
  Clock::time_point begin_ = Clock::now();
};

std::string asOneLine(const std::string& text) {
  std::string joined;
  for (const std::string& line : terminalLines(text)) {
    joined.append(joined.empty() ? "" : " | ").append(line);
  }
  return joined;
}

void printChange(long long time, const std::optional<Cue>& cue) {
  std::cout << formatTime(time) << "  " << (cue ? asOneLine(cue->text) : "nothing is shown")
            << std::endl;
}

/// Writes a line for each change until the last one.
void playInLines(MediaClock clock, SubtitleFile& file) {
  const long long duration = file.duration();
  const auto last = static_cast<double>(duration);
  std::optional<Cue> shown;
  for (double now = clock.now(); now <= last && std::cout; now = clock.now()) {
    const auto time = static_cast<long long>(now);
    std::optional<Cue> cue = file.cueAt(time);
    if (cue != shown) printChange(time, cue);
    shown = std::move(cue);
    std::this_thread::sleep_for(kPollInterval);
  }
  // An ASS script may show a cue beyond its duration.
  const std::optional<Cue> after = file.cueAt(duration + 1);
  if (shown && shown != after && std::cout) printChange(duration + 1, after);
}

/// Shows the cues on a terminal and obeys its keys.
class Player {
 public:
  Player(MediaClock clock, SubtitleFile& file) : clock_(clock), file_(file) {}

  /// Returns the signal that ended it, or 0.
  int run() {
    while (clock_.now() <= last_ && !isOver_ && std::cout) {
      screen_.show(rows());
      obey(screen_.wait(kPollInterval));
    }
    return screen_.endingSignal();
  }

 private:
  void obey(Screen::Event event) {
    switch (event) {
      case Screen::Event::kNone:
        return;
      case Screen::Event::kPause:
        return clock_.hold(!clock_.isHeld());
      case Screen::Event::kBack:
        return seek(-kSeekStep);
      case Screen::Event::kForward:
        return seek(kSeekStep);
      case Screen::Event::kSuspend:
        return suspend();
      case Screen::Event::kEnd:
        isOver_ = true;
    }
  }

  void seek(double step) { clock_.moveTo(std::clamp(clock_.now() + step, 0.0, last_)); }

  /// Media time stops as well.
  void suspend() {
    const bool wasHeld = clock_.isHeld();
    clock_.hold(true);
    screen_.suspend();
    clock_.hold(wasHeld);
  }

  /// The cues, centred at the bottom, and the clock below.
  std::vector<std::string> rows() {
    const auto [columns, height] = screen_.size();
    const auto time = static_cast<long long>(clock_.now());
    const std::optional<Cue> cue = file_.cueAt(time);
    std::vector<std::string> text = cue ? centred(cue->text, columns) : std::vector<std::string>();
    const std::size_t room = height - 1;
    text.resize(std::min(text.size(), room));
    const std::size_t below = text.size() + 1 < room ? 1 : 0;
    std::vector<std::string> rows(room - text.size() - below);
    std::ranges::move(text, std::back_inserter(rows));
    rows.resize(room);
    rows.push_back(statusLine(time, columns));
    return rows;
  }

  static std::vector<std::string> centred(const std::string& text, std::size_t columns) {
    std::vector<std::string> rows;
    for (const std::string& line : terminalLines(text)) {
      for (const std::string& part : wrapped(line, columns)) {
        rows.push_back(std::string((columns - std::min(columns, columnsOf(part))) / 2, ' ') + part);
      }
    }
    return rows;
  }

  /// "0:01:12 / 0:14:40", with the keys if there is room.
  std::string statusLine(long long time, std::size_t columns) const {
    constexpr std::string_view kKeys = "space pauses, arrows seek, q quits";
    std::string line = clockTime(time) + " / " + clockTime(file_.duration());
    if (clock_.isHeld()) line += "  paused";
    if (line.size() + 2 + kKeys.size() < columns) {
      line.append(columns - 1 - kKeys.size() - line.size(), ' ').append(kKeys);
    }
    return coloured(line.substr(0, columns), Colour::kDim, STDOUT_FILENO);
  }

  static std::string clockTime(long long time) {
    const std::string text = formatTime(time);
    return text.substr(0, text.find('.'));
  }

  MediaClock clock_;
  SubtitleFile& file_;
  const double last_ = static_cast<double>(file_.duration());
  bool isOver_ = false;
  Screen screen_;
};

class Play : public Command {
 public:
  Introduction introduction() const override {
    return {"play", "Show the cues in real time", "kssub play film.ass --from 10:00 --speed 2\n"};
  }

  void addOptions(CLI::App& app) override {
    addFile(app, request_);
    const auto setFrom = [this](const std::string& text) { from_ = requireTime(text); };
    app.add_option_function<std::string>("--from", setFrom, "Start at this time")
        ->type_name("TIME")
        ->default_str("0");
    app.add_option_function<double>("--speed", requirePositive("--speed", speed_),
                                    "Play this many times as fast")
        ->type_name("NUMBER")
        ->default_str("1");
    explainTimes(app);
  }

  int run() override {
    const std::unique_ptr<SubtitleFile> file = openSubtitles(request_);
    if (from_ >= file->duration()) {
      std::cerr << "kssub: " << terminalText(request_.path)
                << ": nothing left to play, the duration is " << formatTime(file->duration())
                << '\n';
      return kSuccess;
    }
    const MediaClock clock(from_, speed_);
    if (isatty(STDOUT_FILENO) == 0) {
      playInLines(clock, *file);
    } else if (const int signal = Player(clock, *file).run(); signal != 0) {
      std::raise(signal);
    }
    return kSuccess;
  }

 private:
  FileRequest request_;
  long long from_ = 0;
  double speed_ = 1;
};

}  // namespace

std::unique_ptr<Command> makePlay() { return std::make_unique<Play>(); }

}  // namespace kssub
