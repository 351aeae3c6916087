// Scripts that complete command lines of kssub in shells.
#include "tools/kssub/shell_completion.h"

#include <CLI/CLI.hpp>
#include <string_view>
#include <vector>

#include "tools/kssub/common_options.h"
#include "tools/kssub/formats.h"

namespace kssub {
namespace {

struct OptionWords {
  std::string name;     // "--json"
  std::string summary;  // without characters that are special in shells
  std::string value;    // the kind of its value, such as "NAME"; empty: it has none
  std::string choices;  // the possible values, separated by spaces; empty: any
};

struct CommandWords {
  std::string name;
  std::string summary;
  std::vector<OptionWords> options;
};

/// The first part of a sentence, with typographic apostrophes, which quote nothing.
std::string summaryOf(const std::string& description) {
  std::string out;
  for (const char c : description.substr(0, description.find_first_of(":;"))) {
    if (c == '\'') {
      out += "\u2019";
    } else if (std::string_view("\"[]()\\").find(c) == std::string_view::npos) {
      out += c;
    }
  }
  return out;
}

/// The possible values of an option; empty: any.
std::string choicesOf(const std::string& option) {
  if (option == "format") return CLI::detail::join(formatNames(), " ");
  return option == "to" ? CLI::detail::join(writtenExtensions(), " ") : "";
}

std::vector<OptionWords> optionsOf(const CLI::App& command) {
  std::vector<OptionWords> options;
  for (const CLI::Option* option : command.get_options()) {
    if (option->get_lnames().empty()) continue;
    const std::string& name = option->get_lnames().front();
    options.push_back({"--" + name, summaryOf(option->get_description()),
                       option->get_type_size() == 0 ? "" : option->get_type_name(),
                       choicesOf(name)});
  }
  return options;
}

/// The commands that the help shows.
std::vector<CommandWords> commandsOf(const CLI::App& app) {
  std::vector<CommandWords> commands;
  for (const CLI::App* command : app.get_subcommands({})) {
    if (command->get_group().empty()) continue;
    commands.push_back(
        {command->get_name(), summaryOf(command->get_description()), optionsOf(*command)});
  }
  return commands;
}

template <typename Words>
std::string namesOf(const std::vector<Words>& all) {
  std::string names;
  for (const Words& one : all) names += (names.empty() ? "" : " ") + one.name;
  return names;
}

/// Without words of its own it leaves completion to bash, which completes file names.
std::string bashScript(const std::vector<CommandWords>& commands) {
  std::string cases;
  for (const CommandWords& command : commands) {
    cases += "    " + command.name + ") options='" + namesOf(command.options) + "' ;;\n";
  }
  return R"(# Completions of kssub for bash.
_kssub() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local commands=')" +
         namesOf(commands) + R"(' options='--help --version' words=
  case ${COMP_WORDS[1]} in
)" + cases +
         R"(  esac
  if [ "$previous" = --format ]; then
    words=')" +
         choicesOf("format") + R"('
  elif [ "$previous" = --to ]; then
    words=')" +
         choicesOf("to") + R"('
  elif [ "$COMP_CWORD" = 1 ]; then
    words="$commands $options"
  elif [ "${COMP_WORDS[1]}" = help ]; then
    words=$commands
  elif [ "${current:0:1}" = - ]; then
    words=$options
  fi
  COMPREPLY=($(compgen -W "$words" -- "$current"))
}
complete -o bashdefault -o default -F _kssub kssub
)";
}

std::string fishScript(const std::vector<CommandWords>& commands) {
  std::string out = "# Completions of kssub for fish.\n";
  const auto add = [&out](const std::string& condition, const std::string& rest) {
    out += "complete -c kssub -n '" + condition + "' " + rest + '\n';
  };
  for (const CommandWords& command : commands) {
    add("__fish_use_subcommand", "-f -a " + command.name + " -d '" + command.summary + "'");
    for (const OptionWords& option : command.options) {
      const bool takesPath = option.value == "DIR" || option.value == "FILE";
      std::string rest = "-l " + option.name.substr(2) + " -d '" + option.summary + "'";
      if (!option.value.empty()) rest += takesPath ? " -r" : " -x";
      if (!option.choices.empty()) rest += " -a '" + option.choices + "'";
      add("__fish_seen_subcommand_from " + command.name, rest);
    }
  }
  add("__fish_seen_subcommand_from help", "-f -a '" + namesOf(commands) + "'");
  return out;
}

std::string zshOption(const OptionWords& option) {
  std::string out = "'" + option.name + "[" + option.summary + "]";
  if (!option.value.empty()) out += ":" + option.value + ":";
  if (!option.choices.empty()) out += "(" + option.choices + ")";
  if (option.value == "DIR" || option.value == "FILE") out += "_files";
  return out + "'";
}

std::string zshScript(const std::vector<CommandWords>& commands) {
  std::string list;
  std::string cases;
  for (const CommandWords& command : commands) {
    list += "    '" + command.name + ":" + command.summary + "'\n";
    cases += "    " + command.name + ") _arguments";
    for (const OptionWords& option : command.options) cases += " \\\n      " + zshOption(option);
    cases += command.name == "help" ? " \\\n      '*:command:(" + namesOf(commands) + ")' ;;\n"
                                    : " \\\n      '*:file:_files' ;;\n";
  }
  return "#compdef kssub\n# Completions of kssub for zsh.\n_kssub() {\n  local -a commands=(\n" +
         list +
         R"(  )
  if (( CURRENT == 2 )); then
    _describe command commands
    return
  fi
  local command=$words[2]
  shift words
  (( CURRENT-- ))
  case $command in
)" + cases +
         "  esac\n}\n_kssub \"$@\"\n";
}

}  // namespace

std::string completionScript(const CLI::App& app, const std::string& shell) {
  const std::vector<CommandWords> commands = commandsOf(app);
  if (shell == "bash") return bashScript(commands);
  if (shell == "fish") return fishScript(commands);
  if (shell == "zsh") return zshScript(commands);
  throw CLI::ValidationError(kssub::quoted(shell) + " is not bash, fish or zsh");
}

}  // namespace kssub
