// The bytes of a file.
#include "kssubtitle/import/text/bytes.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>

#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/parsers/sub_fopen.h"

namespace kssubtitle::importing {
namespace {

using namespace std::string_view_literals;

using Stream = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

constexpr std::size_t kBlock = 65536;

/// The size of a regular file; 0 of anything else, which has to be read to be known.
std::size_t sizeOf(std::FILE* file) noexcept {
  struct stat status {};
  if (fstat(fileno(file), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size < 0) return 0;
  return static_cast<std::size_t>(status.st_size);
}

/// Reads until the end of the file, or until there is a byte more than `maxBytes`.
void readUpTo(std::FILE* file, std::size_t maxBytes, std::string& bytes) {
  const std::size_t most = maxBytes < bytes.max_size() ? maxBytes + 1 : maxBytes;
  std::size_t size = 0;
  for (std::size_t room = std::max(sizeOf(file) + 1, kBlock); size < most; room = 2 * size) {
    bytes.resize(std::min(room, most));
    size += std::fread(bytes.data() + size, 1, bytes.size() - size, file);
    if (size < bytes.size()) break;
  }
  bytes.resize(size);
}

struct Signature {
  std::string_view bytes;
  std::size_t offset;
  RefusalAtSight refusal;
};

constexpr RefusalAtSight pictures(std::string_view sentence) {
  return {ksImportRefusal::kPictures, sentence};
}

constexpr RefusalAtSight binary(std::string_view sentence) {
  return {ksImportRefusal::kBinary, sentence};
}

constexpr RefusalAtSight kVobSubIndex =
    pictures("The file is a VobSub index, which leads to pictures of subtitles, not to text.");
constexpr RefusalAtSight kPgs =
    pictures("The file is a PGS stream, which holds pictures of subtitles, not text.");

constexpr RefusalAtSight kOfficeDocument =
    binary("The file is a document of an office program, not a subtitle file.");

// What people take for subtitles: pictures, the archives and films that they come in.
constexpr Signature kSignatures[] = {
    {"\0\0\1\xBA"sv, 0,
     pictures("The file is a VobSub stream, which holds pictures of subtitles, not text.")},
    {"\x1F\x8B"sv, 0, binary("The file is compressed with gzip: unpack it first.")},
    {"PK\3\4"sv, 0, binary("The file is a ZIP archive: unpack it first.")},
    {"7z\xBC\xAF\x27\x1C"sv, 0, binary("The file is a 7z archive: unpack it first.")},
    {"Rar!\x1A\7"sv, 0, binary("The file is a RAR archive: unpack it first.")},
    {"\xFD\x37zXZ\0"sv, 0, binary("The file is compressed with xz: unpack it first.")},
    {"BZh"sv, 0, binary("The file is compressed with bzip2: unpack it first.")},
    {"\x28\xB5\x2F\xFD"sv, 0, binary("The file is compressed with Zstandard: unpack it first.")},
    {"\x1A\x45\xDF\xA3"sv, 0, binary("The file is a Matroska film or its tracks, not text.")},
    {"ftyp"sv, 4, binary("The file is an MP4 film, not text.")},
    {"RIFF"sv, 0, binary("The file is a film or a sound, not text.")},
    {"\x89PNG"sv, 0, binary("The file is a picture, not text.")},
    {"\xFF\xD8\xFF"sv, 0, binary("The file is a picture, not text.")},
    {"%PDF-"sv, 0, binary("The file is a PDF document, not a subtitle file.")},
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, 0, kOfficeDocument},
};

/// By its comment at the front, or by the entries that every index has.
bool isVobSubIndex(std::string_view bytes) noexcept {
  constexpr std::size_t kLooked = 4096;
  const std::string_view head = bytes.substr(0, std::min(bytes.size(), kLooked));
  if (head.find("# VobSub index file") < 4) return true;  // a mark may stand in front
  return findNoCase(head, "timestamp:") != head.npos && findNoCase(head, "filepos:") != head.npos;
}

/// A document that is a ZIP archive, by the name of its first file; an OpenDocument has its type
/// there, which a book has too.
bool isZippedDocument(std::string_view bytes) noexcept {
  constexpr std::size_t kFirstName = 30;
  if (!bytes.starts_with("PK\3\4") || bytes.size() < kFirstName) return false;
  const std::string_view name = bytes.substr(kFirstName);
  return name.starts_with("[Content_Types].xml") || name.starts_with("mimetypeapplication/vnd.");
}

/// PGS: "PG", two times of 32 bits, a kind of segment and its length.
bool isPgs(std::string_view bytes) noexcept {
  constexpr std::size_t kHeader = 13;
  constexpr std::string_view kSegments = "\x14\x15\x16\x17\x80";
  return bytes.size() >= kHeader && bytes.starts_with("PG") &&
         kSegments.find(bytes[10]) != std::string_view::npos;
}

}  // namespace

FileBytes readFile(const char* path, std::size_t maxBytes) {
  const auto failed = [](int error) { return FileBytes{{}, ksImportRefusal::kCannotOpen, error}; };
  errno = 0;
  const Stream stream(sub_fopen(path, "rb"), &std::fclose);
  if (!stream) return failed(errno);
  if (sizeOf(stream.get()) > maxBytes) return {{}, ksImportRefusal::kTooLarge, 0};
  std::setvbuf(stream.get(), nullptr, _IONBF, 0);  // every read is a large one
  FileBytes file;
  readUpTo(stream.get(), maxBytes, file.bytes);
  if (std::ferror(stream.get()) != 0) return failed(errno);
  if (file.bytes.size() > maxBytes) return {{}, ksImportRefusal::kTooLarge, 0};
  return file;
}

RefusalAtSight refusalOf(std::string_view bytes) noexcept {
  if (bytes.empty()) return {ksImportRefusal::kEmpty, {}};
  if (bytes.find_first_not_of('\0') == bytes.npos) {
    return binary("The file holds zero bytes alone: it was not saved or not sent whole.");
  }
  if (isPgs(bytes)) return kPgs;
  if (isVobSubIndex(bytes)) return kVobSubIndex;
  if (isZippedDocument(bytes)) return kOfficeDocument;
  for (const Signature& signature : kSignatures) {
    if (bytes.size() >= signature.offset &&
        bytes.substr(signature.offset).starts_with(signature.bytes)) {
      return signature.refusal;
    }
  }
  return {};
}

std::string_view sentenceOnOtherText(std::string_view text) noexcept {
  while (!text.empty() && (isBlank(text.front()) || text.front() == '\n')) text.remove_prefix(1);
  if (text.empty()) return "The file is empty but for white space.";
  if (startsWithNoCase(text, "<!doctype html") || startsWithNoCase(text, "<html")) {
    return "The file is a web page, perhaps one that a site sent in place of subtitles.";
  }
  if (text.starts_with("{\\rtf")) return "The file is a rich text document: save it as plain text.";
  return {};
}

}  // namespace kssubtitle::importing
