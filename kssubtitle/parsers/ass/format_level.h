// Which of the script formats a line is read as.
#pragma once

namespace kssubtitle::internal {

enum class FormatLevel { kUnknown, kSsaV4, kAssV4Plus };

}  // namespace kssubtitle::internal
