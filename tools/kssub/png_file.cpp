// Pictures as PNG files, written by libpng.
#include "tools/kssub/png_file.h"

#include <png.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "tools/kssub/file_handle.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

[[noreturn]] void throwWriteError(const std::string& path, const std::string& reason) {
  throw std::runtime_error(terminalText(path) + ": cannot write: " + reason);
}

std::string systemReason() { return std::generic_category().message(errno); }

/// Another kind of file, such as a device, would be replaced by the picture, not written to.
void requireReplaceable(const std::string& path) {
  std::error_code ignored;
  const auto status = std::filesystem::symlink_status(path, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throwWriteError(path, "not a regular file");
  }
}

/// A file under a temporary name, beside the one that it becomes in the end.
class NewFile {
 public:
  explicit NewFile(const std::string& path)
      : path_(path),
        temporaryPath_(path + "." + std::to_string(getpid()) + ".part"),
        file_(std::fopen(temporaryPath_.c_str(), "wbx")) {
    if (!file_) throwWriteError(path_, systemReason());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    if (!temporaryPath_.empty()) std::remove(temporaryPath_.c_str());
  }

  std::FILE* stream() { return file_.get(); }
  void finish() {
    if (std::fclose(file_.release()) != 0 ||
        std::rename(temporaryPath_.c_str(), path_.c_str()) != 0) {
      throwWriteError(path_, systemReason());
    }
    temporaryPath_.clear();
  }

 private:
  std::string path_;
  std::string temporaryPath_;  // empty once the file has its name
  FileHandle file_;
};

}  // namespace

void writePng(const std::string& path, const Image& image) {
  requireReplaceable(path);
  NewFile file(path);
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  png.format = PNG_FORMAT_RGBA;
  errno = 0;
  if (png_image_write_to_stdio(&png, file.stream(), 0, image.rgba.data(), 0, nullptr) == 0) {
    throwWriteError(path, errno != 0 ? systemReason() : png.message);
  }
  file.finish();
}

}  // namespace kssub
