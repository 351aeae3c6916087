// Colours on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace kssub {

enum class Colour { kBold, kDim, kRed, kGreen, kYellow };

/// `text` as it is written to the file `descriptor`: in that colour if it is a terminal which has
/// colours, and as it is if it is none or the environment has NO_COLOR.
std::string coloured(std::string_view text, Colour colour, int descriptor);

}  // namespace kssub
