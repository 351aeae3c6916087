// One piece of a stream.
#include "kssubtitle/parsers/reading/pieces.h"

namespace kssubtitle::internal {
namespace {

bool readUtf16Piece(std::FILE* file, wchar_t (&buffer)[kPieceLength + 1]) {
  std::size_t length = 0;
  wchar_t c = 0;
  while (length < kPieceLength && c != L'\n' && readUtf16(file, c)) buffer[length++] = c;
  if (length == 0 || std::ferror(file)) return false;
  buffer[length] = 0;
  return true;
}

}  // namespace

bool readPiece(std::FILE* file, char (&buffer)[kPieceLength + 1]) {
  return std::fgets(buffer, sizeof buffer, file) != nullptr;
}

bool readPiece(std::FILE* file, wchar_t (&buffer)[kPieceLength + 1]) {
  if (std::fwide(file, 0) <= 0) return readUtf16Piece(file, buffer);
  return std::fgetws(buffer, kPieceLength + 1, file) != nullptr;
}

}  // namespace kssubtitle::internal
