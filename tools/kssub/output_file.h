// Files that appear or change only once they are complete.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "tools/kssub/file_handle.h"

namespace kssub {

/// Writes a file under a temporary name beside the final one. Every member throws
/// std::runtime_error, naming the file, if it fails.
class OutputFile {
 public:
  /// Replaces only regular files: replacing a device, such as the null device, would remove it.
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  std::FILE* stream() { return file_.get(); }
  void write(std::string_view bytes);
  /// Gives the file its final name.
  void finish();
  [[noreturn]] void fail(const std::string& reason) const;

 private:
  [[noreturn]] void failBySystem() const;

  std::string path_;
  std::string temporaryPath_;  // empty once the file has its final name
  FileHandle file_;
};

}  // namespace kssub
