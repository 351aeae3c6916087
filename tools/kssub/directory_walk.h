// Finds the subtitle files that are given as arguments, also in directories.
#pragma once

#include <string>
#include <vector>

namespace kssub {

struct FoundFile {
  std::string path;
  bool mayBeOther = false;  ///< Found in a directory, with an extension that other files have too.
};

/// The files among the arguments and, sorted by name, all files in and below the directories that
/// have the extension of a subtitle format. Directories that cannot be entered are skipped.
std::vector<FoundFile> filesOf(const std::vector<std::string>& arguments);

}  // namespace kssub
