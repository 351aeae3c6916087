// How the encoding of a text is told.
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

bool isMostlyUtf8(const Utf8Count& count) noexcept {
  constexpr std::size_t kSequencesPerBadByte = 20;
  return count.sequences / kSequencesPerBadByte >= count.badBytes && count.sequences > 0;
}

/// What a name without a byte order means in front of these bytes.
EncodingKind kindInFrontOf(std::string_view bytes, std::string_view name, EncodingKind kind) {
  const bool isOpen = kind != EncodingKind::kUtf8 && kind != EncodingKind::kCodePage &&
                      lowerOf(name.back()) != 'e';  // neither "...LE" nor "...BE"
  if (!isOpen) return kind;
  return encodingByMark(bytes).value_or(encodingByZeros(bytes).value_or(kind));
}

}  // namespace

Encoding encodingNamed(std::string_view name) {
  for (const KindName& entry : kKindNames) {
    if (equalNoCase(entry.name, name)) return encodingOf(entry.kind);
  }
  return {EncodingKind::kCodePage, std::string(name)};
}

std::optional<EncodingKind> encodingByMark(std::string_view bytes) noexcept {
  constexpr std::pair<std::string_view, EncodingKind> kMarks[] = {
      {"\xEF\xBB\xBF"sv, EncodingKind::kUtf8},
      {"\xFF\xFE\0\0"sv, EncodingKind::kUtf32Le},  // before UTF-16LE, whose mark begins it
      {"\0\0\xFE\xFF"sv, EncodingKind::kUtf32Be},
      {"\xFF\xFE"sv, EncodingKind::kUtf16Le},
      {"\xFE\xFF"sv, EncodingKind::kUtf16Be},
  };
  for (const auto& [mark, kind] : kMarks) {
    if (bytes.starts_with(mark)) return kind;
  }
  return std::nullopt;
}

// Digits, punctuation and line ends have zero bytes in always the same places, whatever the
// language; those of other characters are rare.
std::optional<EncodingKind> encodingByZeros(std::string_view bytes) noexcept {
  constexpr std::size_t kLooked = 4096;
  bytes = bytes.substr(0, std::min(bytes.size(), kLooked));
  if (bytes.find('\0') == bytes.npos) return std::nullopt;
  std::array<std::size_t, 4> zeros{};
  for (std::size_t i = 0; i < bytes.size(); ++i) zeros[i % 4] += bytes[i] == '\0' ? 1U : 0U;
  const std::size_t quads = bytes.size() / 4;
  const auto nearlyAll = [quads](std::size_t n) { return quads > 0 && n >= quads - quads / 16; };
  if (nearlyAll(zeros[3]) && nearlyAll(zeros[2])) return EncodingKind::kUtf32Le;
  if (nearlyAll(zeros[0]) && nearlyAll(zeros[1])) return EncodingKind::kUtf32Be;
  const std::size_t even = zeros[0] + zeros[2];
  const std::size_t odd = zeros[1] + zeros[3];
  const auto outweighs = [quads](std::size_t a, std::size_t b) {
    return a > quads / 4 && a / 3 >= b;
  };
  if (outweighs(odd, even)) return EncodingKind::kUtf16Le;
  if (outweighs(even, odd)) return EncodingKind::kUtf16Be;
  return std::nullopt;
}

FoundEncoding findEncoding(std::string_view bytes, const EncodingHints& hints) {
  if (!hints.given.empty()) {
    Encoding given = encodingNamed(hints.given);
    const EncodingKind kind = kindInFrontOf(bytes, hints.given, given.kind);
    return {kind == given.kind ? given : encodingOf(kind), ksImportEncodingSource::kGiven};
  }
  if (const auto kind = encodingByMark(bytes)) {
    return {encodingOf(*kind), ksImportEncodingSource::kBom};
  }
  if (const auto kind = encodingByZeros(bytes)) {
    return {encodingOf(*kind), ksImportEncodingSource::kNulBytes};
  }
  const Utf8Count count = countUtf8(bytes);
  if (count.badBytes == 0 && (!count.cutAtEnd || count.sequences > 0)) {
    return {encodingOf(EncodingKind::kUtf8), ksImportEncodingSource::kValidUtf8, !count.cutAtEnd};
  }
  if (isMostlyUtf8(count)) {
    return {encodingOf(EncodingKind::kUtf8), ksImportEncodingSource::kMostlyUtf8};
  }
  if (const auto name = declaredEncoding(bytes); !name.empty()) {
    Encoding declared = encodingNamed(usualCodePage(name));
    // What can be read as ASCII is in none of the wider encodings.
    const bool isUtf8 = declared.kind == EncodingKind::kUtf8;
    if (isUtf8 || (declared.kind == EncodingKind::kCodePage && isAsciiCodePage(declared.name))) {
      return {std::move(declared), ksImportEncodingSource::kDeclared};
    }
  }
  if (const auto name = detectedEncoding(bytes); !name.empty()) {
    Encoding detected = encodingNamed(name);
    // The C library may have been installed without it.
    if (detected.kind != EncodingKind::kCodePage || isAsciiCodePage(detected.name)) {
      return {std::move(detected), ksImportEncodingSource::kDetected};
    }
  }
  const std::string_view fallback = hints.fallback.empty() ? kUsualFallback : hints.fallback;
  return {encodingNamed(fallback), ksImportEncodingSource::kFallback};
}

}  // namespace kssubtitle::importing
