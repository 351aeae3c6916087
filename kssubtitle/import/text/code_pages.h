// Code pages, by the C library's conversion.
#pragma once

#include <string>
#include <string_view>

#include "kssubtitle/import/text/decoding.h"

namespace kssubtitle::importing {

bool isCodePage(const std::string& name);
/// Nothing if there is no code page of that name.
std::optional<DecodedText> decodeCodePage(std::string_view bytes, const std::string& name);

}  // namespace kssubtitle::importing
