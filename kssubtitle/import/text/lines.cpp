// The lines of a text and how they end.
#include "kssubtitle/import/text/lines.h"

#include <algorithm>
#include <utility>

#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

struct EndCounts {
  std::size_t lf = 0;
  std::size_t cr = 0;
  std::size_t crLf = 0;
};

/// Counts in fewer than 256 characters, so that the counts fit in bytes and compilers vectorise the
/// loop: with a plain one, Open() of SubRip takes 15 % longer with CR LF, and 21 % in UTF-16. Reads
/// the character after them.
inline void countInBlock(const char* p, std::size_t size, EndCounts& counts) noexcept {
  unsigned char lf = 0;
  unsigned char cr = 0;
  unsigned char crLf = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const int isLf = p[i] == '\n' ? 1 : 0;
    const int isCr = p[i] == '\r' ? 1 : 0;
    const int isBeforeLf = p[i + 1] == '\n' ? 1 : 0;
    lf = static_cast<unsigned char>(lf + isLf);
    cr = static_cast<unsigned char>(cr + isCr);
    crLf = static_cast<unsigned char>(crLf + (isCr & isBeforeLf));
  }
  counts.lf += lf;
  counts.cr += cr;
  counts.crLf += crLf;
}

EndCounts countEnds(const std::string& text) noexcept {
  constexpr std::size_t kBlock = 128;
  EndCounts counts;
  std::size_t at = 0;
  for (; at + kBlock <= text.size(); at += kBlock) countInBlock(text.data() + at, kBlock, counts);
  countInBlock(text.data() + at, text.size() - at, counts);
  return counts;
}

/// Whether every line feed has two carriage returns before it.
bool allFollowTwoReturns(std::string_view text) noexcept {
  for (std::size_t at = text.find('\n'); at != text.npos; at = text.find('\n', at + 1)) {
    if (at < 2 || text[at - 1] != '\r' || text[at - 2] != '\r') return false;
  }
  return true;
}

/// Replaces by a line feed each carriage return that is not part of the usual line end.
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
  const auto [lf, cr, crLf] = countEnds(text);
  if (cr == crLf) return lf == crLf ? ksImportLineEnds::kCrLf : ksImportLineEnds::kMixed;
  const bool isDoubled = lf > 0 && allFollowTwoReturns(text);
  if (isDoubled && cr == 2 * lf) return ksImportLineEnds::kCrCrLf;
  endLinesAtLoneReturns(text, isDoubled ? "\r\r\n" : "\r\n");
  return lf == 0 ? ksImportLineEnds::kCr : ksImportLineEnds::kMixed;
}

void dropBoms(std::string& text) {
  // WebVTT, section 4.1: the signature may follow one BOM, which is gone by now.
  const bool isWebVttAfterTwo = text.starts_with("\xEF\xBB\xBFWEBVTT");
  std::string kept;
  std::size_t at = 0;
  for (std::size_t bom; (bom = text.find(kBomUtf8, at)) != text.npos; at = bom + kBomUtf8.size()) {
    kept.append(text, at, bom - at);
    const bool isDropped = kept.empty() ? !isWebVttAfterTwo : kept.back() == '\n';
    if (!isDropped) kept += kBomUtf8;
  }
  if (at == 0) return;
  kept.append(text, at);
  text = std::move(kept);
}

std::size_t httpHeaderLength(std::string_view text) noexcept {
  if (!startsWithNoCase(text, "Content-Type:")) return 0;
  for (const Line& line : Lines(text)) {
    if (withoutBlanks(line.text).empty()) return std::min(line.next, text.size());
    if (line.text.find(':') == line.text.npos) return 0;
  }
  return 0;
}

}  // namespace kssubtitle::importing
