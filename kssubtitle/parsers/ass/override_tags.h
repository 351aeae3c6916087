// Takes override tags out of an event's text.
#pragma once

#include "kssubtitle/strings/ksBasicString.h"

namespace kssubtitle::internal {

/// Removes "{...}" and "<...>" as deleteStr() does, with its stale characters behind the moved
/// terminator, and turns "\N" into a line feed as replaceChars() does.
template <typename Char>
void removeOverrideTags(ksBasicString<Char>& text);

}  // namespace kssubtitle::internal
