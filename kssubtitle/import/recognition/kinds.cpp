// The table of kinds: files that people mistake for subtitles, and the archives and films that
// contain them. A new kind needs a row here.
#include "kssubtitle/import/recognition/kinds.h"

#include <algorithm>
#include <cstddef>

#include "kssubtitle/import/formats/common/time_lines.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

using namespace std::string_view_literals;

constexpr unsigned byteAt(std::string_view bytes, std::size_t at) noexcept {
  return static_cast<unsigned char>(bytes[at]);
}

bool isOfZeros(std::string_view bytes) noexcept {
  return bytes.find_first_not_of('\0') == bytes.npos;
}

/// A pack of an MPEG program stream, by ISO/IEC 11172-1 or 13818-1. A stream may be cut anywhere.
bool isProgramStream(std::string_view bytes) noexcept {
  constexpr std::size_t kLooked = 4096;
  constexpr std::string_view kPack = "\0\0\1\xBA"sv;
  bytes = bytes.substr(0, kLooked);
  for (std::size_t at = bytes.find(kPack); at != bytes.npos; at = bytes.find(kPack, at + 1)) {
    const std::size_t clock = at + kPack.size();
    if (clock == bytes.size()) return true;
    if (byteAt(bytes, clock) >> 6 == 1 || byteAt(bytes, clock) >> 4 == 2) return true;
  }
  return false;
}

/// The kinds of PGS segments: palette, object, composition, windows and end.
constexpr bool isPgsSegment(char kind) noexcept {
  return "\x14\x15\x16\x17\x80"sv.find(kind) != std::string_view::npos;
}

/// PGS in a file of its own: each segment follows "PG" and two times of 32 bits.
bool isPgs(std::string_view bytes) noexcept {
  constexpr std::size_t kHeader = 13;
  return bytes.size() >= kHeader && bytes.starts_with("PG") && isPgsSegment(bytes[10]);
}

/// PGS as films carry it: a composition, whose length fits the number of its objects, and the
/// segments that follow from there, each of which says how long it is.
bool isRawPgs(std::string_view bytes) noexcept {
  constexpr std::size_t kHead = 3;  // a kind and a length
  constexpr std::size_t kComposition = 11;
  constexpr std::size_t kEnough = 3;
  const auto lengthAt = [bytes](std::size_t at) {
    return byteAt(bytes, at + 1) << 8 | byteAt(bytes, at + 2);
  };
  if (bytes.size() < kHead + kComposition || bytes.front() != '\x16') return false;
  const unsigned objects = byteAt(bytes, kHead + kComposition - 1);
  const unsigned length = lengthAt(0);
  if (length < kComposition + 8 * objects || length > kComposition + 16 * objects) return false;
  std::size_t at = 0;
  std::size_t segments = 0;
  for (; segments < kEnough && at + kHead <= bytes.size(); ++segments) {
    if (!isPgsSegment(bytes[at])) return false;
    at += kHead + lengthAt(at);
  }
  return segments > 1;
}

/// A document that is a ZIP archive, by the name of its first file; an OpenDocument has its type
/// there, which an e-book has too.
bool isZippedDocument(std::string_view bytes) noexcept {
  constexpr std::size_t kFirstName = 30;
  if (!bytes.starts_with("PK\3\4") || bytes.size() < kFirstName) return false;
  const std::string_view name = bytes.substr(kFirstName);
  return name.starts_with("[Content_Types].xml") || name.starts_with("mimetypeapplication/vnd.");
}

/// By the comment that every program writes first, or by an entry.
bool isVobSubIndex(std::string_view text) noexcept {
  constexpr std::size_t kLookedForComment = 256;
  constexpr std::size_t kLookedForEntry = 16384;
  for (const Line& line : Lines(text.substr(0, kLookedForEntry))) {
    const std::string_view content = withoutLeadingBlanks(line.text);
    if (mayPrecedeText(content)) return false;  // which may say anything
    const bool isEntry = startsWithNoCase(content, "timestamp");
    if (isEntry && findNoCase(content, "filepos") != content.npos) return true;
    const bool isComment = content.starts_with('#') && line.begin < kLookedForComment;
    if (isComment && findNoCase(content, "vobsub index file") != content.npos) return true;
  }
  return false;
}

bool isBlankText(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(), [](char c) { return isBlank(c) || c == '\n'; });
}

/// `text` from its first character that is not white space.
std::string_view fromFirstVisible(std::string_view text) noexcept {
  return text.substr(std::min(text.find_first_not_of(" \t\r\v\f\n"), text.size()));
}

bool isWebPage(std::string_view text) noexcept {
  const std::string_view content = fromFirstVisible(text);
  return startsWithNoCase(content, "<!doctype html") || startsWithNoCase(content, "<html");
}

bool isRichText(std::string_view text) noexcept {
  return fromFirstVisible(text).starts_with("{\\rtf");
}

/// Whether a text has more control characters than anybody would write.
bool hasManyControls(std::string_view text) noexcept {
  constexpr std::size_t kLooked = 4096;
  text = text.substr(0, kLooked);
  const auto controls = std::count_if(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && !isBlank(c) && c != '\n' && c != '\x1A';
  });
  return static_cast<std::size_t>(controls) > text.size() / 32;
}

/// A row of the table. A kind is recognised by bytes at a place or by a function.
struct Row {
  Content content = Content::kBytes;
  std::string_view signature{};
  std::size_t offset = 0;
  bool (*matches)(std::string_view) noexcept = nullptr;
  Kind kind;
};

constexpr Kind binary(std::string_view sentence) noexcept {
  return {.refusal = ksImportRefusal::kBinary, .sentence = sentence};
}

constexpr Kind pictures(std::string_view sentence, FileKind kind = FileKind::kOther) noexcept {
  return {.kind = kind, .refusal = ksImportRefusal::kPictures, .sentence = sentence};
}

constexpr Kind otherText(std::string_view sentence) noexcept {
  return {.refusal = ksImportRefusal::kUnknownFormat, .sentence = sentence};
}

constexpr Kind kPgs =
    pictures("The file is a PGS stream, which holds pictures of subtitles, not text.");
constexpr Kind kOfficeDocument =
    binary("The file is a document of an office program, not a subtitle file.");
constexpr Kind kPicture = binary("The file is a picture, not text.");

constexpr Row kRows[] = {
    {.matches = isOfZeros,
     .kind = binary("The file holds zero bytes alone: it was not saved or not sent whole.")},
    {.matches = isProgramStream,
     .kind = pictures("The file is a VobSub stream, which holds pictures of subtitles, not text.",
                      FileKind::kVobSubStream)},
    {.matches = isPgs, .kind = kPgs},
    {.matches = isRawPgs, .kind = kPgs},
    {.matches = isZippedDocument, .kind = kOfficeDocument},
    {.signature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, .kind = kOfficeDocument},
    {.signature = "\x1F\x8B"sv,
     .kind = binary("The file is compressed with gzip: unpack it first.")},
    {.signature = "PK\3\4"sv, .kind = binary("The file is a ZIP archive: unpack it first.")},
    {.signature = "7z\xBC\xAF\x27\x1C"sv,
     .kind = binary("The file is a 7z archive: unpack it first.")},
    {.signature = "Rar!\x1A\7"sv, .kind = binary("The file is a RAR archive: unpack it first.")},
    {.signature = "\xFD\x37zXZ\0"sv,
     .kind = binary("The file is compressed with xz: unpack it first.")},
    {.signature = "BZh"sv, .kind = binary("The file is compressed with bzip2: unpack it first.")},
    {.signature = "\x28\xB5\x2F\xFD"sv,
     .kind = binary("The file is compressed with Zstandard: unpack it first.")},
    {.signature = "\x1A\x45\xDF\xA3"sv,
     .kind = binary("The file is a Matroska film or its tracks, not text.")},
    {.signature = "ftyp"sv, .offset = 4, .kind = binary("The file is an MP4 film, not text.")},
    {.signature = "RIFF"sv, .kind = binary("The file is a film, a sound or a picture, not text.")},
    {.signature = "\x89PNG"sv, .kind = kPicture},
    {.signature = "\xFF\xD8\xFF"sv, .kind = kPicture},
    {.signature = "%PDF-"sv, .kind = binary("The file is a PDF document, not a subtitle file.")},
    {.content = Content::kText,
     .matches = isVobSubIndex,
     .kind =
         pictures("The file is a VobSub index, which leads to pictures of subtitles, not to text.",
                  FileKind::kVobSubIndex)},
    {.content = Content::kUnknownText, .matches = hasManyControls, .kind = binary({})},
    {.content = Content::kUnknownText,
     .matches = isBlankText,
     .kind = otherText("The file is empty but for white space.")},
    {.content = Content::kUnknownText,
     .matches = isWebPage,
     .kind =
         otherText("The file is a web page, perhaps one that a site sent in place of subtitles.")},
    {.content = Content::kUnknownText,
     .matches = isRichText,
     .kind = otherText("The file is a rich text document: save it as plain text.")},
    {.content = Content::kUnknownText,
     .matches = [](std::string_view) noexcept { return true; },
     .kind = otherText({})},
};

bool matches(const Row& row, std::string_view looked) noexcept {
  if (row.matches != nullptr) return row.matches(looked);
  return looked.size() >= row.offset && looked.substr(row.offset).starts_with(row.signature);
}

}  // namespace

const Kind* kindOf(Content content, std::string_view looked) noexcept {
  const auto* const found = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& row) {
    return row.content == content && matches(row, looked);
  });
  return found == std::end(kRows) ? nullptr : &found->kind;
}

}  // namespace kssubtitle::importing
