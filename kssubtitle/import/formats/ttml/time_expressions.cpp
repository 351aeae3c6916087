// Time expressions of TTML.
#include "kssubtitle/import/formats/ttml/time_expressions.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/frames.h"
#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/ttml/names.h"

namespace kssubtitle::importing {
namespace {

/// What follows a decimal point.
struct Fraction {
  double numerator = 0;
  double denominator = 1;
};

/// A unit is `milliseconds` / `divisor` long.
struct Unit {
  double milliseconds;
  double divisor;
};

/// A positive number; nothing if it is not one, or anything follows.
std::optional<double> rateIn(std::string_view text) noexcept {
  const auto rate = consumeDecimal(text);
  if (!rate || !withoutBlanks(text).empty()) return std::nullopt;
  return usableFrameRate(*rate);
}

/// Ticks may be arbitrarily short.
std::optional<double> tickRateIn(std::string_view text) noexcept {
  const auto rate = consumeDecimal(text);
  return rate && *rate > 0 ? rate : std::nullopt;
}

/// The quotient of two numbers with a space or a colon between them, or a single number; 1 if there
/// is none.
double multiplierIn(std::string_view text) noexcept {
  const auto numerator = consumeDecimal(text);
  consumeCharacter(text, ':');
  const double denominator = consumeDecimal(text).value_or(1);
  if (!numerator || denominator <= 0) return 1;
  return usableFrameRate(*numerator / denominator).value_or(1);
}

/// Consumes a fraction with any number of digits; 0 without one.
std::optional<Fraction> consumeFraction(std::string_view& text) noexcept {
  constexpr double kExact = 1e9;
  Fraction fraction;
  if (!consumeCharacter(text, '.') && !consumeCharacter(text, ',')) return fraction;
  if (text.empty() || !isDigit(text.front())) return std::nullopt;
  for (; !text.empty() && isDigit(text.front()); text.remove_prefix(1)) {
    if (fraction.denominator >= kExact) continue;
    fraction.numerator = fraction.numerator * 10 + (text.front() - '0');
    fraction.denominator *= 10;
  }
  return fraction;
}

std::optional<Unit> unitOf(std::string_view name, const TtmlRates& rates) noexcept {
  if (name == "s" || name.empty()) return Unit{1000, 1};
  if (name == "ms") return Unit{1, 1};
  if (name == "m") return Unit{60000, 1};
  if (name == "h") return Unit{3600000, 1};
  if (name == "f") return Unit{1000, rates.frames};
  if (name == "t") return Unit{1000, rates.ticks};
  return std::nullopt;
}

/// Multiplies before dividing.
double lengthOf(double count, const Fraction& fraction, const Unit& unit) noexcept {
  return (count * fraction.denominator + fraction.numerator) * unit.milliseconds /
         (fraction.denominator * unit.divisor);
}

/// What the frames after a time of three fields add to it; three digits, more than frames need, are
/// what some write for a fraction of a second.
double lengthOfFrames(const Digits& frames, const Fraction& subFrames,
                      const TtmlRates& rates) noexcept {
  constexpr double kMostOfTwoDigits = 100;
  if (frames.count == 3 && rates.frames <= kMostOfTwoDigits)
    return static_cast<double>(frames.value);
  const double count = static_cast<double>(frames.value) + subFrames.numerator / rates.subFrames;
  return count * 1000 / rates.frames;
}

constexpr double kNoTime = -1;

}  // namespace

TtmlRates ttmlRatesOf(pugi::xml_node root, double frameRate) noexcept {
  TtmlRates rates;
  double multiplier = 1;
  std::optional<double> frames;
  std::optional<double> ticks;
  for (const pugi::xml_attribute attribute : root.attributes()) {
    const std::string_view name = localName(attribute.name());
    if (name == "frameRate") frames = rateIn(attribute.value());
    if (name == "frameRateMultiplier") multiplier = multiplierIn(attribute.value());
    if (name == "subFrameRate") rates.subFrames = rateIn(attribute.value()).value_or(1);
    if (name == "tickRate") ticks = tickRateIn(attribute.value());
  }
  rates.frames = frames.value_or(usableFrameRate(frameRate).value_or(rates.frames)) * multiplier;
  rates.ticks = ticks.value_or(frames ? *frames * rates.subFrames : 1);
  return rates;
}

double ttmlTime(std::string_view text, const TtmlRates& rates, bool& isRepaired) noexcept {
  constexpr std::size_t kMostFields = 4;
  Digits fields[kMostFields];
  std::size_t count = 0;
  do {
    const auto digits = consumeDigits(text);
    if (!digits) return kNoTime;
    fields[count++] = *digits;
  } while (count < kMostFields && (consumeCharacter(text, ':') || consumeCharacter(text, ';')));
  const bool hasComma = text.starts_with(',');
  const auto fraction = consumeFraction(text);
  const auto unit = unitOf(withoutBlanks(text), rates);
  const bool isBare = count == 1 && withoutBlanks(text).empty();
  isRepaired = isRepaired || hasComma || isBare || count == 2;
  if (!fraction || !unit || (count > 1 && !withoutBlanks(text).empty())) return kNoTime;
  if (count == 1) return lengthOf(static_cast<double>(fields[0].value), *fraction, *unit);
  double seconds = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(count, 3); ++i) {
    seconds = seconds * 60 + static_cast<double>(fields[i].value);
  }
  if (count < kMostFields) return lengthOf(seconds, *fraction, *unit);
  return seconds * 1000 + lengthOfFrames(fields[3], *fraction, rates);
}

}  // namespace kssubtitle::importing
