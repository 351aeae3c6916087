// Tags of languages, such as "en-US".
#pragma once

#include <algorithm>
#include <string_view>

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

/// Whether `tag` is `wanted` or begins with it and a hyphen, in any case: "en" matches "en-US".
/// Underscores count as hyphens. False if `wanted` is empty.
inline bool isLanguage(std::string_view tag, std::string_view wanted) noexcept {
  const auto signOf = [](char c) { return c == '_' ? '-' : lowerOf(c); };
  if (wanted.empty() || tag.size() < wanted.size()) return false;
  return std::equal(wanted.begin(), wanted.end(), tag.begin(),
                    [&](char x, char y) { return signOf(x) == signOf(y); }) &&
         (tag.size() == wanted.size() || signOf(tag[wanted.size()]) == '-');
}

}  // namespace kssubtitle::importing
