// Files that appear or change only once they are complete.
#include "tools/kssub/output_file.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "tools/kssub/terminal_text.h"

namespace kssub {

OutputFile::OutputFile(const std::string& path)
    : path_(path), temporaryPath_(path + "." + std::to_string(getpid()) + ".part") {
  std::error_code ignored;
  const auto status = std::filesystem::symlink_status(path, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    fail("not a regular file");
  }
  file_.reset(std::fopen(temporaryPath_.c_str(), "wbx"));
  if (!file_) failBySystem();
}

OutputFile::~OutputFile() {
  if (!temporaryPath_.empty()) std::remove(temporaryPath_.c_str());
}

void OutputFile::write(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) failBySystem();
}

void OutputFile::finish() {
  if (std::fclose(file_.release()) != 0 ||
      std::rename(temporaryPath_.c_str(), path_.c_str()) != 0) {
    failBySystem();
  }
  temporaryPath_.clear();
}

void OutputFile::fail(const std::string& reason) const {
  throw std::runtime_error(terminalText(path_) + ": cannot write: " + reason);
}

void OutputFile::failBySystem() const { fail(std::generic_category().message(errno)); }

}  // namespace kssub
