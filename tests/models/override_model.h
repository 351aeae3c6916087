// What the removal of override tags is compared with.
#pragma once

#include <string>
#include <utility>

/// "{...}" and "<...>" taken out one removal at a time, as the class's own deleteStr() and
/// replaceChars() would.
inline std::string naiveOverrideRemoval(std::string text) {
  for (const auto& [opening, closing] : {std::pair{'{', '}'}, std::pair{'<', '>'}}) {
    std::size_t open = 0;
    for (std::size_t allowed = text.size(); allowed > 0; --allowed) {
      open = text.find(opening, open);
      const std::size_t close = text.find(closing, open);
      if (open == text.npos || close == text.npos) break;
      for (std::size_t to = open, from = close + 1; from <= text.size(); ++to, ++from) {
        text[to] = from == text.size() ? '\0' : text[from];
      }
    }
  }
  for (std::size_t at = 0; at == 0 && (at = text.find("\\N")) != text.npos;) {
    text.replace(at, 2, "\n");
  }
  return text;
}
