// The values in the lines of a VobSub index.
#include "kssubtitle/import/pictures/index_values.h"

#include <algorithm>
#include <charconv>

#include "kssubtitle/import/formats/common/times.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

/// Consumes what follows the seconds of a time: a number of milliseconds, or a decimal fraction.
long long consumeMilliseconds(std::string_view& text) noexcept {
  std::string_view rest = text;
  const bool isNumber = consumeCharacter(rest, ':');
  if (!isNumber && !consumeCharacter(rest, '.') && !consumeCharacter(rest, ',')) return 0;
  const auto digits = consumeDigits(rest);
  if (!digits) return 0;
  text = rest;
  return isNumber ? digits->value : millisecondsOfFraction(*digits);
}

}  // namespace

std::optional<std::uint64_t> consumeHexadecimal(std::string_view& text) noexcept {
  constexpr std::ptrdiff_t kMostDigits = 15;
  const std::string_view rest = withoutLeadingBlanks(text);
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value, 16);
  const std::ptrdiff_t digits = end - rest.data();
  if (error != std::errc() || digits > kMostDigits) return std::nullopt;
  text = rest.substr(static_cast<std::size_t>(digits));
  return value;
}

std::optional<Pair> readPair(std::string_view text, std::string_view separators, Pair bounds) {
  const auto inBounds = [&](long long n) { return n >= bounds.x && n <= bounds.y; };
  const auto x = consumeInteger(text);
  const std::size_t at = text.find_first_of(separators);
  if (!x || at == text.npos) return std::nullopt;
  text.remove_prefix(at + 1);
  const auto y = consumeInteger(text);
  if (!y || !inBounds(*x) || !inBounds(*y)) return std::nullopt;
  return Pair{static_cast<int>(*x), static_cast<int>(*y)};
}

std::optional<long long> consumeIndexTime(std::string_view& text) noexcept {
  std::string_view rest = text;
  const bool isNegative = consumeSign(rest);
  const auto clock = consumeClock(rest);
  if (!clock || clock->fields != 3) return std::nullopt;
  const long long time = clock->seconds * 1000 + consumeMilliseconds(rest);
  if (time > kLongestTime) return std::nullopt;
  text = rest;
  return isNegative ? -time : time;
}

std::optional<long long> readShift(std::string_view text) noexcept {
  if (const auto time = consumeIndexTime(text)) return time;
  const auto milliseconds = consumeInteger(text);
  return milliseconds ? std::optional(std::clamp(*milliseconds, -kLongestTime, kLongestTime))
                      : std::nullopt;
}

std::optional<std::string_view> valueOf(std::string_view text, std::string_view key) noexcept {
  const std::size_t at = findNoCase(text, key);
  if (at == text.npos) return std::nullopt;
  text.remove_prefix(at + key.size());
  return consumeCharacter(text, ':') ? std::optional(text) : std::nullopt;
}

bool isOn(std::string_view value) noexcept {
  return startsWithNoCase(value, "on") || value.starts_with('1');
}

}  // namespace kssubtitle::importing
