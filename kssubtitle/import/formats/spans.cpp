// Lines that begin with two numbers in brackets.
#include "kssubtitle/import/formats/spans.h"

#include "kssubtitle/import/formats/numbers.h"

namespace kssubtitle::importing {
namespace {

/// Takes "{25}" or "{}" off; false if there is neither.
bool takeBracketed(std::string_view& text, Brackets brackets,
                   std::optional<long long>& number) noexcept {
  if (!takeCharacter(text, brackets.opening)) return false;
  number = takeInteger(text);
  return takeCharacter(text, brackets.closing);
}

}  // namespace

std::optional<SpanLine> spanLineOf(std::string_view line, Brackets brackets) noexcept {
  std::optional<SpanLine> span(std::in_place);
  if (takeBracketed(line, brackets, span->start) && takeBracketed(line, brackets, span->end)) {
    span->text = withoutBlanks(line);
  } else {
    span.reset();
  }
  return span;
}

Likelihood likelihoodOfSpans(std::string_view text, Brackets brackets) {
  int spans = 0;
  int others = 0;
  Line line;
  for (Lines lines(text); lines.next(line);) {
    const auto span = spanLineOf(line.text, brackets);
    if (span && (span->start || span->end)) {
      if (++spans > 1 || others == 0) return Likelihood::kLikely;
    } else if (line.text.find("-->") != line.text.npos) {
      break;  // what follows may be the text of a cue
    } else if (!withoutBlanks(line.text).empty()) {
      ++others;
    }
  }
  return spans > 0 ? Likelihood::kPossible : Likelihood::kNone;
}

ksImportCue* beginSpan(const SpanLine& span, int line, CueSink& sink) {
  if (!span.start && !span.end) {
    sink.notes().add(ksImportProblem::kTimeUnreadable, line);
    return nullptr;
  }
  if (!span.start) sink.notes().add(ksImportProblem::kTimeRepaired, line);
  const long long start = span.start.value_or(0);
  return span.end ? &sink.begin(start, *span.end, line) : &sink.beginWithoutEnd(start, line);
}

}  // namespace kssubtitle::importing
