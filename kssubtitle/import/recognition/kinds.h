// What a file is that holds no subtitles as text.
#pragma once

#include <string_view>

#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

/// The kinds that more than their refusal is asked of.
enum class FileKind { kOther, kVobSubStream, kVobSubIndex };

/// One row of the table of kinds.
struct Kind {
  FileKind kind = FileKind::kOther;
  ksImportRefusal refusal;    ///< Why a reader of text refuses it.
  std::string_view sentence;  ///< What it is.
};

/// What is looked at.
enum class Content {
  kBytes,        ///< The bytes of a file, or the first 4,096 of them.
  kText,         ///< Its decoded text.
  kUnknownText,  ///< A text that is in no subtitle format.
};

/// What a file is, by the given look at it; null if it may be subtitles as text.
const Kind* kindOf(Content content, std::string_view looked) noexcept;

inline bool isOfKind(const Kind* found, FileKind kind) noexcept {
  return found != nullptr && found->kind == kind;
}

}  // namespace kssubtitle::importing
