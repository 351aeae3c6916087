// Times as people write them.
#include "kssubtitle/import/formats/common/times.h"

namespace kssubtitle::importing {
namespace {

struct Fraction {
  char separator;
  Digits digits;
};

/// Consumes a separator and the digits after it.
std::optional<Fraction> consumeFraction(std::string_view& text, bool mayFollowColon) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  const char separator = rest.empty() ? ' ' : rest.front();
  const bool isColon = separator == ':' && mayFollowColon;
  if (separator != ',' && separator != '.' && !isColon) return std::nullopt;
  rest.remove_prefix(1);
  const auto digits = consumeDigits(rest);
  if (!digits) return std::nullopt;
  text = rest;
  return Fraction{separator, *digits};
}

/// Consumes a comma or a point after which nothing goes on.
void consumeLoneSeparator(std::string_view& text) noexcept {
  std::string_view rest = text;
  if (!consumeCharacter(rest, ',') && !consumeCharacter(rest, '.')) return;
  const std::size_t next = rest.find_first_not_of(" \t\r\v\f+-");
  const bool goesOn = next != rest.npos && (isDigit(rest[next]) || isLetter(rest[next]));
  if (!goesOn) text = rest;
}

}  // namespace

WrittenTime timeAtFront(std::string_view text) noexcept {
  const bool isNegative = text.starts_with('-');
  std::string_view rest = text.substr(isNegative || text.starts_with('+') ? 1 : 0);
  const auto clock = consumeClock(rest);
  if (!clock) return {};
  const auto fraction = consumeFraction(rest, clock->fields == 3);
  if (!fraction) consumeLoneSeparator(rest);
  const long long time =
      clock->seconds * 1000 + (fraction ? millisecondsOfFraction(fraction->digits) : 0);
  const std::size_t length = text.size() - rest.size();
  return {isNegative ? -time : time, static_cast<int>(length), clock->fields,
          static_cast<signed char>(fraction ? fraction->digits.count : 0),
          !isNegative && fraction && clock->fields == 3 && clock->isPadded};
}

}  // namespace kssubtitle::importing
