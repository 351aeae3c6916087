// What measurements of limits share.
#pragma once

#include <functional>
#include <string>

namespace bench {

using Work = std::function<void()>;

/// Prints what `work` takes under the name of a series, and returns its milliseconds.
double measure(const char* series, double size, const Work& work);
/// Writes a file and returns its path.
std::string write(const std::string& name, const std::string& content);

/// Measures what files made against the import library cost; whether that grows as they do.
bool measureImportLimits();

}  // namespace bench
