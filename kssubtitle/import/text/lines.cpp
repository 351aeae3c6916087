// How the lines of a text end.
#include "kssubtitle/import/text/lines.h"

#include <algorithm>

namespace kssubtitle::importing {
namespace {

std::size_t countOf(std::string_view text, char c) noexcept {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), c));
}

/// How many line feeds have a carriage return `distance` characters in front of them.
std::size_t countReturnsBefore(std::string_view text, std::size_t distance) noexcept {
  std::size_t count = 0;
  for (std::size_t i = distance; i < text.size(); ++i) {
    count += text[i] == '\n' && text[i - distance] == '\r' ? 1U : 0U;
  }
  return count;
}

/// In a text in which some carriage returns stand without a line feed these alone end lines.
void endLinesAtLoneReturns(std::string& text) noexcept {
  for (std::size_t at = text.find('\r'); at != text.npos; at = text.find('\r', at + 1)) {
    if (at + 1 == text.size() || text[at + 1] != '\n') text[at] = '\n';
  }
}

}  // namespace

ksImportLineEnds settleLineEnds(std::string& text) {
  const std::size_t lf = countOf(text, '\n');
  const std::size_t cr = countOf(text, '\r');
  if (cr == 0) return lf == 0 ? ksImportLineEnds::kNone : ksImportLineEnds::kLf;
  const std::size_t crLf = countReturnsBefore(text, 1);
  if (cr == crLf) return lf == crLf ? ksImportLineEnds::kCrLf : ksImportLineEnds::kMixed;
  if (lf > 0 && crLf == lf && cr == 2 * lf && countReturnsBefore(text, 2) == lf) {
    return ksImportLineEnds::kCrCrLf;
  }
  endLinesAtLoneReturns(text);
  return lf == 0 ? ksImportLineEnds::kCr : ksImportLineEnds::kMixed;
}

int countLines(std::string_view text) noexcept {
  return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

std::size_t httpHeaderLength(std::string_view text) noexcept {
  if (!startsWithNoCase(text, "Content-Type:")) return 0;
  Line line;
  for (Lines lines(text); lines.next(line);) {
    if (withoutBlanks(line.text).empty()) return std::min(line.next, text.size());
    if (line.text.find(':') == line.text.npos) return 0;
  }
  return 0;
}

}  // namespace kssubtitle::importing
