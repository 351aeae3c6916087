// The text of a VobSub index: lines of a key, a colon and a value, in which comments begin with '#'
// or ';'.
#include "kssubtitle/import/pictures/index.h"

#include <algorithm>
#include <array>

#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

constexpr long long kLongest = 1'000'000'000'000;  // of any time, in milliseconds

int hexValue(char c) noexcept {
  if (isDigit(c)) return c - '0';
  c = lowerOf(c);
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// Takes a number of hexadecimal digits off the front of `text`, with the blanks before it; nothing
/// if there is none, or one of more than 15 digits.
std::optional<std::uint64_t> takeHex(std::string_view& text) noexcept {
  constexpr std::size_t kMostDigits = 15;
  const std::string_view rest = withoutLeadingBlanks(text);
  std::uint64_t value = 0;
  std::size_t count = 0;
  for (; count < rest.size() && hexValue(rest[count]) >= 0; ++count) {
    if (count == kMostDigits) return std::nullopt;
    value = value << 4 | static_cast<std::uint64_t>(hexValue(rest[count]));
  }
  if (count == 0) return std::nullopt;
  text = rest.substr(count);
  return value;
}

/// Reads colours with or without commas between them; returns how many there are.
template <std::size_t kCount>
std::size_t readColors(std::string_view text, std::array<std::uint32_t, kCount>& colors) noexcept {
  std::size_t count = 0;
  for (; count < kCount; consumeCharacter(text, ',')) {
    const auto color = takeHex(text);
    if (!color) break;
    colors[count++] = static_cast<std::uint32_t>(*color & 0xFFFFFF);
  }
  return count;
}

/// Takes two numbers within bounds off `text`, with `separator` between them.
std::optional<Pair> readPair(std::string_view text, std::string_view separator, Pair bounds) {
  const auto inBounds = [&](long long n) { return n >= bounds.x && n <= bounds.y; };
  const auto x = consumeInteger(text);
  const std::size_t at = text.find_first_of(separator);
  if (!x || at == text.npos) return std::nullopt;
  text.remove_prefix(at + 1);
  const auto y = consumeInteger(text);
  if (!y || !inBounds(*x) || !inBounds(*y)) return std::nullopt;
  return Pair{static_cast<int>(*x), static_cast<int>(*y)};
}

/// The milliseconds behind the seconds of a time: a number of them, or a decimal fraction.
long long takeMilliseconds(std::string_view& text) noexcept {
  std::string_view rest = text;
  const bool isNumber = consumeCharacter(rest, ':');
  if (!isNumber && !consumeCharacter(rest, '.') && !consumeCharacter(rest, ',')) return 0;
  const auto digits = consumeDigits(rest);
  if (!digits) return 0;
  text = rest;
  return isNumber ? digits->value : millisecondsOfFraction(*digits);
}

/// Takes "h:m:s:ms" with or without a sign off the front of `text`.
std::optional<long long> takeIndexTime(std::string_view& text) noexcept {
  std::string_view rest = text;
  const bool isNegative = consumeCharacter(rest, '-');
  if (!isNegative) consumeCharacter(rest, '+');
  long long time = 0;
  for (int field = 0; field < 3; ++field) {
    if (field > 0 && !consumeCharacter(rest, ':')) return std::nullopt;
    const auto digits = consumeDigits(rest);
    if (!digits || digits->value > kLongest) return std::nullopt;
    time = time * 60 + digits->value * 1000;
  }
  time += takeMilliseconds(rest);
  if (time > kLongest) return std::nullopt;
  text = rest;
  return isNegative ? -time : time;
}

/// A time, or a number of milliseconds.
std::optional<long long> readShift(std::string_view text) noexcept {
  if (const auto time = takeIndexTime(text)) return time;
  const auto milliseconds = consumeInteger(text);
  return milliseconds ? std::optional(std::clamp(*milliseconds, -kLongest, kLongest))
                      : std::nullopt;
}

/// What stands behind `key` and a colon; nothing if they are not in `text`.
std::optional<std::string_view> valueOf(std::string_view text, std::string_view key) noexcept {
  const std::size_t at = findNoCase(text, key);
  if (at == text.npos) return std::nullopt;
  text.remove_prefix(at + key.size());
  return consumeCharacter(text, ':') ? std::optional(text) : std::nullopt;
}

bool isOn(std::string_view value) noexcept {
  return startsWithNoCase(value, "on") || value.starts_with('1');
}

class IndexReader {
 public:
  explicit IndexReader(Notes& notes) : notes_(notes) {}

  void readLine(const Line& line) {
    line_ = line.number;
    const std::string_view text = withoutBlanks(line.text);
    if (text.empty() || text.front() == '#' || text.front() == ';') return;
    const std::size_t colon = std::min(text.find(':'), text.size());
    const std::string_view value = text.substr(std::min(colon + 1, text.size()));
    if (!readValue(withoutBlanks(text.substr(0, colon)), withoutBlanks(value))) {
      notes_.add(ksImportProblem::kLineIgnored, line_);
    }
  }

  PictureIndex finish() {
    for (IndexStream& stream : index_.streams) {
      for (IndexEntry& entry : stream.entries) entry.time += offset_;
    }
    return std::move(index_);
  }

 private:
  struct Key {
    std::string_view name;
    bool (IndexReader::*read)(std::string_view value);
  };

  /// False for a key that there is none of, and a value that cannot be read.
  bool readValue(std::string_view name, std::string_view value) {
    static constexpr Key kKeys[] = {{"timestamp", &IndexReader::readEntry},
                                    {"delay", &IndexReader::readDelay},
                                    {"id", &IndexReader::readStream},
                                    {"alt", &IndexReader::readName},
                                    {"size", &IndexReader::readSize},
                                    {"org", &IndexReader::readOrigin},
                                    {"scale", &IndexReader::readScale},
                                    {"alpha", &IndexReader::readAlpha},
                                    {"time offset", &IndexReader::readOffset},
                                    {"forced subs", &IndexReader::readForced},
                                    {"palette", &IndexReader::readPalette},
                                    {"custom colors", &IndexReader::readCustomColors},
                                    {"langidx", &IndexReader::readChoice},
                                    {"smooth", &IndexReader::leaveOut},
                                    {"fadein/out", &IndexReader::leaveOut},
                                    {"align", &IndexReader::leaveOut}};
    const auto* const key = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const Key& each) {
      return equalNoCase(each.name, name);
    });
    return key != std::end(kKeys) && (this->*key->read)(value);
  }

  bool readEntry(std::string_view value) {
    const auto time = takeIndexTime(value);
    auto position = valueOf(value, "filepos");
    const auto place = position ? takeHex(*position) : std::nullopt;
    if (!time) notes_.add(ksImportProblem::kTimeUnreadable, line_);
    if (!time || !place) return !time;
    if (index_.streams.empty()) choose(0);
    index_.streams[current_].entries.push_back({*time + delay_, *place, line_});
    return true;
  }
  /// Counts from here on to the end of the language, with those before it.
  bool readDelay(std::string_view value) {
    const auto delay = readShift(value);
    if (delay) delay_ = std::clamp(delay_ + *delay, -kLongest, kLongest);
    return delay.has_value();
  }
  bool readStream(std::string_view value) {
    constexpr long long kMostStreams = 100;  // more than can be found in any stream
    const std::string_view language = withoutBlanks(value.substr(0, value.find(',')));
    auto written = valueOf(value, "index");
    const auto number = written ? consumeInteger(*written)
                                : std::optional(static_cast<long long>(index_.streams.size()));
    if (!number || *number < 0 || *number >= kMostStreams) return false;
    choose(static_cast<int>(*number));
    delay_ = 0;
    if (language != "--") index_.streams[current_].language = language;
    return true;
  }
  bool readName(std::string_view value) {
    if (index_.streams.empty()) choose(0);
    index_.streams[current_].name = value;
    return true;
  }
  bool readSize(std::string_view value) {
    constexpr int kMost = 65535;
    return readPairTo(index_.size, value, "xX*", {1, kMost});
  }
  bool readOrigin(std::string_view value) {
    constexpr int kMost = 65535;
    return readPairTo(index_.origin, value, ",", {-kMost, kMost});
  }
  bool readScale(std::string_view value) {
    constexpr int kMost = 1000;
    return readPairTo(index_.scalePercent, value, ",", {1, kMost});
  }
  bool readAlpha(std::string_view value) {
    const auto percent = consumeInteger(value);
    if (!percent || *percent < 0 || *percent > 100) return false;
    index_.palette.alphaPercent = static_cast<int>(*percent);
    return true;
  }
  bool readOffset(std::string_view value) {
    const auto offset = readShift(value);
    offset_ = offset.value_or(offset_);
    return offset.has_value();
  }
  bool readForced(std::string_view value) {
    index_.showsForcedOnly = isOn(value);
    return true;
  }
  bool readPalette(std::string_view value) {
    std::array<std::uint32_t, 16> colors{};
    if (readColors(value, colors) == 0) return false;
    index_.palette.colors = colors;
    return true;
  }
  bool readCustomColors(std::string_view value) {
    const auto colors = valueOf(value, "colors");
    const auto transparent = valueOf(value, "tridx");
    if (!isOn(value)) return true;
    Palette::Custom custom;
    if (!colors || readColors(*colors, custom.colors) == 0) return false;
    const std::string_view digits = withoutLeadingBlanks(transparent.value_or(""));
    for (std::size_t i = 0; i < custom.isTransparent.size() && i < digits.size(); ++i) {
      custom.isTransparent[i] = digits[i] == '1';
    }
    index_.palette.custom = custom;
    return true;
  }
  bool readChoice(std::string_view value) {
    const auto number = consumeInteger(value);
    if (number) index_.chosenStream = static_cast<int>(std::clamp(*number, -1LL, 100LL));
    return number.has_value();
  }
  /// What is a matter of the reader's taste, or moves pictures that stand at their place already.
  // NOLINTNEXTLINE(readability-convert-member-functions-to-static)
  bool leaveOut(std::string_view /*value*/) { return true; }

  static bool readPairTo(Pair& pair, std::string_view value, std::string_view separator,
                         Pair bounds) {
    const auto read = readPair(value, separator, bounds);
    pair = read.value_or(pair);
    return read.has_value();
  }

  /// What follows is of the language of this number.
  void choose(int number) {
    const auto found = std::find_if(index_.streams.begin(), index_.streams.end(),
                                    [&](const IndexStream& s) { return s.number == number; });
    current_ = static_cast<std::size_t>(found - index_.streams.begin());
    if (found == index_.streams.end()) index_.streams.push_back({number, {}, {}, {}});
  }

  Notes& notes_;
  PictureIndex index_;
  int line_ = 0;
  std::size_t current_ = 0;  // a place in the streams
  long long delay_ = 0;
  long long offset_ = 0;
};

}  // namespace

PictureIndex readIndex(std::string_view text, Notes& notes) {
  IndexReader reader(notes);
  for (const Line& line : Lines(text)) reader.readLine(line);
  return reader.finish();
}

}  // namespace kssubtitle::importing
