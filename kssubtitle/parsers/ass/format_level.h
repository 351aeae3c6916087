// Which of the script formats a line is read as.
#pragma once

namespace kssubtitle::internal {

enum class FormatLevel { kUnknown = 3, kSsaV4 = 4, kAssV4Plus = 5 };

}  // namespace kssubtitle::internal
