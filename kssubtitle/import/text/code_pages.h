// Code pages, by the C library's conversion.
#pragma once

#include <string>
#include <string_view>

#include "kssubtitle/import/text/decoding.h"

namespace kssubtitle::importing {

/// Whether there is a code page of that name in which digits are those of ASCII.
bool isAsciiCodePage(const std::string& name);
/// Nothing if there is no code page of that name.
std::optional<DecodedText> decodeCodePage(std::string_view bytes, const std::string& name);

}  // namespace kssubtitle::importing
