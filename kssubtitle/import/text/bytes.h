// The bytes of a file.
#pragma once

#include <climits>
#include <cstddef>
#include <string>

#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

/// More are refused, as line numbers are `int`.
inline constexpr std::size_t kMostFileBytes = INT_MAX;

struct FileBytes {
  std::string bytes;
  ksImportRefusal refusal = ksImportRefusal::kNone;
  int systemError = 0;
};

/// Reads the file at `path` up to its end, or until it has more than `maxBytes`.
FileBytes readFile(const char* path, std::size_t maxBytes);

}  // namespace kssubtitle::importing
