// The subtitle files that are measured: generated, and the same in every run.
#pragma once

#include <string>
#include <vector>

namespace bench {

/// A subtitle file on disk in both widths.
struct Input {
  std::string name;
  std::string title;
  std::string path;
  std::string widePath;  ///< The same text as UTF-16LE behind its mark.
};

/// Writes the files that everything is measured with.
std::vector<Input> writeInputs();
/// Writes a script with one event of this text.
Input writeEvent(const std::string& name, const std::string& text);

}  // namespace bench
