// Looks up names and extensions in the library's tables of formats.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/ksImportFormats.h"

namespace kssub {

/// Whether `extension`, in lower case and without a dot, is one of the format's.
bool hasExtension(const ksImportFormat& format, std::string_view extension);

/// The names of the formats that can be read, in alphabetical order.
std::vector<std::string> formatNames();

/// The most usual extension of each format that can be written.
std::vector<std::string> writtenExtensions();

/// The target whose name or extension is `word`, in any case.
std::optional<ksImportTarget> targetNamed(std::string_view word);

}  // namespace kssub
