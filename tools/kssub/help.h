// What the command line can be told about itself: help, and what is wrong with it.
#pragma once

#include <memory>
#include <string>

namespace CLI {
class App;
class Error;
class FormatterBase;
}  // namespace CLI

namespace kssub {

/// What makes the help of an app, its commands included.
std::shared_ptr<CLI::FormatterBase> makeHelpFormatter();

/// The help on `command`, or on all of `app` if that is empty, for standard output. Throws
/// CLI::ValidationError if there is no such command.
std::string helpOn(const CLI::App& app, const std::string& command);

/// Why the command line of `app` is refused, and where to read on, for standard error.
std::string usageMessage(const CLI::App* app, const CLI::Error& error);

}  // namespace kssub
