// The command `picture`: the pictures of a VobSub file as PNG files.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "tools/kssub/commands.h"
#include "tools/kssub/common_options.h"
#include "tools/kssub/open_pictures.h"
#include "tools/kssub/picture_png.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

using Entry = ksImportPictureEntry;

/// A progress bar on standard error, if that is a terminal.
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
  std::string time = padded(formatTime(entry.start), kTimeWidth);
  std::ranges::replace(time, ':', '-');
  return padded(std::to_string(number), kNumberWidth) + "_" + time + ".png";
}

std::string failureOf(const std::string& path, const Entry& entry) {
  const std::string reason(entry.damage.empty() ? "The file has changed." : entry.damage);
  return terminalText(path) + ": no picture at " + formatTime(entry.start) + ": " + reason;
}

void printPicture(const std::string& path, const ksImportPicture& picture) {
  std::cout << terminalText(path) << ": " << picture.width << " x " << picture.height
            << " pixels at " << picture.rectangle.left << ',' << picture.rectangle.top
            << ", shown from " << formatTime(picture.start) << " to " << formatTime(picture.end)
            << (picture.isForced ? ", forced" : "") << std::endl;
}

void writePicture(const std::string& path, const ksImportPicture& picture) {
  writePng(path, picture);
  printPicture(path, picture);
}

/// Writes all pictures that can be read and reports the others.
class Export {
 public:
  Export(const ksImportPictures& pictures, std::string path, const std::string& directory)
      : pictures_(pictures),
        path_(std::move(path)),
        directory_(directory),
        bar_(pictures.entries().size()) {}

  void run() {
    const std::size_t count = pictures_.entries().size();
    if (count == 0) throw std::runtime_error(terminalText(path_) + ": no pictures");
    makeDirectory();
    for (std::size_t i = 0; i < count; ++i) write(i);
    if (damaged_ > 0) {
      throw std::runtime_error(std::to_string(damaged_) + " of " + std::to_string(count) +
                               " pictures are damaged");
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

  void write(std::size_t i) {
    const Entry& entry = pictures_.entries()[i];
    bar_.draw(i);
    const auto picture = pictures_.Picture(i);
    bar_.clear();
    if (picture) {
      writePicture((directory_ / fileName(i + 1, entry)).string(), *picture);
    } else {
      std::cerr << "kssub: " << failureOf(path_, entry) << '\n';
      ++damaged_;
    }
  }

  const ksImportPictures& pictures_;
  std::string path_;
  std::filesystem::path directory_;
  ProgressBar bar_;
  std::size_t damaged_ = 0;
};

/// Why there is no picture at `time`.
std::string reasonOf(const ksImportPictures& pictures, const std::string& path, long long time) {
  const Entry* last = nullptr;
  for (const Entry& entry : pictures.entries()) {
    if (entry.start <= time) last = &entry;
  }
  const bool isDamaged = last != nullptr && time < last->end && !last->damage.empty();
  return isDamaged ? failureOf(path, *last)
                   : terminalText(path) + ": no picture is shown at " + formatTime(time);
}

void writePictureAt(const ksImportPictures& pictures, const std::string& path, long long time,
                    const std::string& output) {
  const auto picture = pictures.PictureAt(time);
  if (!picture) throw std::runtime_error(reasonOf(pictures, path, time));
  writePicture(output, *picture);
}

class Picture : public Command {
 public:
  Introduction introduction() const override {
    return {"picture", "Write what a VobSub file shows at a time as a PNG file",
            "kssub picture film.idx 1:47.25 shown.png\n"
            "kssub picture film.idx --all pictures --language de\n"};
  }

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", path_, "A .idx or .sub file, with the other one beside it")
        ->required()
        ->type_name("");
    const auto setTime = [this](const std::string& text) { time_ = requireTime(text); };
    CLI::Option* time =
        app.add_option_function<std::string>("TIME", setTime, "The time")->type_name("");
    app.add_option("OUT.png", output_, "The PNG file to write")->type_name("");
    app.add_option("--all", directory_, "Write every picture into this directory")
        ->type_name("DIR")
        ->excludes(time);
    app.add_option("--language", options_.language, "The language, by its name")->type_name("NAME");
    addStream(app, stream_);
    app.callback([this] {
      if (directory_.empty() && output_.empty()) {
        throw CLI::RequiredError("TIME and OUT.png, or --all DIR,");
      }
      if (path_ == "-") throw CLI::ValidationError("FILE", "needs a named file, not -");
      if (directory_.empty() && !output_.ends_with(".png")) {
        throw CLI::ValidationError(kssub::quoted(output_) + " is not named .png");
      }
    });
    explainTimes(app);
  }

  int run() override {
    const ksImportPictures pictures = openPictures(path_, options_, stream_);
    if (directory_.empty()) {
      writePictureAt(pictures, path_, time_, output_);
    } else {
      Export(pictures, path_, directory_).run();
    }
    return kSuccess;
  }

 private:
  std::string path_;
  ksImportOptions options_;
  std::optional<int> stream_;
  long long time_ = 0;
  std::string output_;
  std::string directory_;
};

}  // namespace

std::unique_ptr<Command> makePicture() { return std::make_unique<Picture>(); }

}  // namespace kssub
