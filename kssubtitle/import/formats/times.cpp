// Times as people write them.
#include "kssubtitle/import/formats/times.h"

#include "kssubtitle/import/formats/numbers.h"

namespace kssubtitle::importing {
namespace {

/// Takes `separator` off if a number follows it, blanks or not.
std::optional<Digits> takeFieldBehind(std::string_view& text,
                                      std::string_view separators) noexcept {
  std::string_view rest = withoutLeadingBlanks(text);
  if (rest.empty() || separators.find(rest.front()) == separators.npos) return std::nullopt;
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

/// The usual forms "00:00:00,000" and "0:00:00.00", at once: nearly every time of a file is one,
/// and opening it is mostly reading times and copying text.
bool takeUsualTime(std::string_view& text, WrittenTime& time) noexcept {
  if (text.size() < 2) return false;
  const std::size_t hourDigits = text[1] == ':' ? 1 : 2;
  if (text.size() < hourDigits + 9) return false;
  const char* const p = text.data() + hourDigits;
  const bool isSeparated = p[0] == ':' && p[3] == ':' && (p[6] == ',' || p[6] == '.');
  const unsigned hours =
      hourDigits == 1 ? static_cast<unsigned>(text[0] - '0') : twoDigits(text.data());
  const unsigned minutes = twoDigits(p + 1);
  const unsigned seconds = twoDigits(p + 4);
  unsigned milliseconds = 10 * twoDigits(p + 7);
  if (!isSeparated || hours > 99 || minutes > 99 || seconds > 99 || milliseconds > 990)
    return false;
  if (hourDigits == 1 && hours > 9) return false;
  std::size_t length = hourDigits + 9;
  if (length < text.size() && isDigit(text[length])) {
    milliseconds += static_cast<unsigned>(text[length++] - '0');
  }
  if (length < text.size() && isDigit(text[length])) return false;
  text.remove_prefix(length);
  time.milliseconds = ((hours * 60LL + minutes) * 60 + seconds) * 1000 + milliseconds;
  time.fields = 3;
  time.form = TimeForm::kUsual;
  if (p[6] == ',' && length == 12) time.form = TimeForm::kSubRip;
  if (p[6] == '.' && length == hourDigits + 9) time.form = TimeForm::kAss;
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
  const auto second = takeFieldBehind(rest, ":");
  if (!second) return false;
  const auto third = takeFieldBehind(rest, ":");
  const auto fraction = takeFieldBehind(rest, third ? ",.:" : ",.");
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
