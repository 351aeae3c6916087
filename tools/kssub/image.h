// A picture in memory.
#pragma once

#include <vector>

namespace kssub {

struct Image {
  int width = 0;
  int height = 0;
  /// Rows from the top; red, green, blue and alpha of each pixel.
  std::vector<unsigned char> rgba;
};

}  // namespace kssub
