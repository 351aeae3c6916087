// The bytes of a file.
#pragma once

#include <climits>
#include <cstddef>
#include <string>
#include <string_view>

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

/// Why a file is refused at sight, with a sentence that says what it is.
struct RefusalAtSight {
  ksImportRefusal refusal = ksImportRefusal::kNone;
  std::string_view sentence;
};

/// Of a file that holds `bytes`; kNone if it may be text.
RefusalAtSight refusalOf(std::string_view bytes) noexcept;
/// A sentence on what a text of no known format is; empty where nothing can be said.
std::string_view sentenceOnOtherText(std::string_view text) noexcept;

}  // namespace kssubtitle::importing
