// kssub, a host of the library on the command line: the command line itself.
#include <CLI/CLI.hpp>
#include <cmath>
#include <csignal>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "kssubtitle/version.h"
#include "tools/kssub/commands.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace {

constexpr int kFileFailure = 1;
constexpr int kUsageFailure = 2;

struct Options {
  std::string file;
  std::vector<long long> times;
  long long from = 0;
  double speed = 1;
  std::string output;
  std::string directory;
};

std::string quoted(const std::string& word) { return '"' + word + '"'; }

long long requireTime(const std::string& text) {
  const std::optional<long long> time = kssub::parseTime(text);
  if (!time) {
    throw CLI::ValidationError(quoted(text) +
                               " is not a time: write 1:02:03.456, 0:01.5 or 1500 (milliseconds)");
  }
  return *time;
}

void explainTimes(CLI::App& command) {
  command.footer(
      "TIME is in milliseconds, or [hours:]minutes:seconds with up to three digits behind a point\n"
      "or comma: 1500, 0:01.5 and 0:00:01,500 are the same. A negative one begins with '-'.");
}

CLI::App* addCommand(CLI::App& app, const char* name, const char* description, Options& options) {
  CLI::App* command = app.add_subcommand(name, description);
  command->add_option("FILE", options.file, "A .srt, .ass or .ssa file")->required()->type_name("");
  return command;
}

void addAt(CLI::App& app, Options& options) {
  CLI::App* at = addCommand(app, "at", "Print the duration and the cue at each time", options);
  const auto addTimes = [&options](const std::vector<std::string>& texts) {
    for (const std::string& text : texts) options.times.push_back(requireTime(text));
  };
  at->add_option_function<std::vector<std::string>>("TIME", addTimes, "Times to ask for")
      ->required()
      ->type_name("");
  explainTimes(*at);
}

void addPlay(CLI::App& app, Options& options) {
  CLI::App* play = addCommand(app, "play", "Show each cue in its time", options);
  const auto setFrom = [&options](const std::string& text) { options.from = requireTime(text); };
  play->add_option_function<std::string>("--from", setFrom, "Time to begin at")
      ->type_name("TIME")
      ->default_str("0");
  const auto requirePositive = [&options](const double& speed) {
    if (!std::isfinite(speed) || speed <= 0) {
      throw CLI::ValidationError("--speed", "must be a number above 0");
    }
    options.speed = speed;
  };
  play->add_option_function<double>("--speed", requirePositive, "How many times as fast")
      ->type_name("NUMBER")
      ->default_str("1");
  explainTimes(*play);
}

void addPicture(CLI::App& app, Options& options) {
  CLI::App* picture =
      app.add_subcommand("picture",
                         "Write what a VobSub index shows near TIME, cropped to its "
                         "display area, as a PNG file with transparency");
  picture->add_option("INDEX", options.file, "A .idx file with its .sub file beside it")
      ->required()
      ->type_name("");
  const auto setTime = [&options](const std::string& text) { options.times = {requireTime(text)}; };
  CLI::Option* time =
      picture->add_option_function<std::string>("TIME", setTime, "Time to ask for")->type_name("");
  CLI::Option* output =
      picture->add_option("OUT.png", options.output, "The PNG file to write")->type_name("");
  CLI::Option* all = picture
                         ->add_option("--all", options.directory,
                                      "Write the picture of every entry into this directory")
                         ->type_name("DIR")
                         ->excludes(time);
  picture->callback([=] {
    if (all->empty() && output->empty()) {
      throw CLI::RequiredError("TIME and OUT.png, or --all DIR,");
    }
  });
  explainTimes(*picture);
}

/// CLI11 itself names no unknown subcommand, and unexpected arguments from the last one on.
std::string reasonOf(const CLI::App& app, const CLI::Error& error) {
  const std::vector<std::string> extras = app.remaining(true);
  if (app.get_subcommands().empty() && !extras.empty()) {
    return "there is no subcommand or option " + quoted(extras.front());
  }
  if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::ExtrasError)) return error.what();
  std::string reason = "unexpected:";
  for (const std::string& extra : extras) reason += ' ' + quoted(extra);
  return reason;
}

std::string usageMessage(const CLI::App* app, const CLI::Error& error) {
  std::string command = "kssub";
  for (const CLI::App* given : app->get_subcommands()) command += ' ' + given->get_name();
  return "kssub: " + kssub::terminalText(reasonOf(*app, error).c_str()) + "\nRun " + command +
         " --help for its usage.\n";
}

std::string version() {
  return "kssub " + std::to_string(KSSUBTITLE_VERSION_MAJOR) + '.' +
         std::to_string(KSSUBTITLE_VERSION_MINOR) + '.' + std::to_string(KSSUBTITLE_VERSION_PATCH);
}

void addCommands(CLI::App& app, Options& options) {
  app.require_subcommand(1);
  app.failure_message(usageMessage);
  app.set_version_flag("--version", version(), "Print the version and exit");
  addAt(app, options);
  addCommand(app, "list", "Print every cue as a table", options);
  addPlay(app, options);
  addPicture(app, options);
  app.footer(
      "Exit status: 0, or 1 if a file cannot be read or written, or 2 on a wrong command line.\n"
      "Notes on a file and errors go to standard error.");
}

void runPicture(const Options& options) {
  if (options.times.empty()) {
    kssub::allPictures(options.file, options.directory);
  } else {
    kssub::picture(options.file, options.times.front(), options.output);
  }
}

void run(const CLI::App& app, const Options& options) {
  if (app.got_subcommand("at")) kssub::at(options.file, options.times);
  if (app.got_subcommand("list")) kssub::list(options.file);
  if (app.got_subcommand("play")) kssub::play(options.file, options.from, options.speed);
  if (app.got_subcommand("picture")) runPicture(options);
}

int fail(const char* reason) {
  std::cerr << "kssub: " << reason << '\n';
  return kFileFailure;
}

/// Returns the exit status.
int parseAndRun(int argc, char** argv) {
  Options options;
  CLI::App app("Tells which subtitle of a file is shown at a time.", "kssub");
  addCommands(app, options);
  try {
    app.parse(argc, argv);
    run(app, options);
  } catch (const CLI::ParseError& error) {
    if (app.exit(error) != 0) return kUsageFailure;
  }
  return std::cout.flush() ? 0 : fail("cannot write the output");
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe is a failed write like any other
  try {
    return parseAndRun(argc, argv);
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
