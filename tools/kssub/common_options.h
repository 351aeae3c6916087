// Arguments and options that several commands have.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/kssub/subtitle_file.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace kssub {

/// Adds FILE, and all that says how it is read.
void addFile(CLI::App& app, FileRequest& request);
/// Adds what says how the import library reads files. Returns the options that were added.
std::vector<CLI::Option*> addReadingOptions(CLI::App& app, ksImportOptions& options);
/// Tells below the help how a TIME is written.
void explainTimes(CLI::App& app);

/// The milliseconds of a TIME. Throws CLI::ValidationError.
long long requireTime(const std::string& text);
/// Takes the number behind `option` into `value`, which must live as long. It throws
/// CLI::ValidationError unless the number is finite and above 0.
std::function<void(const double&)> requirePositive(const char* option, double& value);

/// The frames in a second that are given behind `option`. Throws CLI::ValidationError unless the
/// number is finite and above 0.
double requireRate(const char* option, const std::string& text);

/// For messages.
std::string quoted(const std::string& word);
/// `words` with commas between them, and `last` before the last one.
std::string enumerated(const std::vector<std::string>& words, const std::string& last);

}  // namespace kssub
