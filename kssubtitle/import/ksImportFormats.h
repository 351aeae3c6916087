/// @file
/// The formats that the import library reads and writes.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "kssubtitle/import/export.h"
#include "kssubtitle/import/ksImportWriter.h"

/// A format of subtitle files.
struct ksImportFormat {
  std::string_view name;  ///< As in ksImportOptions::format and ksImportReport::format().
  /// The usual ones in lower case, the most usual first, separated by spaces, without dots.
  std::string_view extensions;
  std::optional<ksImportTarget> target = std::nullopt;  ///< How to write it, if it can be written.
  /// Whether its cues usually follow one another. In other formats overlaps and cues in any order
  /// are normal.
  bool isSequential = true;
  /// Whether repeated cues are normal, such as one for the text and one for its shadow.
  bool repeatsCues = false;
  /// Whether its cues say when they end. If not, the end of the last one is always an assumption.
  bool hasEnds = true;
};

/// Every format that can be read, in no particular order. Valid for as long as the library is
/// loaded. Never throws.
KSSUBTITLE_IMPORT_API std::span<const ksImportFormat* const> ksImportFormats() noexcept;
/// Every format that can be written: some of ksImportFormats(), and "text", which cannot be read.
/// Each has a target. Valid for as long as the library is loaded. Never throws.
KSSUBTITLE_IMPORT_API std::span<const ksImportFormat* const> ksImportWrittenFormats() noexcept;
