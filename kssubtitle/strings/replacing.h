// The replacement rule of the text class, for texts that are no ksBasicString.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kssubtitle::internal {

/// Replaces `from`, which `text` begins with, by `to` until the text begins otherwise.
/// Requires: `to` does not begin with `from`; the call takes memory without end, or never returns,
/// otherwise.
template <typename Char>
void replaceFront(std::basic_string<Char>& text, std::basic_string_view<Char> from,
                  std::basic_string_view<Char> to) {
  while (to.starts_with(from)) text.replace(0, from.size(), to);
  std::size_t replaced = from.size();
  if (from.starts_with(to)) {
    // `to` and what follows it make up `from` anew as long as the following completes it.
    const auto completion = from.substr(to.size());
    const std::basic_string_view<Char> all(text);
    while (all.substr(replaced).starts_with(completion)) replaced += completion.size();
  }
  text.replace(0, replaced, to);
}

/// Replaces the first `from` in `text` by `to`. Deliberate: goes on only while the one just
/// replaced stood at the front.
template <typename Char>
void replaceFirst(std::basic_string<Char>& text, std::basic_string_view<Char> from,
                  std::basic_string_view<Char> to) {
  if (text.empty()) return;
  std::size_t found = text.find(from);
  if (found == 0) {
    replaceFront(text, from, to);
    found = text.find(from);
  }
  if (found != std::basic_string<Char>::npos) text.replace(found, from.size(), to);
}

}  // namespace kssubtitle::internal
