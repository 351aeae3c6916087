// Times as people write them.
#include "kssubtitle/import/formats/times.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "kssubtitle/import/formats/numbers.h"

namespace kssubtitle::importing {
namespace {

/// Takes a separator off if a number follows it, blanks or not.
template <char... kSeparators>
std::optional<Digits> takeFieldBehind(std::string_view& text) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  if (rest.empty() || ((rest.front() != kSeparators) && ...)) return std::nullopt;
  rest.remove_prefix(1);
  const auto field = takeDigits(rest);
  if (field) text = rest;
  return field;
}

/// The two digits at `p`; above 99 if they are none.
unsigned twoDigits(const char* p) noexcept {
  const auto tens = static_cast<unsigned>(p[0] - '0');
  const auto ones = static_cast<unsigned>(p[1] - '0');
  return tens > 9 || ones > 9 ? 100U : tens * 10 + ones;
}

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
  constexpr std::uint64_t kAboveGreatest =
      0x76767F76767F7676;  // has bytes above 9, or 0, set kHigh
  constexpr std::uint64_t kHigh = 0x8080808080808080;
  const std::uint64_t digits = characters ^ kZeros;
  if ((((digits + kAboveGreatest) | digits) & kHigh) != 0) return -1;
  const std::uint64_t pairs = digits * 10 + (digits >> 8);
  const auto pairAt = [pairs](int byte) { return static_cast<int>(pairs >> (8 * byte) & 0xFF); };
  return (pairAt(0) * 60 + pairAt(3)) * 60 + pairAt(6);
}

/// Takes a comma or a point and two or three digits off, or nothing where nothing of a time can
/// follow; -1 if neither is there.
int takeUsualFraction(std::string_view& text) noexcept {
  if (text.empty() || text[0] > ':') return 0;
  if (text.size() < 3 || (text[0] != ',' && text[0] != '.')) return -1;
  unsigned milliseconds = 10 * twoDigits(text.data() + 1);
  if (milliseconds > 990) return -1;
  std::size_t length = 3;
  if (length < text.size() && isDigit(text[length])) {
    milliseconds += static_cast<unsigned>(text[length++] - '0');
  }
  if (length < text.size() && isDigit(text[length])) return -1;
  text.remove_prefix(length);
  return static_cast<int>(milliseconds);
}

/// The form of a time as takeUsualTime() takes it, of which `clockLength` are not the fraction.
TimeForm formOf(std::string_view time, std::size_t clockLength) noexcept {
  if (clockLength < 7 || clockLength == time.size()) return TimeForm::kOther;
  const bool isComma = time[clockLength] == ',';
  if (isComma && time.size() == 12) return TimeForm::kSubRip;
  return !isComma && time.size() == clockLength + 3 ? TimeForm::kAss : TimeForm::kUsual;
}

/// The usual forms "00:00:00,000", "0:00:00.00" and "00:00.00" with and without fractions, at once:
/// nearly every time of a file is one, and opening it is mostly reading times and copying text.
bool takeUsualTime(std::string_view& text, WrittenTime& time) noexcept {
  if (text.size() < 8) return false;
  std::uint64_t clock = charactersAt(text.data());
  std::size_t clockLength = 8;
  time.fields = 3;
  if (text[1] == ':') {
    clock = clock << 8 | '0';
    clockLength = 7;
  } else if (text[5] != ':') {
    clock = clock << 24 | 0x3A3030;  // "00:" in front
    clockLength = 5;
    time.fields = 2;
  }
  const int seconds = secondsOf(clock);
  if (seconds < 0) return false;
  std::string_view rest = text.substr(clockLength);
  const int fraction = takeUsualFraction(rest);
  if (fraction < 0) return false;
  time.milliseconds = seconds * 1000LL + fraction;
  time.form = formOf(text.substr(0, text.size() - rest.size()), clockLength);
  text = rest;
  return true;
}

/// Drops a comma or a point that no fraction follows.
void dropLoneSeparator(std::string_view& text) noexcept {
  std::string_view rest = text;
  if (!takeCharacter(rest, ',') && !takeCharacter(rest, '.')) return;
  const std::size_t next = rest.find_first_not_of(" \t\r\v\f+-");
  const bool goesOn = next != rest.npos && (isDigit(rest[next]) || isLetter(rest[next]));
  if (!goesOn) text = rest;
}

bool takeAnyTime(std::string_view& text, WrittenTime& time) noexcept {
  std::string_view rest = text;
  const bool isNegative = rest.starts_with('-');
  if (isNegative || rest.starts_with('+')) rest.remove_prefix(1);
  const auto first = takeDigits(rest);
  if (!first) return false;
  const auto second = takeFieldBehind<':'>(rest);
  if (!second) return false;
  const auto third = takeFieldBehind<':'>(rest);
  const auto fraction =
      third ? takeFieldBehind<',', '.', ':'>(rest) : takeFieldBehind<',', '.'>(rest);
  if (!fraction) dropLoneSeparator(rest);
  time.fields = third ? 3 : 2;
  const long long seconds = third ? (first->value * 60 + second->value) * 60 + third->value
                                  : first->value * 60 + second->value;
  time.milliseconds = seconds * 1000 + (fraction ? millisecondsOfFraction(*fraction) : 0);
  if (isNegative) time.milliseconds = -time.milliseconds;
  const bool isUsual = third && fraction && second->count == 2 && third->count == 2 && !isNegative;
  if (isUsual) time.form = TimeForm::kUsual;
  text = rest;
  return true;
}

}  // namespace

std::optional<int> takeUsualClock(std::string_view& text) noexcept {
  constexpr std::size_t kLength = 8;
  if (text.size() < kLength || (text.size() > kLength && isDigit(text[kLength]))) return {};
  const int seconds = secondsOf(charactersAt(text.data()));
  if (seconds < 0) return {};
  text.remove_prefix(kLength);
  return seconds;
}

std::optional<WrittenTime> takeTime(std::string_view& text) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  std::optional<WrittenTime> time(std::in_place);
  if (takeUsualTime(rest, *time) || takeAnyTime(rest, *time)) {
    text = rest;
  } else {
    time.reset();
  }
  return time;
}

}  // namespace kssubtitle::importing
