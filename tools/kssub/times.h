// Times as people write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kssub {

/// The milliseconds of "1500", "1:02.5" or "1:02:03,456", each with an optional '-'; std::nullopt
/// for any other form. Only the first field may exceed 59.
std::optional<long long> parseTime(std::string_view text);

/// "1:02:03.456", or "-0:00:00.001" for a negative time.
std::string formatTime(long long milliseconds);

}  // namespace kssub
