// Lines that begin with two numbers in brackets.
#include "kssubtitle/import/formats/common/spans.h"

#include "kssubtitle/import/formats/common/time_lines.h"

namespace kssubtitle::importing {

Likelihood likelihoodOfSpans(std::string_view text, Brackets brackets) {
  constexpr int kFew = 4;
  int spans = 0;
  int others = 0;
  int prose = 0;  // of the others, those that do not look like damaged spans
  bool isFirst = false;
  for (const Line& line : Lines(text)) {
    const auto span = spanLineOf(line.text, brackets);
    if (span && (span->start != SpanLine::kMissing || span->end != SpanLine::kMissing)) {
      if (++spans > 1) return Likelihood::kLikely;
      isFirst = others == 0;
    } else if (mayPrecedeText(line.text)) {
      break;
    } else if (const auto content = withoutBlanks(line.text); !content.empty()) {
      ++others;
      if (content.front() != brackets.opening) ++prose;
    }
  }
  if (spans == 0 || prose > kFew) return Likelihood::kNone;
  return isFirst ? Likelihood::kLikely : Likelihood::kPossible;
}

ksImportCue* beginSpan(long long start, long long end, int line, CueSink& sink) {
  constexpr long long kMissing = SpanLine::kMissing;
  if (start == kMissing && end == kMissing) {
    sink.notes().add(ksImportProblem::kTimeUnreadable, line);
    return nullptr;
  }
  if (start == kMissing) sink.notes().add(ksImportProblem::kTimeRepaired, line);
  if (start == kMissing) start = 0;
  return end == kMissing ? &sink.beginWithoutEnd(start, line) : &sink.begin(start, end, line);
}

}  // namespace kssubtitle::importing
