// Numbers as the text of a file has them.
#include "kssubtitle/import/formats/numbers.h"

namespace kssubtitle::importing {
namespace {

/// Takes a sign off; whether it is a minus.
bool takeSign(std::string_view& text) noexcept {
  if (takeCharacter(text, '-')) return true;
  takeCharacter(text, '+');
  return false;
}

bool beginsFraction(std::string_view text) noexcept {
  return text.size() > 1 && (text[0] == '.' || text[0] == ',') && isDigit(text[1]);
}

}  // namespace

std::optional<long long> takeInteger(std::string_view& text) noexcept {
  std::string_view rest = text;
  const bool isNegative = takeSign(rest);
  const auto digits = takeDigits(rest);
  if (!digits) return std::nullopt;
  text = rest;
  return isNegative ? -digits->value : digits->value;
}

std::optional<double> takeDecimal(std::string_view& text) noexcept {
  // One division of two exact numbers rounds as the number itself would.
  constexpr double kMostExact = 1e15;
  std::string_view rest = text;
  const bool isNegative = takeSign(rest);
  const auto whole = takeDigits(rest);
  if (!whole) rest = withoutLeadingBlanks(rest);
  const bool hasFraction = beginsFraction(rest);
  if (!whole && !hasFraction) return std::nullopt;
  auto mantissa = static_cast<double>(whole.value_or(Digits()).value);
  double scale = 1;
  if (hasFraction) {
    for (rest.remove_prefix(1); !rest.empty() && isDigit(rest[0]); rest.remove_prefix(1)) {
      if (mantissa * 10 >= kMostExact || scale >= kMostExact) continue;
      mantissa = mantissa * 10 + (rest[0] - '0');
      scale *= 10;
    }
  }
  if (!hasFraction && rest.starts_with('.')) rest.remove_prefix(1);
  text = rest;
  return (isNegative ? -mantissa : mantissa) / scale;
}

}  // namespace kssubtitle::importing
