// Arguments and options that several commands share.
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

/// Adds FILE and the options on how it is read.
void addFile(CLI::App& app, FileRequest& request);
/// Adds the options on how the import library reads files, and returns them.
std::vector<CLI::Option*> addReadingOptions(CLI::App& app, ksImportOptions& options);
/// Explains in the footer of the help how a TIME is written.
void explainTimes(CLI::App& app);

/// The milliseconds of a TIME. Throws CLI::ValidationError.
long long requireTime(const std::string& text);
/// Returns a function that stores the number given for `option` in `value`, which must outlive it.
/// It throws CLI::ValidationError unless the number is finite and above 0.
std::function<void(const double&)> requirePositive(const char* option, double& value);

/// The frame rate given for `option`. Throws CLI::ValidationError unless it is finite and above 0.
double requireRate(const char* option, const std::string& text);

/// In quotation marks, for messages.
std::string quoted(const std::string& word);
/// `words` separated by commas, but by `last` before the last one.
std::string enumerated(const std::vector<std::string>& words, const std::string& last);

}  // namespace kssub
