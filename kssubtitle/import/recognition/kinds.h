// Files that hold no subtitle text: pictures, archives, films, other documents.
#pragma once

#include <string_view>

#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

/// The kinds that callers tell apart.
enum class FileKind { kOther, kVobSubStream, kVobSubIndex };

/// One row of the table of kinds.
struct Kind {
  FileKind kind = FileKind::kOther;
  ksImportRefusal refusal;    ///< Why a reader of text refuses it.
  std::string_view sentence;  ///< What it is.
};

/// What kindOf() looks at.
enum class Content {
  kBytes,        ///< The bytes of a file, at least the first 4,096.
  kText,         ///< Its decoded text.
  kUnknownText,  ///< A text that is in no subtitle format.
};

/// The kind of a file; null if it may hold subtitle text.
const Kind* kindOf(Content content, std::string_view looked) noexcept;

inline bool isOfKind(const Kind* found, FileKind kind) noexcept {
  return found != nullptr && found->kind == kind;
}

}  // namespace kssubtitle::importing
