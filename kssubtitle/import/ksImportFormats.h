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
  std::string_view name;  ///< As ksImportOptions::format and ksImportReport::format() have it.
  /// Its usual ones in lower case, the most usual one first, separated by blanks, without dots.
  std::string_view extensions;
  std::optional<ksImportTarget> target = std::nullopt;  ///< What it is written as, if it can be.
  /// Whether its cues usually follow one another. In other formats it is usual that they overlap,
  /// and that the file has them in any order.
  bool isSequential = true;
  /// Whether it is usual that a cue is there several times, such as for its shadow.
  bool repeatsCues = false;
  /// Whether its cues say when they end. If not, the end of the last one is always an assumption.
  bool hasEnds = true;
};

/// Every format that can be read, in no particular order. Valid as long as the program runs.
KSSUBTITLE_IMPORT_API std::span<const ksImportFormat* const> ksImportFormats() noexcept;
/// Every format that can be written: some of ksImportFormats(), and "text", which cannot be read.
/// Each has a target. Valid as long as the program runs.
KSSUBTITLE_IMPORT_API std::span<const ksImportFormat* const> ksImportWrittenFormats() noexcept;
