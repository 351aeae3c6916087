// Lines that begin with two numbers in brackets, from where to where a text is shown: MicroDVD and
// MPL2 are made of them.
#pragma once

#include <limits>
#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/common/format.h"
#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {

struct Brackets {
  char opening;
  char closing;
};

/// A line such as "{1}{25}text"; either number may be missing.
struct SpanLine {
  static constexpr long long kMissing = std::numeric_limits<long long>::min();

  long long start = kMissing;
  long long end = kMissing;
  std::string_view text;
};

/// Takes "{25}" or "{}" off; false if there is neither.
constexpr bool consumeBracketed(std::string_view& text, Brackets brackets,
                                long long& number) noexcept {
  if (!consumeCharacter(text, brackets.opening)) return false;
  number = consumeInteger(text).value_or(SpanLine::kMissing);
  return consumeCharacter(text, brackets.closing);
}

/// What `line` is; nothing if it does not begin with two pairs of brackets that hold integers of at
/// most 12 digits, or nothing. Blanks may stand anywhere.
constexpr std::optional<SpanLine> spanLineOf(std::string_view line, Brackets brackets) noexcept {
  SpanLine span;
  if (!consumeBracketed(line, brackets, span.start)) return std::nullopt;
  if (!consumeBracketed(line, brackets, span.end)) return std::nullopt;
  span.text = withoutBlanks(line);
  return span;
}

/// How likely a text is made of such lines. One alone may stand in prose.
Likelihood likelihoodOfSpans(std::string_view text, Brackets brackets);

/// Begins the cue of a line with those numbers; null if it has neither. A cue without the first one
/// begins at 0, one without the second one is shown up to the next.
ksImportCue* beginSpan(long long start, long long end, int line, CueSink& sink);

}  // namespace kssubtitle::importing
