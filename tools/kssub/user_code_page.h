// The code page that subtitles usually have in the user's language.
#pragma once

#include <string_view>

namespace kssub {

/// The code page that is usual in the language of a locale such as "uk_UA.UTF-8".
std::string_view codePageOf(std::string_view locale) noexcept;
/// That of the user's locale, as the environment names it.
std::string_view userCodePage() noexcept;

}  // namespace kssub
