// The code pages that subtitles have in the languages of the world.
#pragma once

#include <string_view>

namespace kssub {

/// The code page that is usual in the language of a locale such as "uk_UA.UTF-8".
std::string_view codePageOf(std::string_view locale) noexcept;
/// That of the locale which the environment names for characters.
std::string_view userCodePage() noexcept;

}  // namespace kssub
