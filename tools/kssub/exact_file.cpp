// A subtitle file as the fixed readers answer it, whatever its text width.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <set>
#include <utility>

#include "kssubtitle/import/ksFixedReaders.h"
#include "kssubtitle/import/ksImportParser.h"
#include "kssubtitle/manager/ksSubtitleManager.h"
#include "kssubtitle/parsers/ass/ksAssParser.h"
#include "kssubtitle/parsers/srt/ksSrtParser.h"
#include "tools/kssub/file_handle.h"
#include "tools/kssub/report_text.h"
#include "tools/kssub/subtitle_file.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

using Cues = std::vector<Cue>;

// The pointer, not the length: the text ends at its first NUL; stale characters may follow.
template <typename Text>
Cue makeCue(long long start, long long end, const Text& text) {
  std::string shown = utf8Text(text.getData());
  if (shown.starts_with('\n')) shown.erase(0, 1);
  return {start, end, std::move(shown)};
}

// Nothing is shown only if the text is empty, without even a line feed: an ASS script without
// events answers time 0 with such a record after it was asked for its duration.
template <typename Answer>
std::optional<Cue> shownCue(const Answer& answer) {
  if (answer.text.isEmpty()) return std::nullopt;
  return makeCue(answer.start, answer.end, answer.text);
}

template <typename Record>
Cue cueOfRecord(const Record& record) {
  if constexpr (requires { record.startTime; }) {
    return makeCue(record.startTime, record.endTime, record.text);
  } else {
    return makeCue(record.start, record.end, record.text);
  }
}

template <typename Parser>
Cues recordsOf(const std::string& path) {
  Cues records;
  Parser parser;
  parser.Open(path.c_str());
  for (const auto& [key, record] : parser.sessions) {
    records.push_back(cueOfRecord(record));
  }
  return records;
}

bool isWide(const std::string& path) {
  char head[2] = {};
  const FileHandle file(std::fopen(path.c_str(), "rb"));
  return file && std::fread(head, 1, 2, file.get()) == 2 && std::string_view(head, 2) == "\xFF\xFE";
}

/// What the file holds; the manager only says what is shown.
Cues readRecords(const std::string& path) {
  if (path.ends_with(".srt")) {
    return isWide(path) ? recordsOf<ksSrtParserU>(path) : recordsOf<ksSrtParser>(path);
  }
  return isWide(path) ? recordsOf<ksAssParserU>(path) : recordsOf<ksAssParser>(path);
}

/// The only times at which the answer can change, sorted.
std::set<long long> turningTimes(const Cues& records) {
  std::set<long long> times{0};
  for (const Cue& record : records) {
    times.insert(record.start);
    times.insert(record.end + 1);
  }
  times.erase(times.begin(), times.lower_bound(0));
  return times;
}

std::string hiddenRecords(std::ptrdiff_t count) {
  if (count == 0) return "";
  return std::to_string(count) + (count == 1 ? " record" : " records") +
         " of the file never shown (invalid times, or covered by others)";
}

/// A pipe would block, and a device might never end.
void requireRegularFile(const std::string& path) {
  std::error_code ignored;
  const auto status = std::filesystem::status(path, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throwCannotOpen(path, "not a regular file");
  }
}

[[noreturn]] void throwRefusalByFixedReaders(const std::string& path) {
  ksImportParser parser;
  if (!parser.Open(path.c_str())) throwRefusal(path, parser.report());
  throwCannotOpen(path, ksWhyFixedReadersDiffer(path.c_str()).front().sentence);
}

constexpr bool concernsWholeFile(ksImportConditionCode code) {
  return code == ksImportConditionCode::kEncoding || code == ksImportConditionCode::kLineEnds;
}

class ExactFile : public SubtitleFile {
 public:
  explicit ExactFile(const std::string& path) : path_(path) {
    requireRegularFile(path);
    if (!manager_.Open(path.c_str())) throwRefusalByFixedReaders(path);
    for (const ksImportCondition& condition : ksWhyFixedReadersDiffer(path.c_str())) {
      if (!concernsWholeFile(condition.code)) continue;
      std::cerr << "kssub: " << terminalText(path) << ": note: " << condition.sentence << '\n';
    }
  }

  long long duration() override { return manager_.DurationTime(); }

  std::optional<Cue> cueAt(long long time) override {
    std::optional<Cue> cue = shownCue(manager_.GetSubTitle(time));
    return cue ? cue : shownCue(manager_.GetSubTitleU(time));
  }

  /// Each cue that is ever the answer, once, in the order of first appearance.
  Listing list(Order /*order*/) override {
    const Cues records = readRecords(path_);
    Listing listing;
    std::set<Cue> shown;
    for (const long long time : turningTimes(records)) {
      const std::optional<Cue> cue = cueAt(time);
      if (cue && shown.insert(*cue).second) listing.cues.push_back(*cue);
    }
    listing.summary = hiddenRecords(
        std::ranges::count_if(records, [&](const Cue& record) { return !shown.contains(record); }));
    return listing;
  }

  std::vector<std::string> notes(std::string_view /*path*/) const override { return {}; }

 private:
  std::string path_;
  ksSubtitleManager manager_;
};

}  // namespace

std::unique_ptr<SubtitleFile> openExact(const std::string& path) {
  return std::make_unique<ExactFile>(path);
}

}  // namespace kssub
