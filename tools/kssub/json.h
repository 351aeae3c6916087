// Values as JSON has them.
#pragma once

#include <string>
#include <string_view>

namespace kssub {

/// UTF-8 text as a JSON string, quoted. Every control character is escaped, so that the result is
/// fit for a terminal too.
std::string jsonString(std::string_view text);

}  // namespace kssub
