// Lines of two times, which announce the text of a cue below them.
#include "kssubtitle/import/formats/common/time_lines.h"

#include <algorithm>

#include "kssubtitle/import/formats/common/numbers.h"

namespace kssubtitle::importing {
namespace {

/// Consumes a time of three fields.
std::optional<WrittenTime> consumeFullTime(std::string_view& text) noexcept {
  const auto time = consumeTime(text);
  return time && time->fields == 3 ? time : std::nullopt;
}

/// The pair of the times that begin `before` and `after` a comma.
std::optional<PairOfTimes> pairAround(std::string_view before, std::string_view after) noexcept {
  const auto start = consumeFullTime(before);
  const auto end = start ? consumeFullTime(after) : std::nullopt;
  if (!end) return std::nullopt;
  return PairOfTimes{*start, *end, withoutBlanks(before).empty() && withoutBlanks(after).empty()};
}

/// The pair around the first comma at `from` or later.
std::optional<PairOfTimes> pairAroundComma(std::string_view line, std::size_t from) noexcept {
  const std::size_t comma = line.find(',', from);
  if (comma == line.npos) return std::nullopt;
  return pairAround(line.substr(0, comma), line.substr(comma + 1));
}

/// `line` without signs that people put before a time; '+' and '-' belong to it.
std::string_view withoutLeadingSigns(std::string_view line) noexcept {
  constexpr std::string_view kSigns = "!\"#$%&'()*,./:;<=>?@[\\]^_`{|}~";
  return line.substr(std::min(line.find_first_not_of(kSigns), line.size()));
}

}  // namespace

std::optional<PairOfTimes> pairOfTimes(std::string_view line) noexcept {
  const std::string_view times = withoutLeadingSigns(line);
  std::string_view rest = times;
  if (!consumeFullTime(rest)) return std::nullopt;
  // The first comma may be that of a fraction, or have been taken for one.
  const std::size_t startEnd = times.size() - rest.size();
  auto pair = pairAroundComma(times, 0);
  if (!pair) pair = pairAroundComma(times, startEnd);
  if (pair) pair->isAlone = pair->isAlone && times.size() == line.size();
  return pair;
}

bool mayPrecedeText(std::string_view line) noexcept {
  line = withoutTrailingBlanks(line);
  const bool endsInDigit = !line.empty() && isDigit(line.back());
  if (endsInDigit && line.find(',') != line.npos) {
    const auto times = pairOfTimes(line);
    if (times && times->isAlone) return true;
  }
  return line.find("-->") != line.npos;
}

}  // namespace kssubtitle::importing
