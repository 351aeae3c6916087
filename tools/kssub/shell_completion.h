// Scripts that complete command lines of kssub in shells.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace kssub {

/// The script for `shell`, generated from the commands and options of `app`. Throws
/// CLI::ValidationError unless it is bash, fish or zsh.
std::string completionScript(const CLI::App& app, const std::string& shell);

}  // namespace kssub
