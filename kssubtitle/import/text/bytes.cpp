// The bytes of a file.
#include "kssubtitle/import/text/bytes.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>

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
  ksImportRefusal refusal;
};

// What people take for subtitles: pictures, the archives and films that they come in.
constexpr Signature kSignatures[] = {
    {"\0\0\1\xBA"sv, 0, ksImportRefusal::kPictures},  // a program stream
    {"# VobSub index file"sv, 0, ksImportRefusal::kPictures},
    {"\xEF\xBB\xBF# VobSub index file"sv, 0, ksImportRefusal::kPictures},
    {"\x1F\x8B"sv, 0, ksImportRefusal::kBinary},            // gzip
    {"PK\3\4"sv, 0, ksImportRefusal::kBinary},              // zip
    {"7z\xBC\xAF\x27\x1C"sv, 0, ksImportRefusal::kBinary},  // 7-Zip
    {"Rar!\x1A\7"sv, 0, ksImportRefusal::kBinary},          // RAR
    {"\xFD"
     "7zXZ\0"sv,
     0, ksImportRefusal::kBinary},                                        // xz
    {"BZh"sv, 0, ksImportRefusal::kBinary},                               // bzip2
    {"\x28\xB5\x2F\xFD"sv, 0, ksImportRefusal::kBinary},                  // Zstandard
    {"\x1A\x45\xDF\xA3"sv, 0, ksImportRefusal::kBinary},                  // Matroska
    {"ftyp"sv, 4, ksImportRefusal::kBinary},                              // MP4
    {"RIFF"sv, 0, ksImportRefusal::kBinary},                              // AVI
    {"\x89PNG"sv, 0, ksImportRefusal::kBinary},                           // PNG
    {"%PDF-"sv, 0, ksImportRefusal::kBinary},                             // PDF
    {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, 0, ksImportRefusal::kBinary},  // an old text document
};

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

ksImportRefusal refusalOf(std::string_view bytes) noexcept {
  if (bytes.empty()) return ksImportRefusal::kEmpty;
  if (isPgs(bytes)) return ksImportRefusal::kPictures;
  for (const Signature& signature : kSignatures) {
    if (bytes.size() >= signature.offset &&
        bytes.substr(signature.offset).starts_with(signature.bytes)) {
      return signature.refusal;
    }
  }
  return ksImportRefusal::kNone;
}

}  // namespace kssubtitle::importing
