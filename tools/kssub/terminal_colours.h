// Colours on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace kssub {

enum class Colour { kBold, kDim, kRed, kGreen, kYellow };

/// `text` in that colour if the file `descriptor` is a terminal with colours and the environment
/// variable NO_COLOR is empty or not set; otherwise `text` as it is.
std::string coloured(std::string_view text, Colour colour, int descriptor);

}  // namespace kssub
