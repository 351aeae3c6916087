// JSON values (RFC 8259).
#pragma once

#include <string>
#include <string_view>

namespace kssub {

/// UTF-8 text as a quoted JSON string. Every control character is escaped, so that it can be
/// printed to a terminal.
std::string jsonString(std::string_view text);

}  // namespace kssub
