// Takes override tags out of an event's text.
#include "kssubtitle/parsers/ass/override_tags.h"

namespace kssubtitle::internal {
namespace {

/// The search goes on in the stale characters behind the moved terminator, where a removal can
/// bring about itself for ever. No pass that ends by itself takes as many removals as the text has
/// characters, so none is allowed more.
template <typename Char>
void removeSpans(ksBasicString<Char>& text, Char opening, Char closing) {
  int open = 0;
  for (int allowed = text.length(); allowed > 0; --allowed) {
    open = text.find(opening, open);
    if (open < 0) return;
    const int close = text.find(closing, open);
    if (close < 0) return;
    text.deleteStr(open, close - open + 1);
  }
}

}  // namespace

template <typename Char>
void removeOverrideTags(ksBasicString<Char>& text) {
  constexpr Char kLineBreak[] = {'\\', 'N', 0};
  constexpr Char kLineFeed[] = {'\n', 0};
  removeSpans(text, Char{'{'}, Char{'}'});
  removeSpans(text, Char{'<'}, Char{'>'});
  text.replaceChars(kLineBreak, kLineFeed);
}

template void removeOverrideTags(ksBasicString<char>&);
template void removeOverrideTags(ksBasicString<wchar_t>&);

}  // namespace kssubtitle::internal
