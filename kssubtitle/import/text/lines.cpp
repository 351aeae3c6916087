// How the lines of a text end.
#include "kssubtitle/import/text/lines.h"

#include <algorithm>

namespace kssubtitle::importing {
namespace {

/// How many places of `size` are counted. Blocks of a fixed size, whose counts fit a byte, are what
/// compilers turn into vector instructions: lone carriage returns are looked for in every file.
template <typename IsCounted>
std::size_t countPlaces(std::size_t size, IsCounted isCounted) noexcept {
  constexpr std::size_t kBlock = 128;
  std::size_t count = 0;
  std::size_t i = 0;
  for (; i + kBlock <= size; i += kBlock) {
    unsigned char inBlock = 0;
    for (std::size_t j = 0; j < kBlock; ++j) {
      inBlock = static_cast<unsigned char>(inBlock + (isCounted(i + j) ? 1 : 0));
    }
    count += inBlock;
  }
  for (; i < size; ++i) count += isCounted(i) ? 1U : 0U;
  return count;
}

std::size_t countOf(std::string_view text, char c) noexcept {
  const char* const p = text.data();
  return countPlaces(text.size(), [p, c](std::size_t i) { return p[i] == c; });
}

/// How many line feeds have a carriage return `distance` characters in front of them.
std::size_t countReturnsBefore(std::string_view text, std::size_t distance) noexcept {
  if (text.size() <= distance) return 0;
  const char* const p = text.data();
  return countPlaces(text.size() - distance, [p, distance](std::size_t i) {
    return static_cast<int>(p[i] == '\r') + static_cast<int>(p[i + distance] == '\n') == 2;
  });
}

/// In a text in which some carriage returns stand without a line feed these alone end lines.
void endLinesAtLoneReturns(std::string& text, std::string_view usualEnd) noexcept {
  for (std::size_t at = text.find('\r'); at != text.npos; at = text.find('\r', at + 1)) {
    if (std::string_view(text).substr(at).starts_with(usualEnd)) {
      at += usualEnd.size() - 1;
    } else {
      text[at] = '\n';
    }
  }
}

}  // namespace

ksImportLineEnds settleLineEnds(std::string& text) {
  if (text.find('\r') == text.npos) {
    return text.find('\n') == text.npos ? ksImportLineEnds::kNone : ksImportLineEnds::kLf;
  }
  const std::size_t lf = countOf(text, '\n');
  const std::size_t cr = countOf(text, '\r');
  const std::size_t crLf = countReturnsBefore(text, 1);
  if (cr == crLf) return lf == crLf ? ksImportLineEnds::kCrLf : ksImportLineEnds::kMixed;
  const bool isDoubled = lf > 0 && crLf == lf && countReturnsBefore(text, 2) == lf;
  if (isDoubled && cr == 2 * lf) return ksImportLineEnds::kCrCrLf;
  endLinesAtLoneReturns(text, isDoubled ? "\r\r\n" : "\r\n");
  return lf == 0 ? ksImportLineEnds::kCr : ksImportLineEnds::kMixed;
}

bool dropMarks(std::string& text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  std::string kept;
  std::size_t at = 0;
  for (std::size_t mark; (mark = text.find(kMark, at)) != text.npos; at = mark + kMark.size()) {
    kept.append(text, at, mark - at);
    const bool isInFront = kept.empty() || kept.back() == '\n';
    if (!isInFront) kept += kMark;
  }
  if (at == 0) return false;
  kept.append(text, at);
  if (kept.size() == text.size()) return false;
  text = std::move(kept);
  return true;
}

int countLines(std::string_view text) noexcept { return static_cast<int>(countOf(text, '\n')); }

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
