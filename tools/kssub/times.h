// Times as people write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kssub {

/// Milliseconds of "1500", "1:02.5" or "1:02:03,456", each with an optional '-'; nothing if `text`
/// is none of these. Only the first field may exceed 59.
std::optional<long long> parseTime(std::string_view text);

/// "1:02:03.456", or "-0:00:00.001" for a negative time.
std::string formatTime(long long milliseconds);

}  // namespace kssub
