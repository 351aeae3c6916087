// Lines such as "{1}{25}text", of which MicroDVD and MPL2 are made: two numbers in brackets, which
// say when the text is shown.
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

/// Such a line; either number may be missing.
struct SpanLine {
  static constexpr long long kMissing = std::numeric_limits<long long>::min();

  long long start = kMissing;
  long long end = kMissing;
  std::string_view text;
};

/// Consumes "{25}" or "{}"; false if there is neither.
constexpr bool consumeBracketed(std::string_view& text, Brackets brackets,
                                long long& number) noexcept {
  if (!consumeCharacter(text, brackets.opening)) return false;
  number = consumeInteger(text).value_or(SpanLine::kMissing);
  return consumeCharacter(text, brackets.closing);
}

/// The span that `line` is; nothing if it does not begin with two pairs of brackets that are empty
/// or hold integers of at most 12 digits. Blanks may be anywhere.
constexpr std::optional<SpanLine> spanLineOf(std::string_view line, Brackets brackets) noexcept {
  SpanLine span;
  if (!consumeBracketed(line, brackets, span.start)) return std::nullopt;
  if (!consumeBracketed(line, brackets, span.end)) return std::nullopt;
  span.text = withoutBlanks(line);
  return span;
}

/// How likely a text is made of such lines. Prose may have a single one.
Likelihood likelihoodOfSpans(std::string_view text, Brackets brackets);

/// Begins the cue of a line with these times; null if both are missing. Without the first one it
/// begins at 0, without the second one it is shown until the next cue.
ksImportCue* beginSpan(long long start, long long end, int line, CueSink& sink);

}  // namespace kssubtitle::importing
