// From the bytes of a file to its text.
#pragma once

#include <optional>
#include <string>

#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/report/report_data.h"

namespace kssubtitle::importing {

/// The text of `bytes`, which are not empty, as valid UTF-8: without BOMs where lines begin,
/// without NULs at its end, and with a line feed for each lone carriage return. Fills in what
/// `report` has on encoding, line ends and what was repaired. Nothing if the options name an
/// unknown encoding.
std::optional<std::string> textOf(std::string bytes, const ksImportOptions& options,
                                  ReportData& report);

}  // namespace kssubtitle::importing
