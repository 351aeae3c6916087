// From the bytes of a file to its text.
#include "kssubtitle/import/text/file_text.h"

#include <string_view>
#include <utility>

#include "kssubtitle/import/text/decoding.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

using namespace std::string_view_literals;

/// Drops the NULs that a file is padded with, and notes all of them once; and the Ctrl-Z that old
/// systems padded text files with.
void dropPadding(std::string& text, Notes& notes) {
  const std::size_t size = text.find_last_not_of("\0\x1A"sv) + 1;
  const bool hasNuls = text.find('\0', size) != text.npos;
  text.resize(size);
  if (hasNuls) notes.add(ksImportProblem::kNulCharacter, 1 + countLines(text));
}

/// Notes the lines of what could not be decoded; the last one known stands for the rest.
void noteReplacements(const DecodedText& decoded, Notes& notes) {
  LineNumbers lines(decoded.text);
  int line = 1;
  for (std::size_t i = 0; i < decoded.replacements.count(); ++i) {
    const auto& offsets = decoded.replacements.offsets();
    if (i < offsets.size()) line = lines.of(offsets[i]);
    notes.add(ksImportProblem::kUndecodable, line);
  }
}

}  // namespace

std::optional<std::string> textOf(std::string bytes, const ksImportOptions& options,
                                  ReportData& report) {
  FoundEncoding found = findEncoding(bytes, {options.encoding, options.fallbackEncoding});
  std::optional<DecodedText> decoded = decode(std::move(bytes), found);
  if (!decoded) return std::nullopt;
  report.encodingSource = found.source;
  report.encoding = std::move(found.encoding.name);
  report.lineEnds = settleLineEnds(decoded->text);
  dropPadding(decoded->text, report.notes);
  noteReplacements(*decoded, report.notes);
  dropBoms(decoded->text);
  return std::move(decoded->text);
}

}  // namespace kssubtitle::importing
