// Where pieces of a file come from: a stream, one at a time, or blocks of it. See join_pieces.h
// for what a source of pieces is.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/parsers/reading/join_pieces.h"
#include "kssubtitle/parsers/reading/utf16_input.h"

namespace kssubtitle::internal {

/// As fgets(), or fgetws(), of a whole piece. A wide-oriented stream is read under the host's
/// locale, any other as UTF-16LE. False at the end of the file and after a read error.
bool readPiece(std::FILE* file, char (&buffer)[kPieceLength + 1]);
bool readPiece(std::FILE* file, wchar_t (&buffer)[kPieceLength + 1]);

/// Pieces of a stream whose position is right after the last piece after every read.
template <typename Character>
class StreamPieces {
 public:
  using Char = Character;

  explicit StreamPieces(std::FILE* file) noexcept : file_(file) {}
  void startLine() noexcept { buffer_[0] = 0; }
  bool next() {
    if (readPiece(file_, buffer_)) return true;
    if (!atEnd()) {
      std::clearerr(file_);
      buffer_[0] = 0;
    }
    return false;
  }
  std::basic_string_view<Char> piece() const noexcept { return buffer_; }
  bool atEnd() const noexcept { return std::feof(file_) != 0; }

 private:
  std::FILE* file_;
  Char buffer_[kPieceLength + 1] = {};
};

/// The bytes of a stream as 8-bit characters.
class ByteInput {
 public:
  using Char = char;

  explicit ByteInput(std::FILE* file) noexcept : file_(file) {}
  /// Fills `to` with up to `room` bytes; 0 at the end of the file and after a read error.
  std::size_t read(char* to, std::size_t room) { return std::fread(to, 1, room, file_); }
  bool atEnd() const noexcept { return std::feof(file_) != 0; }

 private:
  std::FILE* file_;
};

/// The pieces that StreamPieces gives, without a call of the C library for each.
template <typename Input>
class BlockPieces {
 public:
  using Char = typename Input::Char;

  explicit BlockPieces(std::FILE* file) : file_(file), input_(file), buffer_(kCapacity) {}
  void startLine() noexcept { pieceBegin_ = pieceEnd_; }
  bool next();
  /// Takes the next line at once and assigns it, without its line feed, to `line`, which the next
  /// call invalidates. False if that needs a look at its pieces: if the buffer does not hold all of
  /// it, or a NUL in it.
  bool nextLine(std::basic_string_view<Char>& line) noexcept;
  std::basic_string_view<Char> piece() const noexcept {
    const std::basic_string_view<Char> whole(buffer_.data() + pieceBegin_, pieceEnd_ - pieceBegin_);
    return whole.substr(0, whole.find(Char{}));
  }
  bool atEnd() const noexcept { return atEnd_; }

 private:
  static constexpr std::size_t kCapacity = 16384;

  std::size_t nextLength() const noexcept;
  bool refill();

  std::FILE* file_;
  Input input_;
  std::vector<Char> buffer_;
  std::size_t pieceBegin_ = 0;  // the piece, and after it what is not yet handed out
  std::size_t pieceEnd_ = 0;
  std::size_t end_ = 0;
  std::size_t nul_ = 0;  // the buffer's first NUL; npos if it has none
  bool atEnd_ = false;
};

/// The length of the piece after the last one, as far as the buffer holds it.
template <typename Input>
std::size_t BlockPieces<Input>::nextLength() const noexcept {
  std::basic_string_view<Char> rest(buffer_.data() + pieceEnd_, end_ - pieceEnd_);
  rest = rest.substr(0, kPieceLength);
  const std::size_t lineFeed = rest.find(Char{'\n'});
  return lineFeed == rest.npos ? rest.size() : lineFeed + 1;
}

template <typename Input>
bool BlockPieces<Input>::next() {
  std::size_t length = nextLength();
  while (length < kPieceLength && (length == 0 || buffer_[pieceEnd_ + length - 1] != '\n')) {
    if (!refill()) {
      if (!atEnd_) {  // a read error: what it interrupts is lost
        std::clearerr(file_);
        pieceBegin_ = pieceEnd_ = end_;
        return false;
      }
      break;
    }
    length = nextLength();
  }
  if (length == 0) return false;
  pieceBegin_ = pieceEnd_;
  pieceEnd_ += length;
  return true;
}

template <typename Input>
bool BlockPieces<Input>::nextLine(std::basic_string_view<Char>& line) noexcept {
  const std::basic_string_view<Char> rest(buffer_.data() + pieceEnd_, end_ - pieceEnd_);
  const std::size_t lineFeed = rest.find(Char{'\n'});
  if (lineFeed == rest.npos || pieceEnd_ + lineFeed > nul_) return false;
  line = rest.substr(0, lineFeed);
  pieceEnd_ += lineFeed + 1;
  return true;
}

/// Reads more after what the buffer holds, moving it and the last piece to the front.
template <typename Input>
bool BlockPieces<Input>::refill() {
  std::char_traits<Char>::move(buffer_.data(), buffer_.data() + pieceBegin_, end_ - pieceBegin_);
  pieceEnd_ -= pieceBegin_;
  end_ -= pieceBegin_;
  pieceBegin_ = 0;
  const std::size_t got = input_.read(buffer_.data() + end_, buffer_.size() - end_);
  end_ += got;
  nul_ = std::basic_string_view<Char>(buffer_.data(), end_).find(Char{});
  if (got == 0 && input_.atEnd()) atEnd_ = true;
  return got != 0;
}

}  // namespace kssubtitle::internal
