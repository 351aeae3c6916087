// Pictures as PNG files.
#pragma once

#include <string>

#include "tools/kssub/image.h"

namespace kssub {

/// Writes `image`, which is not empty, to the file at `path`, which appears or changes only when
/// all is written. Throws std::runtime_error, naming the file.
void writePng(const std::string& path, const Image& image);

}  // namespace kssub
