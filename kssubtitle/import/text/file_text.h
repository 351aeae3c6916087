// The bytes of a file become its text.
#pragma once

#include <optional>
#include <string>

#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/report/report_data.h"

namespace kssubtitle::importing {

/// The text of `bytes`, which are not empty, as valid UTF-8 without marks at the fronts of lines,
/// with a line feed where a lone carriage return was. What is found out on the way goes to
/// `report`. Nothing if the options name an encoding that there is none of.
std::optional<std::string> textOf(std::string bytes, const ksImportOptions& options,
                                  ReportData& report);

}  // namespace kssubtitle::importing
