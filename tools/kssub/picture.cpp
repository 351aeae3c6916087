// The command `picture`: subpictures of a VobSub index as PNG files.
#include <sys/resource.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "tools/kssub/command_line.h"
#include "tools/kssub/commands.h"
#include "tools/kssub/png_file.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"
#include "tools/kssub/vobsub_file.h"

namespace kssub {
namespace {

using Entry = VobSubFile::Entry;

/// A line on standard error that is drawn over and over, if that is a terminal.
class ProgressBar {
 public:
  explicit ProgressBar(std::size_t total) : total_(total) {}
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar() { clear(); }

  void draw(std::size_t done) const {
    if (!isTerminal_) return;
    const std::size_t filled = kWidth * done / total_;
    std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
              << done << '/' << total_ << std::flush;
  }
  void clear() const {
    if (isTerminal_) std::cerr << "\r\033[K" << std::flush;
  }

 private:
  static constexpr std::size_t kWidth = 40;
  std::size_t total_;
  bool isTerminal_ = isatty(STDERR_FILENO) != 0;
};

/// "0001_00-01-47.250.png" for the first entry.
std::string fileName(std::size_t number, const Entry& entry) {
  constexpr std::size_t kNumberWidth = 4;
  constexpr std::size_t kTimeWidth = 12;
  const auto padded = [](const std::string& digits, std::size_t width) {
    return std::string(width - std::min(width, digits.size()), '0') + digits;
  };
  std::string time = padded(formatTime(entry.startTime), kTimeWidth);
  std::ranges::replace(time, ':', '-');
  return padded(std::to_string(number), kNumberWidth) + "_" + time + ".png";
}

std::string failureOf(const std::string& index, const Entry& entry, const BrokenUnit& reason) {
  return terminalText(index) + ": the picture at " + formatTime(entry.startTime) +
         " is broken: " + reason.what();
}

void printPicture(const std::string& path, const Entry& entry, const Subpicture& picture) {
  std::cout << terminalText(path) << ": " << picture.image.width << " x " << picture.image.height
            << " pixels at " << picture.left << ',' << picture.top << ", shown from "
            << formatTime(entry.startTime + picture.startDelay);
  if (picture.stopDelay) std::cout << " to " << formatTime(entry.startTime + *picture.stopDelay);
  std::cout << std::endl;
}

void writePicture(const std::string& path, const Entry& entry, const Subpicture& picture) {
  writePng(path, picture.image);
  printPicture(path, entry, picture);
}

/// The library leaves a stream of the ".sub" file open for each unit that it fetches, and an index
/// may have more entries than a process commonly may open files. If the limit cannot be raised far
/// enough, the fetch that meets it reports that.
void raiseOpenFileLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

/// Writes the pictures that can be decoded and reports the others.
class Export {
 public:
  Export(const std::string& index, const std::string& directory)
      : index_(index), file_(index), directory_(directory), bar_(file_.entries().size()) {}

  void run() {
    if (file_.entries().empty()) {
      throw std::runtime_error(terminalText(index_) + ": no entries");
    }
    makeDirectory();
    raiseOpenFileLimit();
    for (const Entry& entry : file_.entries()) writeNext(entry);
    if (broken_ > 0) {
      throw std::runtime_error(std::to_string(broken_) + " of " + std::to_string(done_) +
                               " pictures are broken");
    }
  }

 private:
  void makeDirectory() const {
    std::error_code error;
    std::filesystem::create_directories(directory_, error);
    if (error) {
      throw std::runtime_error(terminalText(directory_.c_str()) +
                               ": cannot create: " + error.message());
    }
  }

  void writeNext(const Entry& entry) {
    bar_.draw(done_++);
    try {
      const Subpicture picture = decodeSubpicture(file_.unitOf(entry), file_.palette());
      bar_.clear();
      writePicture((directory_ / fileName(done_, entry)).string(), entry, picture);
    } catch (const BrokenUnit& reason) {
      bar_.clear();
      std::cerr << "kssub: " << failureOf(index_, entry, reason) << '\n';
      ++broken_;
    }
  }

  std::string index_;
  VobSubFile file_;
  std::filesystem::path directory_;
  ProgressBar bar_;
  std::size_t done_ = 0;
  std::size_t broken_ = 0;
};

/// Writes what is shown near `time`.
void writePictureNear(const std::string& index, long long time, const std::string& output) {
  VobSubFile file(index);
  const std::optional<Entry> entry = file.entryNear(time);
  if (!entry) {
    throw std::runtime_error(terminalText(index) + ": no picture is shown near " +
                             formatTime(time));
  }
  try {
    writePicture(output, *entry, decodeSubpicture(file.unitNear(time), file.palette()));
  } catch (const BrokenUnit& reason) {
    throw std::runtime_error(failureOf(index, *entry, reason));
  }
}

class Picture : public Command {
 public:
  Introduction introduction() const override {
    return {"picture", "Write what a VobSub index shows near a time as a PNG file",
            "kssub picture film.idx 1:47.25 shown.png\nkssub picture film.idx --all pictures\n"};
  }

  void addOptions(CLI::App& app) override {
    app.add_option("INDEX", index_, "A .idx file with its .sub file beside it")
        ->required()
        ->type_name("");
    const auto setTime = [this](const std::string& text) { time_ = requireTime(text); };
    CLI::Option* time =
        app.add_option_function<std::string>("TIME", setTime, "Time to ask for")->type_name("");
    app.add_option("OUT.png", output_, "The PNG file to write")->type_name("");
    app.add_option("--all", directory_, "Write the picture of every entry into this directory")
        ->type_name("DIR")
        ->excludes(time);
    app.callback([this] {
      if (directory_.empty() && output_.empty()) {
        throw CLI::RequiredError("TIME and OUT.png, or --all DIR,");
      }
    });
    explainTimes(app);
  }

  int run() override {
    if (directory_.empty()) {
      writePictureNear(index_, time_, output_);
    } else {
      Export(index_, directory_).run();
    }
    return kSuccess;
  }

 private:
  std::string index_;
  long long time_ = 0;
  std::string output_;
  std::string directory_;
};

}  // namespace

std::unique_ptr<Command> makePicture() { return std::make_unique<Picture>(); }

}  // namespace kssub
