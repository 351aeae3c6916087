// Lines of two times, which announce the text of a cue below them.
#include "kssubtitle/import/formats/common/time_lines.h"

#include "kssubtitle/import/formats/common/numbers.h"

namespace kssubtitle::importing {
namespace {

/// The time of three fields that `text` is.
std::optional<WrittenTime> fullTimeOf(std::string_view text) noexcept {
  const auto time = consumeTime(text);
  if (!time || time->fields != 3 || !withoutBlanks(text).empty()) return std::nullopt;
  return time;
}

std::optional<PairOfTimes> pairAround(std::string_view line, std::size_t comma) noexcept {
  const auto start = fullTimeOf(line.substr(0, comma));
  const auto end = fullTimeOf(line.substr(comma + 1));
  if (!start || !end) return std::nullopt;
  return PairOfTimes{*start, *end};
}

}  // namespace

std::optional<PairOfTimes> pairOfTimes(std::string_view line) noexcept {
  std::string_view rest = line;
  const auto start = consumeTime(rest);
  if (!start || start->fields != 3) return std::nullopt;
  if (!consumeCharacter(rest, ',')) {
    // It may have been taken for that of a fraction.
    const std::size_t comma = line.find(',');
    return comma == line.npos ? std::nullopt : pairAround(line, comma);
  }
  const auto end = consumeTime(rest);
  if (!end || end->fields != 3 || !withoutBlanks(rest).empty()) return std::nullopt;
  return PairOfTimes{*start, *end};
}

bool mayPrecedeText(std::string_view line) noexcept {
  line = withoutTrailingBlanks(line);
  const bool endsInDigit = !line.empty() && isDigit(line.back());
  if (endsInDigit && line.find(',') != line.npos && pairOfTimes(line)) return true;
  return line.find("-->") != line.npos;
}

}  // namespace kssubtitle::importing
