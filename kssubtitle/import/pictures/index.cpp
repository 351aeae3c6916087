// The text of a VobSub index: lines of a key, a colon and a value; comments begin with '#' or ';'.
#include "kssubtitle/import/pictures/index.h"

#include <algorithm>
#include <array>

#include "kssubtitle/import/formats/common/language_tag.h"
#include "kssubtitle/import/pictures/index_values.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

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

  /// False for an unknown key, and a value that cannot be read.
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
                                    {"smooth", &IndexReader::ignore},
                                    {"fadein/out", &IndexReader::ignore},
                                    {"align", &IndexReader::ignore}};
    const auto* const key = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const Key& each) {
      return equalNoCase(each.name, name);
    });
    return key != std::end(kKeys) && (this->*key->read)(value);
  }

  bool readEntry(std::string_view value) {
    const auto time = consumeIndexTime(value);
    auto position = valueOf(value, "filepos");
    const auto place = position ? consumeHexadecimal(*position) : std::nullopt;
    if (!time) notes_.add(ksImportProblem::kTimeUnreadable, line_);
    if (!time || !place) return !time;
    if (index_.streams.empty()) choose(0);
    index_.streams[current_].entries.push_back({*time + delay_, *place, line_});
    return true;
  }
  /// Adds to the delays before it, from here to the end of the language.
  bool readDelay(std::string_view value) {
    const auto delay = readShift(value);
    if (delay) delay_ = std::clamp(delay_ + *delay, -kLongestTime, kLongestTime);
    return delay.has_value();
  }
  bool readStream(std::string_view value) {
    constexpr long long kMostStreams = 100;  // more than any stream has
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
  /// What is up to the player, or moves pictures that are in place already.
  // NOLINTNEXTLINE(readability-convert-member-functions-to-static)
  bool ignore(std::string_view /*value*/) { return true; }

  static bool readPairTo(Pair& pair, std::string_view value, std::string_view separator,
                         Pair bounds) {
    const auto read = readPair(value, separator, bounds);
    pair = read.value_or(pair);
    return read.has_value();
  }

  /// What follows belongs to the language of this number.
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

/// The position of the first stream that matches; the number of streams if there is none.
template <typename Matches>
std::size_t findStream(const std::vector<IndexStream>& streams, Matches matches) {
  const auto found = std::find_if(streams.begin(), streams.end(), matches);
  return static_cast<std::size_t>(found - streams.begin());
}

}  // namespace

PictureIndex readIndex(std::string_view text, Notes& notes) {
  IndexReader reader(notes);
  for (const Line& line : Lines(text)) reader.readLine(line);
  return reader.finish();
}

std::size_t streamToSelect(const PictureIndex& index, std::string_view language) {
  const std::vector<IndexStream>& streams = index.streams;
  const std::size_t wanted = findStream(streams, [&](const IndexStream& stream) {
    return !language.empty() &&
           (equalNoCase(stream.language, language) || equalNoCase(stream.name, language));
  });
  if (wanted < streams.size()) return wanted;
  const auto hasPictures = [](const IndexStream& stream) { return !stream.entries.empty(); };
  const std::size_t chosen = findStream(streams, [&](const IndexStream& stream) {
    return stream.number == index.chosenStream && hasPictures(stream);
  });
  if (chosen < streams.size()) return chosen;
  const std::size_t first = findStream(streams, hasPictures);
  return first < streams.size() ? first : 0;
}

bool hasLanguage(const PictureIndex& index, std::string_view wanted) {
  const auto isUnnamed = [](const IndexStream& stream) { return stream.language.empty(); };
  const auto isWanted = [wanted](const IndexStream& stream) {
    return isLanguage(stream.language, wanted) || isLanguage(stream.name, wanted);
  };
  return wanted.empty() || std::ranges::all_of(index.streams, isUnnamed) ||
         std::ranges::any_of(index.streams, isWanted);
}

}  // namespace kssubtitle::importing
