// From the bytes of a file to its text.
#include "kssubtitle/import/text/file_text.h"

#include <string_view>
#include <utility>

#include "kssubtitle/import/conditions.h"
#include "kssubtitle/import/text/decoding.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

/// Drops the NULs that a file is padded with, and notes all of them once.
void dropPadding(std::string& text, Notes& notes) {
  const std::size_t size = text.find_last_not_of('\0') + 1;
  if (size == text.size()) return;
  text.resize(size);
  notes.add(ksImportProblem::kNulCharacter, 1 + countLines(text));
}

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
  dropPadding(decoded->text, report.notes);
  noteReplacements(*decoded, report.notes);
  if (dropBoms(decoded->text)) report.notes.fail(Condition::kVerbatim);
  return std::move(decoded->text);
}

}  // namespace kssubtitle::importing
