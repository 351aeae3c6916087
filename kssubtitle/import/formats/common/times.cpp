// Times as people write them.
#include "kssubtitle/import/formats/common/times.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "kssubtitle/import/formats/common/numbers.h"

namespace kssubtitle::importing {
namespace {

/// The eight characters at `p`, the first one lowest.
std::uint64_t charactersAt(const char* p) noexcept {
  std::uint64_t characters;
  std::memcpy(&characters, p, sizeof characters);
  if constexpr (std::endian::native == std::endian::big) {
    characters = __builtin_bswap64(characters);
  }
  return characters;
}

/// The seconds of the characters of "00:00:00"; -1 if they are others.
int secondsOf(std::uint64_t characters) noexcept {
  constexpr std::uint64_t kZeros = 0x30303A30303A3030;
  // Lets a byte above 9, or above 0 where a colon belongs, have its highest bit set.
  constexpr std::uint64_t kOverflow = 0x76767F76767F7676;
  constexpr std::uint64_t kHighest = 0x8080808080808080;
  const std::uint64_t digits = characters ^ kZeros;
  if ((((digits + kOverflow) | digits) & kHighest) != 0) return -1;
  const std::uint64_t pairs = digits * 10 + (digits >> 8);
  const auto pairOf = [pairs](int byte) { return static_cast<int>(pairs >> (8 * byte) & 0xFF); };
  return (pairOf(0) * 60 + pairOf(3)) * 60 + pairOf(6);
}

/// The milliseconds of a comma or a point and two or three digits at the front of `text`, and how
/// many characters they are.
struct UsualFraction {
  int milliseconds;  ///< -1: there is another thing with which a time may go on.
  int length;
};

UsualFraction usualFractionOf(std::string_view text) noexcept {
  constexpr UsualFraction kUnusual{-1, 0};
  if (text.empty() || text[0] > ':') return {0, 0};
  if (text.size() < 3 || (text[0] != ',' && text[0] != '.')) return kUnusual;
  const unsigned hundredths = twoDigits(text.data() + 1);
  if (hundredths > 99) return kUnusual;
  const auto milliseconds = static_cast<int>(10 * hundredths);
  if (text.size() == 3 || !isDigit(text[3])) return {milliseconds, 3};
  if (text.size() > 4 && isDigit(text[4])) return kUnusual;
  return {milliseconds + text[3] - '0', 4};
}

/// The fields of a time as most have them.
struct UsualFields {
  int seconds;  ///< -1: they are others.
  int length;   ///< How many characters they have.
  short count;
};

/// Requires: `text` has eight characters.
UsualFields usualFieldsOf(std::string_view text) noexcept {
  constexpr std::uint64_t kNoHours = 0x3A3030;  // "00:"
  const std::uint64_t characters = charactersAt(text.data());
  if (text[1] == ':') return {secondsOf(characters << 8 | '0'), 7, 3};
  if (text[5] == ':') return {secondsOf(characters), 8, 3};
  if (text[3] != ':') return {secondsOf(characters << 24 | kNoHours), 5, 2};
  const int seconds = secondsOf(characters >> 8 << 24 | kNoHours);  // behind hundreds of minutes
  if (seconds < 0 || !isDigit(text[0])) return {-1, 0, 0};
  return {seconds + (text[0] - '0') * 6000, 6, 2};
}

/// The form of a time of those fields and a fraction of that length.
TimeForm formOf(std::string_view text, const UsualFields& fields, int fractionLength) noexcept {
  if (fields.count < 3 || fractionLength == 0) return TimeForm::kOther;
  if (text[static_cast<std::size_t>(fields.length)] == ',') {
    return fields.length + fractionLength == 12 ? TimeForm::kSubRip : TimeForm::kUsual;
  }
  return fractionLength == 3 ? TimeForm::kAss : TimeForm::kUsual;
}

/// The usual forms "00:00:00,000", "0:00:00.00" and "00:00.00" with and without fractions, at once:
/// nearly every time of a file is one, and opening it is mostly reading times and copying text.
WrittenTime usualTimeOf(std::string_view text) noexcept {
  if (text.size() < 8) return {};
  const UsualFields fields = usualFieldsOf(text);
  if (fields.seconds < 0) return {};
  const UsualFraction fraction =
      usualFractionOf(text.substr(static_cast<std::size_t>(fields.length)));
  if (fraction.milliseconds < 0) return {};
  return {fields.seconds * 1000LL + fraction.milliseconds, fields.length + fraction.length,
          fields.count, formOf(text, fields, fraction.length)};
}

/// Takes a separator and the digits behind it off, with the blanks before them: in milliseconds; -1
/// if they are not there.
long long takeFraction(std::string_view& text, bool mayFollowColon) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  const char separator = rest.empty() ? ' ' : rest.front();
  const bool isColon = separator == ':' && mayFollowColon;
  if (separator != ',' && separator != '.' && !isColon) return -1;
  rest.remove_prefix(1);
  const auto digits = consumeDigits(rest);
  if (!digits) return -1;
  text = rest;
  return millisecondsOfFraction(*digits);
}

/// Drops a comma or a point that no fraction follows.
void dropLoneSeparator(std::string_view& text) noexcept {
  std::string_view rest = text;
  if (!consumeCharacter(rest, ',') && !consumeCharacter(rest, '.')) return;
  const std::size_t next = rest.find_first_not_of(" \t\r\v\f+-");
  const bool goesOn = next != rest.npos && (isDigit(rest[next]) || isLetter(rest[next]));
  if (!goesOn) text = rest;
}

WrittenTime anyTimeOf(std::string_view text) noexcept {
  const bool isNegative = text.starts_with('-');
  std::string_view rest = text.substr(isNegative || text.starts_with('+') ? 1 : 0);
  long long seconds = 0;
  short fields = 0;
  bool hasPairs = true;
  for (std::string_view next = rest; fields < 3 && (fields == 0 || consumeCharacter(next, ':'));) {
    const auto field = consumeDigits(next);
    if (!field) break;
    rest = next;
    seconds = seconds * 60 + field->value;
    if (fields++ > 0) hasPairs = hasPairs && field->count == 2;
  }
  if (fields < 2) return {};
  const long long fraction = takeFraction(rest, fields == 3);
  if (fraction < 0) dropLoneSeparator(rest);
  const long long time = seconds * 1000 + std::max(fraction, 0LL);
  const bool isUsual = fields == 3 && fraction >= 0 && hasPairs && !isNegative;
  return {isNegative ? -time : time, static_cast<int>(text.size() - rest.size()), fields,
          isUsual ? TimeForm::kUsual : TimeForm::kOther};
}

}  // namespace

int clockAtFront(std::string_view text) noexcept {
  const bool goesOn = text.size() > kClockLength && isDigit(text[kClockLength]);
  if (text.size() < kClockLength || goesOn) return -1;
  return secondsOf(charactersAt(text.data()));
}

WrittenTime timeAtFront(std::string_view text) noexcept {
  const WrittenTime time = usualTimeOf(text);
  return time.fields > 0 ? time : anyTimeOf(text);
}

}  // namespace kssubtitle::importing
