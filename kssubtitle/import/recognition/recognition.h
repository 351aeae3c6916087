// Says what a text is.
#pragma once

#include <string_view>

#include "kssubtitle/import/formats/common/format.h"
#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

/// A format or, if there is none, why the file is refused.
struct Recognised {
  const Format* format = nullptr;
  ksImportRefusal refusal = ksImportRefusal::kNone;
  std::string_view sentence{};  ///< Where there is more to say than the refusal itself does.
};

/// What a text from a file at `path` is. NULs in it do not count. `givenFormat` is the name of the
/// format that was asked for, which may be empty.
Recognised recognise(std::string_view text, std::string_view path, std::string_view givenFormat);

}  // namespace kssubtitle::importing
