// How the encoding of a text is found.
#include "kssubtitle/import/text/encodings.h"

#include <algorithm>
#include <array>
#include <utility>

#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/code_pages.h"
#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kUsualFallback = "windows-1252";

struct KindName {
  std::string_view name;
  EncodingKind kind;
};

// The first name of a kind is the one to report.
constexpr KindName kKindNames[] = {
    {"UTF-8", EncodingKind::kUtf8},       {"UTF-16LE", EncodingKind::kUtf16Le},
    {"UTF-16BE", EncodingKind::kUtf16Be}, {"UTF-32LE", EncodingKind::kUtf32Le},
    {"UTF-32BE", EncodingKind::kUtf32Be}, {"UTF8", EncodingKind::kUtf8},
    {"UTF-16", EncodingKind::kUtf16Le},   {"UTF16", EncodingKind::kUtf16Le},
    {"UCS-2", EncodingKind::kUtf16Le},    {"UTF-32", EncodingKind::kUtf32Le},
    {"UTF32", EncodingKind::kUtf32Le},    {"UCS-4", EncodingKind::kUtf32Le},
    {"ASCII", EncodingKind::kUtf8},       {"US-ASCII", EncodingKind::kUtf8},
};

Encoding encodingOf(EncodingKind kind) {
  const auto* const found = std::find_if(std::begin(kKindNames), std::end(kKindNames),
                                         [&](const KindName& entry) { return entry.kind == kind; });
  return {kind, std::string(found->name)};
}

/// In text that is nearly ASCII, such as English with a few notes and quotation marks, sequences
/// hardly ever come about by chance, so that a bare majority of them will do.
bool isMostlyUtf8(const Utf8Count& count, std::size_t size) noexcept {
  constexpr std::size_t kSequencesPerBadByte = 20;
  constexpr std::size_t kBytesPerOddOne = 20;
  const bool isNearlyAscii = size / kBytesPerOddOne >= 2 * count.sequences + count.badBytes;
  return count.sequences / (isNearlyAscii ? 1 : kSequencesPerBadByte) >= count.badBytes &&
         count.sequences > 0;
}

/// WebVTT is UTF-8 by its standard, so a few odd bytes are damage; more show another encoding.
bool isWebVttOfUtf8(std::string_view bytes, const Utf8Count& count) noexcept {
  constexpr std::size_t kFew = 8;
  return bytes.starts_with("WEBVTT") && count.badBytes <= kFew;
}

/// The bytes of a code unit; of a code page they may differ from character to character.
std::size_t unitSize(EncodingKind kind) noexcept {
  switch (kind) {
    case EncodingKind::kUtf16Le:
    case EncodingKind::kUtf16Be:
      return 2;
    case EncodingKind::kUtf32Le:
    case EncodingKind::kUtf32Be:
      return 4;
    case EncodingKind::kUtf8:
    case EncodingKind::kCodePage:
      break;
  }
  return 1;
}

/// The encoding that the host names. "UTF-16" and "UTF-32" leave the byte order to the bytes; bytes
/// that begin with another encoding's BOM, or have their NULs as it has, prove the name wrong.
FoundEncoding givenEncoding(std::string_view bytes, std::string_view name) {
  const Encoding given = encodingNamed(name);
  const bool namesByteOrder = unitSize(given.kind) == 1 || lowerOf(name.back()) == 'e';
  if (namesByteOrder) return {given, ksImportEncodingSource::kGiven};
  const auto byBom = encodingByBom(bytes);
  const EncodingKind kind = byBom.value_or(encodingByNuls(bytes).value_or(given.kind));
  if (unitSize(kind) == unitSize(given.kind)) {
    return {encodingOf(kind), ksImportEncodingSource::kGiven};
  }
  return {encodingOf(kind),
          byBom ? ksImportEncodingSource::kBom : ksImportEncodingSource::kNulBytes};
}

/// What the first lines declare, if text that can be read as ASCII may be in it.
std::optional<Encoding> usableDeclaration(std::string_view bytes) {
  const std::string_view name = declaredEncoding(bytes);
  if (name.empty()) return std::nullopt;
  Encoding declared = encodingNamed(usualCodePage(name));
  const bool isUsable =
      declared.kind == EncodingKind::kUtf8 ||
      (declared.kind == EncodingKind::kCodePage && isAsciiCodePage(declared.name));
  return isUsable ? std::optional(std::move(declared)) : std::nullopt;
}

/// What the statistics detect, if the C library was installed with it.
std::optional<Encoding> usableDetection(std::string_view bytes) {
  const std::string name = detectedEncoding(bytes);
  if (name.empty()) return std::nullopt;
  Encoding detected = encodingNamed(name);
  const bool isUsable = detected.kind != EncodingKind::kCodePage || isAsciiCodePage(detected.name);
  return isUsable ? std::optional(std::move(detected)) : std::nullopt;
}

}  // namespace

Encoding encodingNamed(std::string_view name) {
  for (const KindName& entry : kKindNames) {
    if (equalNoCase(entry.name, name)) return encodingOf(entry.kind);
  }
  return {EncodingKind::kCodePage, std::string(name)};
}

std::optional<EncodingKind> encodingByBom(std::string_view bytes) noexcept {
  constexpr std::pair<std::string_view, EncodingKind> kBoms[] = {
      {"\xEF\xBB\xBF"sv, EncodingKind::kUtf8},
      {"\xFF\xFE\0\0"sv, EncodingKind::kUtf32Le},  // before UTF-16LE, as it begins alike
      {"\0\0\xFE\xFF"sv, EncodingKind::kUtf32Be},
      {"\xFF\xFE"sv, EncodingKind::kUtf16Le},
      {"\xFE\xFF"sv, EncodingKind::kUtf16Be},
  };
  for (const auto& [bom, kind] : kBoms) {
    if (bytes.starts_with(bom)) return kind;
  }
  return std::nullopt;
}

// Digits, punctuation and line ends have their NULs always in the same places, whatever the
// language; those of other characters are rare.
std::optional<EncodingKind> encodingByNuls(std::string_view bytes) noexcept {
  constexpr std::size_t kLooked = 4096;
  bytes = bytes.substr(0, std::min(bytes.size(), kLooked));
  bytes = bytes.substr(0, bytes.find_last_not_of('\0') + 1);  // the last ones may be padding
  if (bytes.find('\0') == bytes.npos) return std::nullopt;
  std::array<std::size_t, 4> nuls{};
  for (std::size_t i = 0; i < bytes.size(); ++i) nuls[i % 4] += bytes[i] == '\0' ? 1U : 0U;
  const std::size_t quads = bytes.size() / 4;
  const auto nearlyAll = [quads](std::size_t n) { return quads > 0 && n >= quads - quads / 16; };
  if (nearlyAll(nuls[3]) && nearlyAll(nuls[2])) return EncodingKind::kUtf32Le;
  if (nearlyAll(nuls[0]) && nearlyAll(nuls[1])) return EncodingKind::kUtf32Be;
  const std::size_t even = nuls[0] + nuls[2];
  const std::size_t odd = nuls[1] + nuls[3];
  const auto outweighs = [quads](std::size_t a, std::size_t b) {
    return a > quads / 4 && a / 3 >= b;
  };
  if (outweighs(odd, even)) return EncodingKind::kUtf16Le;
  if (outweighs(even, odd)) return EncodingKind::kUtf16Be;
  return std::nullopt;
}

FoundEncoding findEncoding(std::string_view bytes, const EncodingHints& hints) {
  if (!hints.given.empty()) return givenEncoding(bytes, hints.given);
  if (const auto kind = encodingByBom(bytes)) {
    return {encodingOf(*kind), ksImportEncodingSource::kBom};
  }
  if (const auto kind = encodingByNuls(bytes)) {
    return {encodingOf(*kind), ksImportEncodingSource::kNulBytes};
  }
  const Utf8Count count = countUtf8(bytes);
  if (count.badBytes == 0 && (!count.cutAtEnd || count.sequences > 0)) {
    return {encodingOf(EncodingKind::kUtf8), ksImportEncodingSource::kValidUtf8, !count.cutAtEnd};
  }
  if (isMostlyUtf8(count, bytes.size())) {
    return {encodingOf(EncodingKind::kUtf8), ksImportEncodingSource::kMostlyUtf8};
  }
  if (isWebVttOfUtf8(bytes, count)) {
    return {encodingOf(EncodingKind::kUtf8), ksImportEncodingSource::kDeclared};
  }
  if (auto declared = usableDeclaration(bytes)) {
    return {std::move(*declared), ksImportEncodingSource::kDeclared};
  }
  if (auto detected = usableDetection(bytes)) {
    return {std::move(*detected), ksImportEncodingSource::kDetected};
  }
  const std::string_view fallback = hints.fallback.empty() ? kUsualFallback : hints.fallback;
  return {encodingNamed(fallback), ksImportEncodingSource::kFallback};
}

}  // namespace kssubtitle::importing
