// kssub, a host of the libraries on the command line: the command line itself.
#include <CLI/CLI.hpp>
#include <cmath>
#include <csignal>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "kssubtitle/version.h"
#include "tools/kssub/code_pages.h"
#include "tools/kssub/commands.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace {

constexpr int kFileFailure = 1;
constexpr int kUsageFailure = 2;

struct Options {
  kssub::FileRequest request;
  bool asJson = false;
  bool withNotes = false;
  std::string index;
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

auto requirePositive(const char* option, double& value) {
  return [option, &value](const double& number) {
    if (!std::isfinite(number) || number <= 0) {
      throw CLI::ValidationError(option, "must be a number above 0");
    }
    value = number;
  };
}

void addReadingOptions(CLI::App& command, kssub::FileRequest& request) {
  CLI::Option* exact = command.add_flag("--exact", request.isExact,
                                        "Ask the fixed readers: .srt, .ass and .ssa files alone");
  ksImportOptions& options = request.options;
  options.fallbackEncoding = kssub::codePageOfUser();
  const auto add = [&](const char* name, std::string& value, const char* description) {
    command.add_option(name, value, description)->type_name("NAME")->excludes(exact);
  };
  add("--encoding", options.encoding, "The file's encoding, whatever it looks like");
  add("--fallback", options.fallbackEncoding,
      "The encoding of text that cannot be told; else the one usual in the user's language");
  add("--format", options.format, "The file's format, whatever it looks like");
  add("--language", options.language, "Which of a file's languages");
  command
      .add_option_function<double>("--fps", requirePositive("--fps", options.frameRate),
                                   "Frames in a second, where a file counts frames")
      ->type_name("NUMBER")
      ->excludes(exact);
  command.callback([&request] {
    if (request.isExact && request.path == "-") {
      throw CLI::ValidationError("--exact", "needs the name of a file, not -");
    }
  });
}

void addJson(CLI::App& command, Options& options) {
  command.add_flag("--json", options.asJson, "Print one JSON object a line");
}

CLI::App* addCommand(CLI::App& app, const char* name, const char* description, Options& options) {
  CLI::App* command = app.add_subcommand(name, description);
  command->add_option("FILE", options.request.path, "A subtitle file; - for standard input")
      ->required()
      ->type_name("");
  addReadingOptions(*command, options.request);
  return command;
}

void addAt(CLI::App& app, Options& options) {
  CLI::App* at =
      addCommand(app, "at", "Print the duration and what is shown at each time", options);
  const auto addTimes = [&options](const std::vector<std::string>& texts) {
    for (const std::string& text : texts) options.times.push_back(requireTime(text));
  };
  at->add_option_function<std::vector<std::string>>("TIME", addTimes, "Times to ask for")
      ->required()
      ->type_name("");
  addJson(*at, options);
  explainTimes(*at);
}

void addList(CLI::App& app, Options& options) {
  CLI::App* list = addCommand(app, "list", "Print every cue as a table", options);
  addJson(*list, options);
  list->add_flag("--notes", options.withNotes, "Tell the file's problems on standard error");
}

void addPlay(CLI::App& app, Options& options) {
  CLI::App* play = addCommand(app, "play", "Show each cue in its time", options);
  const auto setFrom = [&options](const std::string& text) { options.from = requireTime(text); };
  play->add_option_function<std::string>("--from", setFrom, "Time to begin at")
      ->type_name("TIME")
      ->default_str("0");
  play->add_option_function<double>("--speed", requirePositive("--speed", options.speed),
                                    "How many times as fast")
      ->type_name("NUMBER")
      ->default_str("1");
  explainTimes(*play);
}

void addPicture(CLI::App& app, Options& options) {
  CLI::App* picture =
      app.add_subcommand("picture",
                         "Write what a VobSub index shows near TIME, cropped to its "
                         "display area, as a PNG file with transparency");
  picture->add_option("INDEX", options.index, "A .idx file with its .sub file beside it")
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
  return "kssub: " + kssub::terminalText(reasonOf(*app, error)) + "\nRun " + command +
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
  addList(app, options);
  addPlay(app, options);
  addPicture(app, options);
  app.footer(
      "Exit status: 0, or 1 if a file cannot be read or written, or 2 on a wrong command line.\n"
      "Notes on a file and errors go to standard error.");
}

void runPicture(const Options& options) {
  if (options.times.empty()) {
    kssub::allPictures(options.index, options.directory);
  } else {
    kssub::picture(options.index, options.times.front(), options.output);
  }
}

void run(const CLI::App& app, const Options& options) {
  const kssub::Output output = options.asJson ? kssub::Output::kJson : kssub::Output::kTable;
  if (app.got_subcommand("at")) kssub::at(options.request, options.times, output);
  if (app.got_subcommand("list")) kssub::list(options.request, output, options.withNotes);
  if (app.got_subcommand("play")) kssub::play(options.request, options.from, options.speed);
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
