// How pieces of a file become lines, in the two forms that the formats have.
//
// A source hands out pieces as fgets(buffer, 129, file) fills a buffer:
//   startLine()  forgets the piece before; the buffer is as if fresh
//   next()       reads a piece, up to a line feed or 128 characters; false at the end of the file
//                and after a read error, which it clears
//   piece()      the buffer up to its first NUL: the last piece, also when next() found the end of
//                the file; empty after a read error
//   atEnd()      whether a read has met the end of the file
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace kssubtitle::internal {

inline constexpr std::size_t kPieceLength = 128;

/// Whether the line goes on after `piece`.
template <typename Char>
bool isContinued(std::basic_string_view<Char> piece) noexcept {
  return piece.size() == kPieceLength && piece.back() != '\n';
}

template <typename Char>
void dropLineFeed(std::basic_string<Char>& line) noexcept {
  if (!line.empty() && line.back() == '\n') line.pop_back();
}

/// SubRip's form: a last line without a line feed returns false with the line in `out`. Deliberate:
/// if that line's length is a multiple of the piece's, its last piece is in `out` twice.
template <typename Source, typename Char>
bool readLineKeepingLast(Source& source, std::basic_string<Char>& out) {
  source.startLine();
  while (source.next() && isContinued(source.piece())) out += source.piece();
  out += source.piece();
  if (source.atEnd() || out.empty()) return false;
  dropLineFeed(out);
  return true;
}

/// The other formats' form: a last line without a line feed is lost.
template <typename Source, typename Char>
bool readLineLosingLast(Source& source, std::basic_string<Char>& out) {
  std::basic_string<Char> line;
  source.startLine();
  while (source.next() && !source.atEnd() && isContinued(source.piece())) line += source.piece();
  if (source.atEnd()) return false;
  line += source.piece();
  const bool found = !line.empty();
  dropLineFeed(line);
  out = std::move(line);
  return found;
}

}  // namespace kssubtitle::internal
