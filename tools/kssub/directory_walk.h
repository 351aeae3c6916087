// Which subtitle files the arguments of a command mean.
#pragma once

#include <string>
#include <vector>

namespace kssub {

struct FoundFile {
  std::string path;
  bool mayBeOther = false;  ///< Found in a directory by an extension that other files have too.
};

/// The files themselves; of directories all files in them and below that have an extension of a
/// subtitle format, by name. What cannot be entered is passed over.
std::vector<FoundFile> filesOf(const std::vector<std::string>& arguments);

}  // namespace kssub
