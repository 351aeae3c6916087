// SubRip: lines become cues by their look alone. The two widths share every step here but for the
// rules in SrtRules.
#include "kssubtitle/parsers/srt/ksSrtParser.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "kssubtitle/parsers/decimal.h"
#include "kssubtitle/parsers/reading/load_file.h"
#include "kssubtitle/parsers/session_table.h"
#include "kssubtitle/parsers/times.h"
#include "kssubtitle/strings/view.h"

namespace {

using namespace kssubtitle::internal;

/// What differs between the two widths, on purpose.
template <typename Char>
struct SrtRules;

template <>
struct SrtRules<char> {
  /// The arrow and the space after it, whatever character is in the space's place.
  static constexpr std::size_t kArrowAndGap = 4;
  /// Whether both times are cut after the separator at `q` of the end time.
  /// A separator that is missing (npos) cuts nothing off here.
  static bool cutsAt(std::size_t q, std::size_t startLength) noexcept {
    return q + 1 < startLength;
  }
};

template <>
struct SrtRules<wchar_t> {
  static constexpr std::size_t kArrowAndGap = 3;
  static bool cutsAt(std::size_t q, std::size_t startLength) noexcept { return startLength > q; }
};

template <typename Char>
using View = std::basic_string_view<Char>;

/// `text` from `start` on; empty where that is past its end.
template <typename Char>
View<Char> from(View<Char> text, std::size_t start) noexcept {
  return text.substr(std::min(start, text.size()));
}

/// The number before the separator at `position`; in the whole text where there is none.
template <typename Char>
int numberUpTo(View<Char> text, std::size_t position) {
  return decimalOf(text.substr(0, position));
}

/// The position of the arrow in a time line; below 1 in any other line.
template <typename Char>
int arrowIn(const ksBasicString<Char>& line) noexcept {
  constexpr Char kArrow[] = {'-', '-', '>'};
  return static_cast<int>(viewOf(line).find(kArrow, 0, std::size(kArrow)));
}

template <typename Char>
void trim(ksBasicString<Char>& line) {
  line.TrimLeft();
  line.TrimRight();
}

/// Turns lines into cues.
template <typename Char, typename Sessions>
class SrtConverter {
 public:
  SrtConverter(std::vector<ksBasicString<Char>>& lines, Sessions& sessions)
      : lines_(lines), sessions_(sessions) {}

  void convert() {
    for (std::size_t i = 0; i < lines_.size(); ++i) convertLine(i);
    SessionAccess::buildTable(sessions_);
  }

 private:
  void convertLine(std::size_t i) {
    ksBasicString<Char>& line = lines_[i];
    trim(line);
    if (line.isNumeric()) {
      key_ = decimalOf(viewOf(line));
    } else if (const int arrow = arrowIn(line); arrow > 0) {
      readTimes(viewOf(line), static_cast<std::size_t>(arrow));
    } else {
      addText(i);
    }
  }

  /// Deliberate: a text line brings along every second line after it, up to one that is not text,
  /// whatever the lines between are, and trims each once more.
  void addText(std::size_t i) {
    auto& cue = SessionAccess::record(sessions_, key_);
    cue.start = start_;
    cue.end = end_;
    cue.text += static_cast<Char>('\n');
    for (std::size_t j = i; j < lines_.size(); j += 2) {
      ksBasicString<Char>& line = lines_[j];
      trim(line);
      if (line.isEmpty() || !isText(line)) return;
      cue.text += line;
    }
  }

  /// Whether a line that is not empty is a text line.
  static bool isText(const ksBasicString<Char>& line) noexcept {
    return !line.isNumeric() && arrowIn(line) <= 0;
  }

  /// A line in the usual form, which every reading of it agrees on, is read at once.
  void readTimes(View<Char> line, std::size_t arrow) {
    constexpr char kUsual[] = "00:00:00,000 --> 00:00:00,000";
    int fields[8];
    if (line.size() == std::size(kUsual) - 1 && readForm(kUsual, line.data(), fields)) {
      start_ = milliseconds32(fields[0], fields[1], fields[2], fields[3]);
      end_ = milliseconds32(fields[4], fields[5], fields[6], fields[7]);
    } else {
      readTimesLeniently(line, arrow);
    }
  }

  void readTimesLeniently(View<Char> line, std::size_t arrow) {
    ksBasicString<Char> left(typename ksBasicString<Char>::String(line.substr(0, arrow)));
    ksBasicString<Char> right(
        typename ksBasicString<Char>::String(from(line, arrow + SrtRules<Char>::kArrowAndGap)));
    left.clearSpaces();
    right.clearSpaces();
    View<Char> start = viewOf(left);
    View<Char> end = viewOf(right);
    constexpr std::size_t kFields = 3;
    int startFields[kFields];
    int endFields[kFields];
    for (std::size_t i = 0; i < kFields; ++i) {
      const Char separator = i < 2 ? ':' : ',';
      startFields[i] = numberUpTo(start, start.find(separator));
      const std::size_t q = end.find(separator);
      endFields[i] = numberUpTo(end, q);
      // Deliberate: the separator's place in the end time cuts the start time as well.
      if (SrtRules<Char>::cutsAt(q, start.size())) {
        start = from(start, q + 1);
        end = from(end, q + 1);
      }
    }
    start_ = milliseconds32(startFields[0], startFields[1], startFields[2], numberUpTo(start, 3));
    end_ = milliseconds32(endFields[0], endFields[1], endFields[2], numberUpTo(end, 3));
  }

  std::vector<ksBasicString<Char>>& lines_;
  Sessions& sessions_;
  int key_ = 0;
  long long start_ = 0;
  long long end_ = 0;
};

template <typename Sessions>
long long latestEnd(const Sessions& sessions) noexcept {
  long long latest = 0;
  for (const auto& [key, cue] : sessions) latest = std::max(latest, cue.end);
  return latest;
}

}  // namespace

template class ksSessionMap<SRC_SESSION_ST>;
template class ksSessionMap<SRC_SESSION_ST_U>;

bool ksSrtParser::Open(const char* path) {
  sessions.clear();
  return openAndConvert<kSubRipFile<char>>(*this, path, &ksSrtParser::ConvertBufToSrtMap);
}

long long ksSrtParser::DurationTime() { return latestEnd(sessions); }

SUBTITLE_ST ksSrtParser::GetSubTitle(long long t) { return answerAt<SUBTITLE_ST>(sessions, t); }

SUBTITLE_ST_U ksSrtParser::GetSubTitleU(long long) { return {}; }

bool ksSrtParser::ReadString(ksString& out) { return readStreamLine<kSubRipFile<char>>(file, out); }

bool ksSrtParser::ConvertBufToSrtMap() {
  SrtConverter<char, decltype(sessions)>(lines, sessions).convert();
  return true;
}

bool ksSrtParserU::Open(const char* path) {
  sessions.clear();
  return openAndConvert<kSubRipFile<wchar_t>>(*this, path, &ksSrtParserU::ConvertBufToSrtMap);
}

long long ksSrtParserU::DurationTime() { return latestEnd(sessions); }

SUBTITLE_ST ksSrtParserU::GetSubTitle(long long) { return {}; }

SUBTITLE_ST_U ksSrtParserU::GetSubTitleU(long long t) {
  return answerAt<SUBTITLE_ST_U>(sessions, t);
}

bool ksSrtParserU::ReadString(ksWString& out) {
  return readStreamLine<kSubRipFile<wchar_t>>(file, out);
}

bool ksSrtParserU::ConvertBufToSrtMap() {
  SrtConverter<wchar_t, decltype(sessions)>(lines, sessions).convert();
  return true;
}
