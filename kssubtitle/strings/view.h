// The whole text of a ksBasicString, stale characters included, without a copy.
#pragma once

#include <string_view>

#include "kssubtitle/strings/ksBasicString.h"

namespace kssubtitle::internal {

template <typename Char>
std::basic_string_view<Char> viewOf(const ksBasicString<Char>& text) noexcept {
  return {text.getData(), static_cast<std::size_t>(text.length())};
}

}  // namespace kssubtitle::internal
