// What shells are told so that they complete command lines of kssub.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace kssub {

/// The script for `shell`, which is bash, fish or zsh, made from the commands and options of `app`.
/// Throws CLI::ValidationError if it is another one.
std::string completionScript(const CLI::App& app, const std::string& shell);

}  // namespace kssub
