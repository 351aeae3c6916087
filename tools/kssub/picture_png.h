// Writes pictures as PNG files.
#pragma once

#include <string>

#include "kssubtitle/import/ksImportPictures.h"

namespace kssub {

/// Writes `picture` to the file at `path`, which appears or changes only once it is complete.
/// Throws std::runtime_error, naming the file.
void writePng(const std::string& path, const ksImportPicture& picture);

}  // namespace kssub
