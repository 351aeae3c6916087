// The help, and what is printed for a wrong command line.
#pragma once

#include <memory>
#include <string>

namespace CLI {
class App;
class Error;
class FormatterBase;
}  // namespace CLI

namespace kssub {

/// Formats the help of an app and its commands.
std::shared_ptr<CLI::FormatterBase> makeHelpFormatter();

/// The help on `command`, or on all of `app` if that is empty, for standard output. Throws
/// CLI::ValidationError if there is no such command.
std::string helpOn(const CLI::App& app, const std::string& command);

/// What is wrong with the command line of `app`, and where to find help, for standard error.
std::string usageMessage(const CLI::App* app, const CLI::Error& error);

}  // namespace kssub
