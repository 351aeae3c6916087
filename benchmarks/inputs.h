// The subtitle files that are measured: generated, and the same in every run.
#pragma once

#include <string>
#include <vector>

namespace bench {

/// A subtitle file on disk: with 8-bit characters, with CR LF for LF, and in UTF-16.
struct Input {
  std::string name;
  std::string title;
  std::string path;
  std::string crLfPath;
  std::string widePath;  ///< The same text as UTF-16LE after its BOM.
};

/// Writes the files that everything is measured with.
std::vector<Input> writeInputs();
/// Writes SubRip cues of which one begins every 100 ms and lasts until `atOnce` more have begun;
/// the first one lasts to the end.
Input writeStack(int cues, int atOnce);
/// Writes a SubRip film in Russian, in windows-1251; the wide form is no text.
Input writeCodePageInput();
/// Writes a script with one event of this text.
Input writeEvent(const std::string& name, const std::string& text);

}  // namespace bench
