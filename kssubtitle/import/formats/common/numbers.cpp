// Numbers as the text of a file has them.
#include "kssubtitle/import/formats/common/numbers.h"

namespace kssubtitle::importing {
namespace {

bool beginsFraction(std::string_view text) noexcept {
  return text.size() > 1 && (text[0] == '.' || text[0] == ',') && isDigit(text[1]);
}

}  // namespace

std::optional<double> consumeDecimal(std::string_view& text) noexcept {
  // One division of two exact numbers rounds as the number itself would.
  constexpr long long kMostExact = 1'000'000'000'000'000;
  std::string_view rest = text;
  const bool isNegative = consumeSign(rest);
  const auto whole = consumeDigits(rest);
  if (!whole) rest = withoutLeadingBlanks(rest);
  const bool hasFraction = beginsFraction(rest);
  if (!whole && !hasFraction) return std::nullopt;
  long long mantissa = whole ? whole->value : 0;
  long long scale = 1;
  if (hasFraction) {
    for (rest.remove_prefix(1); !rest.empty() && isDigit(rest[0]); rest.remove_prefix(1)) {
      if (mantissa * 10 >= kMostExact || scale >= kMostExact) continue;
      mantissa = mantissa * 10 + (rest[0] - '0');
      scale *= 10;
    }
  } else if (rest.starts_with('.')) {
    rest.remove_prefix(1);
  }
  text = rest;
  const auto numerator = static_cast<double>(mantissa);
  return (isNegative ? -numerator : numerator) / static_cast<double>(scale);
}

}  // namespace kssubtitle::importing
