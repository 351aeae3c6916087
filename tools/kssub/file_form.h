// The outer form of a subtitle file, and what is known to give odd answers in it.
#pragma once

#include <stdexcept>
#include <string>

namespace kssub {

/// Why a file cannot be used. Its text names the file.
class FileError : public std::runtime_error {
 public:
  FileError(const std::string& path, const std::string& reason);
};

enum class Format { kUnknown, kSubRip, kAss };
enum class Mark { kNone, kUtf8, kUtf16LittleEndian, kUtf16BigEndian, kUtf32LittleEndian };

struct FileForm {
  Format format = Format::kUnknown;  ///< By the extension.
  Mark mark = Mark::kNone;
  bool isWide = false;               ///< Its cues are wide text.
  unsigned long long size = 0;       ///< In bytes.
  unsigned long long lineFeeds = 0;  ///< Those behind a carriage return included.
  unsigned long long crLfs = 0;
  unsigned long long loneCrs = 0;
  bool endsInLineFeed = false;
  bool holdsZeros = false;  ///< A zero byte, or unit of UTF-16.
};

/// Reads the file at `path`. Throws FileError if that fails.
FileForm examine(const std::string& path);

/// Says on standard error what in `form` is known to give odd answers, in one line.
void printRemarks(const std::string& path, const FileForm& form);

/// Why the library refuses a file of this form.
std::string refusalOf(const FileForm& form);

}  // namespace kssub
