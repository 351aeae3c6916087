// Lines that begin with two numbers in brackets, from where to where a text is shown: MicroDVD and
// MPL2 are made of them.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {

struct Brackets {
  char opening;
  char closing;
};

/// A line such as "{1}{25}text"; either number may be missing.
struct SpanLine {
  std::optional<long long> start;
  std::optional<long long> end;
  std::string_view text;
};

/// What `line` is; nothing if it does not begin with two pairs of brackets that hold integers of at
/// most 12 digits, or nothing. Blanks may stand anywhere.
std::optional<SpanLine> spanLineOf(std::string_view line, Brackets brackets) noexcept;

/// How likely a text is made of such lines.
Likelihood likelihoodOfSpans(std::string_view text, Brackets brackets);

/// Begins the cue of such a line; null if it has neither number. A cue without the first one begins
/// at 0, one without the second one is shown up to the next.
ksImportCue* beginSpan(const SpanLine& span, int line, CueSink& sink);

}  // namespace kssubtitle::importing
