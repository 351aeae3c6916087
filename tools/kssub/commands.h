// The commands of kssub, each a class in a source of its own.
#pragma once

#include <memory>

namespace CLI {
class App;
}

namespace kssub {

/// How the help introduces a command.
struct Introduction {
  const char* name;      ///< As it is typed.
  const char* summary;   ///< One sentence without a full stop, as an order.
  const char* examples;  ///< Command lines, one a line, each ended by a line feed.
};

class Command {
 public:
  Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  virtual ~Command() = default;

  virtual Introduction introduction() const = 0;
  /// Adds the command's arguments and options to `app`, which is of this command alone and is not
  /// used after it. A footer that is set here appears below the examples.
  virtual void addOptions(CLI::App& app) = 0;
  /// Runs the command and returns the exit status. Writes to std::cout, whose state shows failed
  /// writes. Throws std::runtime_error if a file cannot be read or written, and CLI::ParseError if
  /// the command line proves wrong.
  virtual int run() = 0;
};

inline constexpr int kSuccess = 0;
inline constexpr int kFileFailure = 1;
inline constexpr int kUsageFailure = 2;

std::unique_ptr<Command> makeAt();
std::unique_ptr<Command> makeCheck();
std::unique_ptr<Command> makeConvert();
std::unique_ptr<Command> makeList();
std::unique_ptr<Command> makePicture();
std::unique_ptr<Command> makePlay();
std::unique_ptr<Command> makeTimeline();

}  // namespace kssub
