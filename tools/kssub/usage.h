// What the command line can be told about itself: help, and what is wrong with it.
#pragma once

#include <string>

namespace CLI {
class App;
class Error;
}  // namespace CLI

namespace kssub {

/// The help on `command`, or on all of `app` if that is empty, for standard output. Throws
/// CLI::ValidationError if there is no such command.
std::string helpOn(const CLI::App& app, const std::string& command);

/// Why the command line of `app` is refused, and where to read on, for standard error.
std::string usageMessage(const CLI::App* app, const CLI::Error& error);

}  // namespace kssub
