// Times as people write them.
#include "tools/kssub/times.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace kssub {
namespace {

constexpr long long kMostUnits = 1'000'000'000;  // hours or minutes; keeps the sum in range

std::optional<long long> parseNumber(std::string_view digits) {
  const auto isDigit = [](char c) { return '0' <= c && c <= '9'; };
  long long value = 0;
  const char* end = digits.data() + digits.size();
  const bool inRange = std::from_chars(digits.data(), end, value).ec == std::errc();
  if (!inRange || !std::ranges::all_of(digits, isDigit)) return std::nullopt;
  return value;
}

/// The one to three digits after the decimal separator.
std::optional<long long> parseFraction(std::string_view digits) {
  if (digits.empty() || digits.size() > 3) return std::nullopt;
  return parseNumber(std::string(digits).append(3 - digits.size(), '0'));
}

/// The seconds of [hours:]minutes:seconds.
std::optional<long long> parseClock(std::string_view text) {
  long long total = 0;
  for (int field = 0; field < 3; ++field) {
    const std::size_t colon = text.find(':');
    const std::optional<long long> value = parseNumber(text.substr(0, colon));
    if (!value || *value > (field == 0 ? kMostUnits : 59)) return std::nullopt;
    total = total * 60 + *value;
    if (colon == std::string_view::npos) return field == 0 ? std::nullopt : std::optional(total);
    text.remove_prefix(colon + 1);
  }
  return std::nullopt;
}

std::optional<long long> parseMagnitude(std::string_view text) {
  if (text.find(':') == std::string_view::npos) return parseNumber(text);
  const std::size_t separator = text.find_first_of(".,");
  const std::optional<long long> seconds = parseClock(text.substr(0, separator));
  const std::optional<long long> fraction =
      separator == std::string_view::npos ? 0 : parseFraction(text.substr(separator + 1));
  if (!seconds || !fraction) return std::nullopt;
  return *seconds * 1000 + *fraction;
}

}  // namespace

std::optional<long long> parseTime(std::string_view text) {
  const bool negative = text.starts_with('-');
  std::optional<long long> time = parseMagnitude(text.substr(negative ? 1 : 0));
  if (time && negative) time = -*time;
  return time;
}

std::string formatTime(long long milliseconds) {
  const bool negative = milliseconds < 0;
  const auto bits = static_cast<unsigned long long>(milliseconds);
  const unsigned long long t = negative ? 0 - bits : bits;  // the lowest time cannot be negated
  char text[32];
  std::snprintf(text, sizeof text, "%s%llu:%02llu:%02llu.%03llu", negative ? "-" : "", t / 3600000,
                t / 60000 % 60, t / 1000 % 60, t % 1000);
  return text;
}

}  // namespace kssub
