// Code pages, by the C library's conversion.
#pragma once

#include <string>
#include <string_view>

#include "kssubtitle/import/text/decoding.h"

namespace kssubtitle::importing {

/// Whether the C library knows a code page of that name that has the digits of ASCII.
bool isAsciiCodePage(const std::string& name);
/// Nothing if the C library does not know the code page.
std::optional<DecodedText> decodeCodePage(std::string_view bytes, const std::string& name);

}  // namespace kssubtitle::importing
