// Files that appear or change only when all is written.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "tools/kssub/file_handle.h"

namespace kssub {

/// A file under a temporary name, beside the one that it becomes in the end. Every member throws
/// std::runtime_error, naming the file, if that fails.
class OutputFile {
 public:
  /// Only regular files are replaced: a device, such as the null device, would be gone.
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

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
