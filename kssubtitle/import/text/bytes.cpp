// The bytes of a file.
#include "kssubtitle/import/text/bytes.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "kssubtitle/parsers/sub_fopen.h"

namespace kssubtitle::importing {
namespace {

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

}  // namespace kssubtitle::importing
