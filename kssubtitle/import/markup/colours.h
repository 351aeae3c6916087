// Colours as files write them.
#pragma once

#include <optional>
#include <string_view>

namespace kssubtitle::importing {

/// The number that all of `digits`, 1 to 7, are; nothing if one is not a hexadecimal digit.
std::optional<int> hexadecimalNumber(std::string_view digits) noexcept;
/// 0xBBGGRR as 0xRRGGBB.
int swappedRedAndBlue(int colour) noexcept;
/// "#rrggbb", "rrggbb", "#rgb" or a colour name of HTML; nothing else.
std::optional<int> colourOf(std::string_view text) noexcept;

}  // namespace kssubtitle::importing
