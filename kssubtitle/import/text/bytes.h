// The bytes of a file.
#pragma once

#include <cstddef>
#include <string>

#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

struct FileBytes {
  std::string bytes;
  ksImportRefusal refusal = ksImportRefusal::kNone;
  int systemError = 0;
};

/// Reads the file at `path` up to its end, or until it has more than `maxBytes`.
FileBytes readFile(const char* path, std::size_t maxBytes);

/// Why a file that begins with `bytes` is refused at sight; kNone if it may be text.
ksImportRefusal refusalOf(std::string_view bytes) noexcept;

}  // namespace kssubtitle::importing
