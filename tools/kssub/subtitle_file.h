// An open subtitle file, without its text width.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "kssubtitle/manager/ksSubtitleManager.h"
#include "tools/kssub/file_form.h"

namespace kssub {

/// A cue with its text fit for a terminal.
struct Cue {
  long long start;
  long long end;
  std::string text;  ///< Lines with a line feed between them.

  bool operator==(const Cue&) const = default;
  bool operator<(const Cue& other) const {
    return std::tie(start, end, text) < std::tie(other.start, other.end, other.text);
  }
};

/// A cue from the text that the library keeps for it, which begins with a line feed.
Cue makeCue(long long start, long long end, const ksString& text);
Cue makeCue(long long start, long long end, const ksWString& text);

/// The lines of a cue's text; none for the empty text.
std::vector<std::string_view> linesOf(std::string_view text);

class SubtitleFile {
 public:
  /// Opens the file at `path`, and says on standard error what in its form is known to give odd
  /// answers. Throws FileError if it cannot be opened.
  explicit SubtitleFile(const std::string& path);

  const FileForm& form() const { return form_; }
  long long duration() { return manager_.DurationTime(); }
  std::optional<Cue> cueAt(long long time);

 private:
  FileForm form_;
  ksSubtitleManager manager_;
};

}  // namespace kssub
