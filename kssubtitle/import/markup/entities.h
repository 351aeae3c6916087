// Characters written as entities.
#pragma once

#include <cstddef>
#include <string_view>

namespace kssubtitle::importing {

/// The character that an entity stands for, and how long the entity is.
struct Entity {
  char32_t character = 0;
  std::size_t length = 0;  ///< 0: `text` begins with no entity.
};

/// The entity at the front of `text`, which begins with '&': a number of any length, or one of the
/// six names that subtitles know (amp, lt, gt, nbsp, quot, apos), with its semicolon.
Entity entityOf(std::string_view text) noexcept;

}  // namespace kssubtitle::importing
