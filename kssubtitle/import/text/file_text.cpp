// The bytes of a file become its text.
#include "kssubtitle/import/text/file_text.h"

#include <string_view>
#include <utility>

#include "kssubtitle/import/conditions.h"
#include "kssubtitle/import/text/decoding.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

/// Notes the lines of what could not be decoded.
void noteReplacements(const DecodedText& decoded, Notes& notes) {
  std::size_t at = 0;
  int line = 1;
  for (const std::size_t offset : decoded.replacements.offsets()) {
    line += countLines(std::string_view(decoded.text).substr(at, offset - at));
    at = offset;
    notes.add(ksImportProblem::kUndecodable, line);
  }
  for (std::size_t i = decoded.replacements.offsets().size(); i < decoded.replacements.count();
       ++i) {
    notes.add(ksImportProblem::kUndecodable, line);
  }
}

}  // namespace

std::optional<std::string> textOf(std::string bytes, const ksImportOptions& options,
                                  ReportData& report) {
  FoundEncoding found = findEncoding(bytes, {options.encoding, options.fallbackEncoding});
  if (!isEncodingOfFixedReaders(bytes, found.encoding.name)) {
    report.notes.fail(Condition::kEncoding);
  }
  std::optional<DecodedText> decoded = decode(std::move(bytes), found);
  if (!decoded) return std::nullopt;
  report.encodingSource = found.source;
  report.encoding = std::move(found.encoding.name);
  report.lineEnds = settleLineEnds(decoded->text);
  noteReplacements(*decoded, report.notes);
  if (dropMarks(decoded->text)) report.notes.fail(Condition::kVerbatim);
  return std::move(decoded->text);
}

}  // namespace kssubtitle::importing
