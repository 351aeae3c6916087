// Reads a file as a plain loop does, and in one pass without a copy.
#include "benchmarks/yardsticks.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace bench {
namespace {

using File = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

File openFile(const std::string& path) {
  File file(std::fopen(path.c_str(), "rb"), &std::fclose);
  if (file == nullptr) throw std::runtime_error("cannot open " + path);
  return file;
}

bool isScript(const std::string& path) { return path.ends_with(".ass"); }

/// Consumes what precedes the separator, and the separator.
std::string_view take(std::string_view& rest, char separator) {
  const std::size_t length = std::min(rest.find(separator), rest.size());
  const std::string_view piece = rest.substr(0, length);
  rest.remove_prefix(std::min(length + 1, rest.size()));
  return piece;
}

/// The time that `text` begins with; its last field counts `unit` milliseconds.
std::int64_t timeIn(std::string_view text, int unit) {
  std::int64_t fields[4] = {};
  for (std::int64_t& field : fields) {
    const char* const end = std::from_chars(text.data(), text.data() + text.size(), field).ptr;
    text.remove_prefix(std::min(static_cast<std::size_t>(end - text.data()) + 1, text.size()));
  }
  return ((fields[0] * 60 + fields[1]) * 60 + fields[2]) * 1000 + fields[3] * unit;
}

/// The times of a SubRip time line, without a text.
CueView timesIn(std::string_view line) {
  constexpr std::string_view kArrow = "--> ";
  return {timeIn(line, 1), timeIn(line.substr(line.find(kArrow) + kArrow.size()), 1), {}};
}

/// The event of a script's line.
CueView eventIn(std::string_view line) {
  constexpr std::size_t kColumnsBeforeText = 9;
  std::string_view columns[kColumnsBeforeText];
  for (std::string_view& column : columns) column = take(line, ',');
  return {timeIn(columns[1], 10), timeIn(columns[2], 10), line};
}

bool isEvent(std::string_view line) { return line.starts_with("Dialogue:"); }

std::vector<std::string> nonEmptyLines(std::FILE* file) {
  std::vector<std::string> lines;
  std::string line;
  char buffer[129];
  while (std::fgets(buffer, sizeof buffer, file) != nullptr) {
    line += buffer;
    if (line.back() != '\n') continue;
    line.pop_back();
    if (!line.empty()) lines.push_back(line);
    line.clear();
  }
  return lines;
}

std::map<int, Cue> subRipCues(const std::vector<std::string>& lines) {
  std::map<int, Cue> cues;
  Cue* cue = nullptr;
  for (const std::string& line : lines) {
    if (line.find_first_not_of("0123456789") == line.npos) {
      cue = &cues[std::stoi(line)];
    } else if (cue != nullptr && line.find("-->") != line.npos) {
      const CueView times = timesIn(line);
      cue->start = times.start;
      cue->end = times.end;
    } else if (cue != nullptr) {
      (cue->text += '\n') += line;
    }
  }
  return cues;
}

/// The text without its override blocks, the first line break replaced.
std::string shownText(std::string_view text) {
  std::string shown = "\n";
  while (!text.empty()) {
    shown += take(text, '{');
    take(text, '}');
  }
  const std::size_t lineBreak = shown.find("\\N");
  if (lineBreak != shown.npos) shown.replace(lineBreak, 2, "\n");
  return shown;
}

std::map<int, Cue> scriptCues(const std::vector<std::string>& lines) {
  std::map<int, Cue> cues;
  int key = 0;
  for (const std::string& line : lines) {
    if (!isEvent(line)) continue;
    const CueView event = eventIn(line);
    cues[++key] = {event.start, event.end, shownText(event.text)};
  }
  return cues;
}

std::vector<CueView> subRipViews(std::string_view rest) {
  std::vector<CueView> cues;
  while (!rest.empty()) {
    take(rest, '\n');
    CueView cue = timesIn(take(rest, '\n'));
    cue.text = rest.substr(0, rest.find("\n\n"));
    rest.remove_prefix(std::min(cue.text.size() + 2, rest.size()));
    cues.push_back(cue);
  }
  return cues;
}

std::vector<CueView> scriptViews(std::string_view rest) {
  std::vector<CueView> cues;
  while (!rest.empty()) {
    const std::string_view line = take(rest, '\n');
    if (isEvent(line)) cues.push_back(eventIn(line));
  }
  return cues;
}

}  // namespace

PlainFile plainLoop(const std::string& path) {
  PlainFile result;
  result.lines = nonEmptyLines(openFile(path).get());
  result.cues = isScript(path) ? scriptCues(result.lines) : subRipCues(result.lines);
  return result;
}

OnePassFile readOnly(const std::string& path) {
  const std::size_t size = std::filesystem::file_size(path);
  OnePassFile result{std::make_unique_for_overwrite<char[]>(size), 0, {}};
  result.size = std::fread(result.bytes.get(), 1, size, openFile(path).get());
  return result;
}

OnePassFile onePass(const std::string& path) {
  OnePassFile result = readOnly(path);
  const std::string_view text(result.bytes.get(), result.size);
  result.cues = isScript(path) ? scriptViews(text) : subRipViews(text);
  return result;
}

}  // namespace bench
