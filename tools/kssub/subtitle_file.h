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

/// A cue; its text is UTF-8 with line feeds between lines.
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
  std::string summary;  ///< What else is known about the file, in a few words.
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
  /// One line per problem of the file, which is at `path`.
  virtual std::vector<std::string> notes(std::string_view path) const = 0;
};

/// Which file is read, and how.
struct FileRequest {
  std::string path;      ///< "-" for standard input.
  bool isExact = false;  ///< By the fixed readers, which ignore the options.
  ksImportOptions options;
};

/// Opens a file. Throws std::runtime_error, naming the file, if it cannot be read.
std::unique_ptr<SubtitleFile> openSubtitles(const FileRequest& request);
/// By the import library.
std::unique_ptr<SubtitleFile> openImported(const FileRequest& request);
/// By the fixed readers, which go by the file's extension. Prints to standard error if they
/// misread its encoding or its line ends. Throws std::runtime_error.
std::unique_ptr<SubtitleFile> openExact(const std::string& path);

}  // namespace kssub
