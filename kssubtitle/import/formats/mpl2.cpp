// MPL2: lines such as "[1][25]text", with times counted in tenths of a second.
#include <string_view>

#include "kssubtitle/import/formats/common/spans.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/bar_separated_text.h"

namespace kssubtitle::importing {
namespace {

constexpr Brackets kBrackets{'[', ']'};
constexpr BarMarkup kMarkup{BarMarkup::Signs::kPrefixes};

constexpr long long millisecondsOfTenths(long long tenths) noexcept {
  return tenths == SpanLine::kMissing ? tenths : tenths * 100;
}

void readLine(const Line& line, BarWriter& writer, CueSink& sink) {
  if (withoutBlanks(line.text).empty()) return;
  const auto span = spanLineOf(line.text, kBrackets);
  if (!span) return sink.notes().add(ksImportProblem::kLineIgnored, line.number);
  ksImportCue* const cue = beginSpan(millisecondsOfTenths(span->start),
                                     millisecondsOfTenths(span->end), line.number, sink);
  if (cue == nullptr) return;
  writer.write(span->text, cue->alignment);
  if (writer.closeTags()) sink.notes().add(ksImportProblem::kTagUnclosed, line.number);
  sink.finish();
}

Likelihood likelihoodOf(std::string_view text) noexcept {
  return likelihoodOfSpans(text, kBrackets);
}

void read(const FormatInput& input, CueSink& sink) {
  BarWriter writer(kMarkup, sink.text());
  for (const Line& line : input.lines()) {
    readLine(line, writer, sink);
  }
}

}  // namespace

constinit const Format kMpl2 = {
    .info = {.name = "mpl2", .extensions = "txt mpl"},
    .likelihood = likelihoodOf,
    .read = read,
    .longestAssumed = kUpToTheNext,
};

}  // namespace kssubtitle::importing
