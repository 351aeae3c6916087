// Files that appear or change only when all is written.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "tools/kssub/file_handle.h"

namespace kssub {

/// A file under a temporary name, beside the one that it becomes in the end. Every member throws
/// std::runtime_error, naming the file, if that fails.
class NewFile {
 public:
  /// Only regular files are replaced: a device, such as the null device, would be gone.
  explicit NewFile(const std::string& path);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  std::FILE* stream() { return file_.get(); }
  void write(std::string_view bytes);
  /// Gives the file its name.
  void finish();
  [[noreturn]] void fail(const std::string& reason) const;

 private:
  [[noreturn]] void failBySystem() const;

  std::string path_;
  std::string temporaryPath_;  // empty once the file has its name
  FileHandle file_;
};

}  // namespace kssub
