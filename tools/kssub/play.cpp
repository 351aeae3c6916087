// The command `play`: each cue in its time, as a player shows it.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <csignal>
#include <iostream>
#include <memory>
#include <thread>

#include "tools/kssub/command_line.h"
#include "tools/kssub/commands.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

constexpr std::chrono::microseconds kPollInterval(1'000'000 / 60);

volatile std::sig_atomic_t caughtSignal = 0;

void rememberSignal(int signal) { caughtSignal = signal; }

class Display {
 public:
  Display() = default;
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;
  virtual ~Display() = default;
  virtual void show(long long time, const std::optional<Cue>& cue) = 0;
};

/// Shows the cue alone on the terminal's alternate screen, with the cursor hidden.
class Screen : public Display {
 public:
  Screen() {
    setHandlers(rememberSignal);
    std::cout << "\033[?1049h\033[?25l\033[H\033[2J" << std::flush;
  }
  ~Screen() override {
    std::cout << "\033[?25h\033[?1049l" << std::flush;
    setHandlers(SIG_DFL);
  }
  void show(long long /*time*/, const std::optional<Cue>& cue) override {
    std::cout << "\033[H\033[2J";
    if (cue) std::cout << terminalText(cue->text) << '\n';
    std::cout << std::flush;
  }

 private:
  static void setHandlers(void (*handler)(int)) {
    for (const int signal : {SIGINT, SIGTERM}) std::signal(signal, handler);
  }
};

/// Writes one line for each change.
class Log : public Display {
 public:
  void show(long long time, const std::optional<Cue>& cue) override {
    std::cout << formatTime(time) << "  " << (cue ? inOneLine(cue->text) : "nothing is shown")
              << std::endl;
  }

 private:
  static std::string inOneLine(const std::string& text) {
    std::string joined;
    for (const std::string& line : terminalLines(text)) {
      joined.append(joined.empty() ? "" : " | ").append(line);
    }
    return joined;
  }
};

std::unique_ptr<Display> makeDisplay() {
  if (isatty(STDOUT_FILENO) != 0) return std::make_unique<Screen>();
  return std::make_unique<Log>();
}

/// Media time in milliseconds; a double, because a high speed leaves the integers.
class MediaClock {
 public:
  MediaClock(long long from, double speed) : from_(static_cast<double>(from)), speed_(speed) {}
  double now() const {
    const std::chrono::duration<double, std::milli> elapsed = Clock::now() - begin_;
    return from_ + elapsed.count() * speed_;
  }

 private:
  using Clock = std::chrono::steady_clock;
  double from_;
  double speed_;
  Clock::time_point begin_ = Clock::now();
};

void follow(const MediaClock& clock, SubtitleFile& file, Display& display) {
  const long long duration = file.duration();
  const auto last = static_cast<double>(duration);
  std::optional<Cue> shown;
  const auto goesOn = [] { return caughtSignal == 0 && std::cout.good(); };
  for (double now = clock.now(); now <= last && goesOn(); now = clock.now()) {
    const auto time = static_cast<long long>(now);
    std::optional<Cue> cue = file.cueAt(time);
    if (cue != shown) display.show(time, cue);
    shown = std::move(cue);
    std::this_thread::sleep_for(kPollInterval);
  }
  // An ASS script may go on showing a cue past its duration.
  const std::optional<Cue> after = file.cueAt(duration + 1);
  if (shown && shown != after && goesOn()) display.show(duration + 1, after);
}

class Play : public Command {
 public:
  Introduction introduction() const override {
    return {"play", "Show each cue in its time", "kssub play film.ass --from 10:00 --speed 2\n"};
  }

  void addOptions(CLI::App& app) override {
    addFile(app, request_);
    const auto setFrom = [this](const std::string& text) { from_ = requireTime(text); };
    app.add_option_function<std::string>("--from", setFrom, "Time to begin at")
        ->type_name("TIME")
        ->default_str("0");
    app.add_option_function<double>("--speed", requirePositive("--speed", speed_),
                                    "How many times as fast")
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
    {
      const std::unique_ptr<Display> display = makeDisplay();
      follow(MediaClock(from_, speed_), *file, *display);
    }
    if (caughtSignal != 0) std::raise(caughtSignal);
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
