// An open subtitle file, without its text width.
#include "tools/kssub/subtitle_file.h"

#include <algorithm>
#include <utility>

#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

// The pointer, not the length: the text ends at its first NUL, stale characters may follow.
template <typename Text>
Cue cueOf(long long start, long long end, const Text& text) {
  std::string shown = terminalText(text.getData());
  if (shown.starts_with('\n')) shown.erase(0, 1);
  return {start, end, std::move(shown)};
}

// No text at all, not even a line feed, is what tells that nothing is shown: an ASS script without
// events answers time 0 with such a record once it was asked for its duration.
template <typename Answer>
std::optional<Cue> shownCue(const Answer& answer) {
  if (answer.text.isEmpty()) return std::nullopt;
  return makeCue(answer.start, answer.end, answer.text);
}

}  // namespace

Cue makeCue(long long start, long long end, const ksString& text) {
  return cueOf(start, end, text);
}

Cue makeCue(long long start, long long end, const ksWString& text) {
  return cueOf(start, end, text);
}

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

SubtitleFile::SubtitleFile(const std::string& path) : form_(examine(path)) {
  if (!manager_.Open(path.c_str())) throw FileError(path, refusalOf(form_));
  printRemarks(path, form_);
}

std::optional<Cue> SubtitleFile::cueAt(long long time) {
  std::optional<Cue> cue = shownCue(manager_.GetSubTitle(time));
  return cue ? cue : shownCue(manager_.GetSubTitleU(time));
}

}  // namespace kssub
