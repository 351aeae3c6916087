/// @file
/// The formats that the import library reads.
#pragma once

#include <span>
#include <string_view>

#include "kssubtitle/import/export.h"

/// A format that can be read.
struct ksImportFormat {
  std::string_view name;  ///< As ksImportOptions::format and ksImportReport::format() have it.
  std::string_view
      extensions;  ///< Its usual ones in lower case, separated by blanks, without dots.
};

/// Every format, in no particular order. Valid as long as the program runs.
KSSUBTITLE_IMPORT_API std::span<const ksImportFormat> ksImportFormats() noexcept;
