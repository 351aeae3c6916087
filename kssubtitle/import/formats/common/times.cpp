// Times as people write them.
#include "kssubtitle/import/formats/common/times.h"

#include <algorithm>

#include "kssubtitle/import/formats/common/numbers.h"

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

/// The form of a time of `length` characters.
TimeForm formOf(const Clock& clock, const std::optional<Fraction>& fraction,
                std::size_t length) noexcept {
  const bool isPadded = clock.fewestDigits == 2 && clock.mostDigits == 2;
  if (!fraction || clock.fields != 3 || !isPadded) return TimeForm::kOther;
  const std::size_t digits = fraction->digits.count;
  if (length != clock.firstDigits + 4 + digits + 3) return TimeForm::kUsual;
  if (fraction->separator == ',' && clock.firstDigits == 2 && digits == 3) return TimeForm::kSubRip;
  const bool isAss = fraction->separator == '.' && clock.firstDigits <= 2 && digits == 2;
  return isAss ? TimeForm::kAss : TimeForm::kUsual;
}

}  // namespace

std::optional<Clock> consumeClock(std::string_view& text) noexcept {
  Clock clock;
  std::string_view rest = text;
  for (std::string_view next = rest;
       clock.fields < 3 && (clock.fields == 0 || consumeCharacter(next, ':')); ++clock.fields) {
    const auto field = consumeDigits(next);
    if (!field) break;
    rest = next;
    clock.seconds = clock.seconds * 60 + field->value;
    if (clock.fields == 0) {
      clock.firstDigits = field->count;
    } else {
      clock.fewestDigits =
          clock.fields == 1 ? field->count : std::min(clock.fewestDigits, field->count);
      clock.mostDigits = std::max(clock.mostDigits, field->count);
    }
  }
  if (clock.fields < 2) return std::nullopt;
  text = rest;
  return clock;
}

std::optional<WrittenTime> consumeTime(std::string_view& text) noexcept {
  const std::string_view whole = withoutLeadingBlanks(text);
  const bool isNegative = whole.starts_with('-');
  std::string_view rest = whole.substr(isNegative || whole.starts_with('+') ? 1 : 0);
  const auto clock = consumeClock(rest);
  if (!clock) return std::nullopt;
  const auto fraction = consumeFraction(rest, clock->fields == 3);
  if (!fraction) consumeLoneSeparator(rest);
  text = rest;
  const long long time =
      clock->seconds * 1000 + (fraction ? millisecondsOfFraction(fraction->digits) : 0);
  if (isNegative) return WrittenTime{-time, clock->fields};
  return WrittenTime{time, clock->fields, formOf(*clock, fraction, whole.size() - rest.size())};
}

}  // namespace kssubtitle::importing
