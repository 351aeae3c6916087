// The encodings that text may have, and which one it has.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

enum class EncodingKind { kUtf8, kUtf16Le, kUtf16Be, kUtf32Le, kUtf32Be, kCodePage };

struct Encoding {
  EncodingKind kind;
  std::string name;  // as the report shows it and iconv knows it
};

/// The encoding of that name, in any case. What is not Unicode is taken for a code page unseen.
Encoding encodingNamed(std::string_view name);

/// What a host says about the encoding; either may be empty.
struct EncodingHints {
  std::string_view given;
  std::string_view fallback;
};

struct FoundEncoding {
  Encoding encoding;
  ksImportEncodingSource source;
  bool isValid = false;  ///< The whole text is known to be valid UTF-8.
};

/// The encoding of the text in `bytes`.
FoundEncoding findEncoding(std::string_view bytes, const EncodingHints& hints);

/// The encoding whose BOM begins `bytes`.
std::optional<EncodingKind> encodingByBom(std::string_view bytes) noexcept;
/// UTF-16 or UTF-32 without a BOM, by where the NULs are.
std::optional<EncodingKind> encodingByNuls(std::string_view bytes) noexcept;
/// The name that the first lines of a text declare, as far as they are ASCII; empty without one.
std::string_view declaredEncoding(std::string_view bytes) noexcept;
/// The code page that the statistics of the bytes suggest; empty if subtitles do not use it.
std::string detectedEncoding(std::string_view bytes);
/// The code page that people mean when they write `name`.
std::string usualCodePage(std::string_view name);

}  // namespace kssubtitle::importing
