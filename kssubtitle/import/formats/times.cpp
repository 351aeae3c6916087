// Times as people write them.
#include "kssubtitle/import/formats/times.h"

#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

constexpr std::size_t kMostDigits = 12;

struct Field {
  long long value;
  std::size_t digits;
};

/// Takes digits off, with the blanks before them; nothing if there are none or too many.
std::optional<Field> takeField(std::string_view& text) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  Field field{0, 0};
  while (field.digits < rest.size() && isDigit(rest[field.digits])) {
    if (field.digits == kMostDigits) return std::nullopt;
    field.value = field.value * 10 + (rest[field.digits++] - '0');
  }
  if (field.digits == 0) return std::nullopt;
  text = rest.substr(field.digits);
  return field;
}

/// Takes `separator` off if a number follows it, blanks or not.
std::optional<Field> takeFieldBehind(std::string_view& text, std::string_view separators) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  if (rest.empty() || separators.find(rest.front()) == separators.npos) return std::nullopt;
  rest.remove_prefix(1);
  const auto field = takeField(rest);
  if (field) text = rest;
  return field;
}

long long millisecondsOf(Field fraction) noexcept {
  for (; fraction.digits < 3; ++fraction.digits) fraction.value *= 10;
  for (; fraction.digits > 3; --fraction.digits) fraction.value /= 10;
  return fraction.value;
}

/// The usual ways to write a time, "00:00:00,000" and "0:00:00.00" with any separator, at once.
/// Half of the time of opening a file would go into the general way.
std::optional<WrittenTime> takeUsualTime(std::string_view& text) noexcept {
  const auto digit = [&text](std::size_t i) { return static_cast<unsigned>(text[i] - '0'); };
  constexpr std::size_t kLength = 12;
  if (text.size() < kLength || text[2] != ':' || text[5] != ':') return std::nullopt;
  if (text[8] != ',' && text[8] != '.') return std::nullopt;
  constexpr unsigned kWeights[kLength] = {36000000, 3600000, 0, 600000, 60000, 0,
                                          10000,    1000,    0, 100,    10,    1};
  unsigned milliseconds = 0;
  for (std::size_t i = 0; i < kLength; ++i) {
    if (kWeights[i] == 0) continue;
    if (digit(i) > 9) return std::nullopt;
    milliseconds += digit(i) * kWeights[i];
  }
  if (text.size() > kLength && isDigit(text[kLength])) return std::nullopt;
  text.remove_prefix(kLength);
  return WrittenTime{milliseconds, 3, true};
}

}  // namespace

std::optional<WrittenTime> takeTime(std::string_view& text) noexcept {
  if (const auto usual = takeUsualTime(text)) return usual;
  std::string_view rest = withoutLeadingBlanks(text);
  const bool isNegative = rest.starts_with('-');
  if (isNegative || rest.starts_with('+')) rest.remove_prefix(1);
  const auto first = takeField(rest);
  if (!first) return std::nullopt;
  const auto second = takeFieldBehind(rest, ":");
  if (!second) return std::nullopt;
  const auto third = takeFieldBehind(rest, ":");
  const auto fraction = takeFieldBehind(rest, third ? ",.:" : ",.");
  WrittenTime time;
  time.fields = third ? 3 : 2;
  const long long seconds = third ? (first->value * 60 + second->value) * 60 + third->value
                                  : first->value * 60 + second->value;
  time.milliseconds = seconds * 1000 + (fraction ? millisecondsOf(*fraction) : 0);
  if (isNegative) time.milliseconds = -time.milliseconds;
  time.isUsual = third && fraction && second->digits == 2 && third->digits == 2 && !isNegative;
  text = rest;
  return time;
}

}  // namespace kssubtitle::importing
