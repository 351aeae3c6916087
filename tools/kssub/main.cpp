// kssub, a host of the libraries on the command line: the command line itself.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "kssubtitle/version.h"
#include "tools/kssub/commands.h"
#include "tools/kssub/help.h"
#include "tools/kssub/shell_completion.h"
#include "tools/kssub/terminal_colours.h"

namespace {

using kssub::Command;
using Commands = std::vector<std::unique_ptr<Command>>;

/// Every command, in the order of the help.
Commands makeCommands() {
  Commands commands;
  commands.push_back(kssub::makeList());
  commands.push_back(kssub::makeAt());
  commands.push_back(kssub::makePlay());
  commands.push_back(kssub::makeCheck());
  commands.push_back(kssub::makeTimeline());
  commands.push_back(kssub::makeConvert());
  commands.push_back(kssub::makePicture());
  return commands;
}

std::string version() {
  return "kssub " + std::to_string(KSSUBTITLE_VERSION_MAJOR) + '.' +
         std::to_string(KSSUBTITLE_VERSION_MINOR) + '.' + std::to_string(KSSUBTITLE_VERSION_PATCH);
}

std::string indented(const std::string& lines) {
  std::istringstream in(lines);
  std::string out;
  for (std::string line; std::getline(in, line);) out += "  " + line + '\n';
  return out;
}

void addCommand(CLI::App& app, Command& command) {
  const auto [name, summary, examples] = command.introduction();
  CLI::App* added = app.add_subcommand(name, summary);
  added->group("Commands");
  command.addOptions(*added);
  std::string footer = "Examples:\n" + indented(examples);
  if (!added->get_footer().empty()) footer += '\n' + added->get_footer();
  added->footer(footer);
}

/// The command line. Its command runs after all of it has been parsed.
class CommandLine {
 public:
  CommandLine() {
    app_.formatter(kssub::makeHelpFormatter());
    app_.require_subcommand(1);
    app_.failure_message(kssub::usageMessage);
    app_.set_version_flag("--version", version(), "Print the version and exit");
    for (const auto& command : commands_) addCommand(app_, *command);
    CLI::App* help = app_.add_subcommand("help", "Print the help on a command");
    help->group("Commands");
    help->add_option("COMMAND", topic_, "Which command")->type_name("");
    CLI::App* completion = app_.add_subcommand("completion", "Print a completion script");
    completion->group("");  // hidden: only packages need it
    completion->add_option("SHELL", shell_, "bash, fish or zsh")->required()->type_name("");
    app_.footer(
        "kssub help COMMAND, or kssub COMMAND --help, shows the options of a command and "
        "examples.\n"
        "\n"
        "Exit status: 0 on success; 1 if a file cannot be read or written; 2 for a wrong command "
        "line.\n"
        "Errors and notes on a file go to standard error.");
  }

  /// Returns the exit status.
  int run(int argc, char** argv) {
    try {
      app_.parse(argc, argv);
      return runCommand(app_.get_subcommands().front()->get_name());
    } catch (const CLI::CallForHelp&) {
      const std::vector<CLI::App*> given = app_.get_subcommands();
      return help(given.empty() ? "" : given.front()->get_name());
    } catch (const CLI::ParseError& error) {
      return app_.exit(error) == 0 ? kssub::kSuccess : kssub::kUsageFailure;
    }
  }

 private:
  int runCommand(const std::string& name) {
    for (const auto& command : commands_) {
      if (command->introduction().name == name) return command->run();
    }
    if (name == "help") return help(topic_);
    std::cout << kssub::completionScript(app_, shell_);
    return kssub::kSuccess;
  }

  int help(const std::string& topic) const {
    std::cout << kssub::helpOn(app_, topic);
    return kssub::kSuccess;
  }

  Commands commands_ = makeCommands();
  std::string topic_;
  std::string shell_;
  CLI::App app_{"Shows what is in subtitle files, checks and converts them", "kssub"};
};

int fail(const char* reason) {
  std::cerr << kssub::coloured("kssub:", kssub::Colour::kRed, STDERR_FILENO) << ' ' << reason
            << '\n';
  return kssub::kFileFailure;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_DFL);  // ends in silence when nobody reads the output any more
  try {
    const int status = CommandLine().run(argc, argv);
    return std::cout.flush() ? status : fail("cannot write the output");
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
