// The keys of lines of the form "key: value", which scripts and indexes are made of.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "kssubtitle/strings/width_rules.h"

namespace kssubtitle::internal {

/// What a key is called, in lower case.
template <typename Key>
struct KeyName {
  std::string_view name;
  Key key;
};

/// The key that `text` names in any case, as MakeLower() leaves it; `other` if it names none.
template <typename Char, typename Key, std::size_t kCount>
Key keyOf(std::basic_string_view<Char> text, const KeyName<Key> (&names)[kCount],
          Key other) noexcept {
  text = text.substr(0, text.find(Char{}));
  const auto equalLower = [](Char c, char expected) {
    return WidthRules<Char>::toLower(c) == static_cast<Char>(expected);
  };
  for (const KeyName<Key>& entry : names) {
    if (std::equal(text.begin(), text.end(), entry.name.begin(), entry.name.end(), equalLower)) {
      return entry.key;
    }
  }
  return other;
}

}  // namespace kssubtitle::internal
