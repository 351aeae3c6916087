// The help, and what is printed for a wrong command line.
#include "tools/kssub/help.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>
#include <vector>

#include "tools/kssub/common_options.h"
#include "tools/kssub/suggestion.h"
#include "tools/kssub/terminal_colours.h"
#include "tools/kssub/terminal_columns.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

bool isHidden(const CLI::App* command) { return command->get_group().empty(); }

std::vector<std::string> commandsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) {
    if (!isHidden(command)) names.push_back(command->get_name());
  }
  return names;
}

std::vector<std::string> optionsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

/// Fits descriptions to the terminal and omits which options exclude each other.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() {
    label("SUBCOMMAND", "COMMAND");
    label("Positionals", "Arguments");
    label("REQUIRED", "");
    column_width(kDescriptionColumn);
  }

  std::string make_description(const CLI::App* app) const override {
    return app->get_description() + ".\n\n";
  }

  std::string make_option_opts(const CLI::Option* option) const override {
    const std::string type = option->get_type_name();
    return type.empty() ? "" : ' ' + type;
  }

  std::string make_option_desc(const CLI::Option* option) const override {
    std::string description = option->get_description();
    const std::string standard = option->get_default_str();
    if (!standard.empty()) description += " (" + standard + ")";
    return fitting(description);
  }

 private:
  static constexpr std::size_t kDescriptionColumn = 22;
  static constexpr std::size_t kMostColumns = 100;

  static std::string fitting(const std::string& description) {
    const std::size_t columns = std::min(terminalSize(STDOUT_FILENO).columns, kMostColumns);
    std::string out;
    for (const std::string& line :
         wrapped(description, columns - std::min(columns, kDescriptionColumn))) {
      out += (out.empty() ? "" : "\n") + line;
    }
    return out;
  }
};

std::string withSuggestion(const std::string& reason, const std::string& word,
                           const std::vector<std::string>& candidates) {
  const std::string meant = suggestionFor(word, candidates);
  return meant.empty() ? reason : reason + "; did you mean " + meant + '?';
}

std::string unknownCommand(const CLI::App& app, const std::string& word) {
  std::vector<std::string> candidates = commandsOf(app);
  std::ranges::move(optionsOf(app), std::back_inserter(candidates));
  return withSuggestion("there is no command or option " + quoted(word), word, candidates);
}

/// CLI11's own messages say "subcommand", do not name an unknown one, and list unexpected arguments
/// last to first.
std::string reasonOf(const CLI::App& app, const CLI::Error& error) {
  const std::vector<std::string> extras = app.remaining(true);
  if (app.get_subcommands().empty() && !extras.empty()) return unknownCommand(app, extras.front());
  if (app.get_subcommands().empty()) return "a command is required";
  if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::ExtrasError)) return error.what();
  std::string reason = "unexpected:";
  for (const std::string& extra : extras) reason += ' ' + quoted(extra);
  return withSuggestion(reason, extras.front(), optionsOf(*app.get_subcommands().front()));
}

/// `help` with its headings, the unindented lines that end in a colon, in bold.
std::string withHeadings(const std::string& help) {
  std::istringstream in(help);
  std::string out;
  for (std::string line; std::getline(in, line);) {
    const bool isHeading = line.ends_with(':') && !line.starts_with(' ');
    out += (isHeading ? coloured(line, Colour::kBold, STDOUT_FILENO) : line) + '\n';
  }
  return out;
}

}  // namespace

std::shared_ptr<CLI::FormatterBase> makeHelpFormatter() {
  return std::make_shared<HelpFormatter>();
}

std::string helpOn(const CLI::App& app, const std::string& command) {
  if (command.empty()) {
    return withHeadings(app.get_formatter()->make_help(&app, app.get_name(), {}));
  }
  const std::vector<const CLI::App*> found =
      app.get_subcommands([&](const CLI::App* one) { return one->get_name() == command; });
  if (found.empty()) {
    throw CLI::ValidationError(
        withSuggestion("there is no command " + quoted(command), command, commandsOf(app)));
  }
  return withHeadings(found.front()->help(app.get_name()));
}

std::string usageMessage(const CLI::App* app, const CLI::Error& error) {
  std::string command = "kssub";
  for (const CLI::App* given : app->get_subcommands()) command += ' ' + given->get_name();
  return coloured("kssub:", Colour::kRed, STDERR_FILENO) + ' ' +
         terminalText(reasonOf(*app, error)) + "\nRun " + command + " --help for its usage.\n";
}

}  // namespace kssub
