// The encodings that text may have, and how one is told from another.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

enum class EncodingKind { kUtf8, kUtf16Le, kUtf16Be, kUtf32Le, kUtf32Be, kCodePage };

struct Encoding {
  EncodingKind kind;
  std::string name;  // as the report shows it, and iconv knows it
};

/// The encoding of that name, in any case; a code page is not looked up.
Encoding encodingNamed(std::string_view name);

/// What a host says of the encoding; either may be empty.
struct EncodingHints {
  std::string_view given;
  std::string_view fallback;
};

struct FoundEncoding {
  Encoding encoding;
  ksImportEncodingSource source;
  bool isValid = false;  ///< All of the text was seen to be UTF-8 already.
};

/// The encoding of the text in `bytes`.
FoundEncoding findEncoding(std::string_view bytes, const EncodingHints& hints);

/// The encoding that a mark at the front of `bytes` tells.
std::optional<EncodingKind> encodingByMark(std::string_view bytes) noexcept;
/// UTF-16 or UTF-32 without a mark, told by where the zero bytes stand.
std::optional<EncodingKind> encodingByZeros(std::string_view bytes) noexcept;
/// The name that the first lines of an ASCII-like text declare; empty if none.
std::string_view declaredEncoding(std::string_view bytes) noexcept;
/// The code page of subtitles that the statistics of the bytes tell; empty if none.
std::string detectedEncoding(std::string_view bytes);
/// The code page that is meant where `name` is said, as far as people use one for the other.
std::string usualCodePage(std::string_view name);

}  // namespace kssubtitle::importing
