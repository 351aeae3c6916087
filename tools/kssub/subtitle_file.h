// An open subtitle file, whichever library reads it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "kssubtitle/import/ksImportOptions.h"

namespace kssub {

/// A cue, its text UTF-8 with a line feed between lines.
struct Cue {
  long long start;
  long long end;
  std::string text;

  bool operator==(const Cue&) const = default;
  bool operator<(const Cue& other) const {
    return std::tie(start, end, text) < std::tie(other.start, other.end, other.text);
  }
};

enum class Order { kByTime, kAsInFile };

struct Listing {
  std::vector<Cue> cues;
  std::string summary;  ///< What is known of the file beside its cues, in a few words.
};

class SubtitleFile {
 public:
  SubtitleFile() = default;
  SubtitleFile(const SubtitleFile&) = delete;
  SubtitleFile& operator=(const SubtitleFile&) = delete;
  virtual ~SubtitleFile() = default;

  virtual long long duration() = 0;
  virtual std::optional<Cue> cueAt(long long time) = 0;
  virtual Listing list(Order order) = 0;
  /// A line on each problem of the file that `path` names.
  virtual std::vector<std::string> notes(std::string_view path) const = 0;
};

/// Which file is read, and how.
struct FileRequest {
  std::string path;      ///< "-" for standard input.
  bool isExact = false;  ///< By the fixed readers, which know none of the options.
  ksImportOptions options;
};

/// Opens a file. Throws std::runtime_error, whose text names the file, if it cannot be read.
std::unique_ptr<SubtitleFile> openSubtitles(const FileRequest& request);
/// By the import library.
std::unique_ptr<SubtitleFile> openImported(const FileRequest& request);
/// By the fixed readers, which tell a file's format by its name. Says on standard error what in its
/// form is known to give odd answers. Throws FileError.
std::unique_ptr<SubtitleFile> openExact(const std::string& path);

}  // namespace kssub
