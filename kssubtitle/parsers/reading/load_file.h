// The one loop in which a parser opens a file and collects its lines.
#pragma once

#include <array>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kssubtitle/parsers/reading/pieces.h"
#include "kssubtitle/parsers/reading/reading_rules.h"
#include "kssubtitle/parsers/sub_fopen.h"
#include "kssubtitle/strings/ksBasicString.h"

namespace kssubtitle::internal {

template <LastLine kLastLine, typename Source>
bool readLine(Source& source, std::basic_string<typename Source::Char>& out) {
  if constexpr (kLastLine == LastLine::kKept) {
    return readLineKeepingLast(source, out);
  } else {
    return readLineLosingLast(source, out);
  }
}

/// ReadString() of the parsers: the next line of a stream.
template <ReadingRules kRules, typename Char>
bool readStreamLine(std::FILE* file, ksBasicString<Char>& out) {
  StreamPieces<Char> pieces(file);
  std::basic_string<Char> line(out.getData(), static_cast<std::size_t>(out.length()));
  const bool found = readLine<kRules.lastLine>(pieces, line);
  out = std::move(line);
  return found;
}

/// A line that needs no pieces; false where the source has none to offer.
template <typename Source>
bool takeWholeLine(Source& source, std::basic_string_view<typename Source::Char>& line) {
  if constexpr (requires { source.nextLine(line); }) {
    return source.nextLine(line);
  } else {
    return false;
  }
}

/// Appends the source's non-empty lines to `lines`; false as soon as there are more lines than
/// accepted, the one too many included in `lines`.
template <ReadingRules kRules, typename Source>
bool collectLines(Source source, std::vector<ksBasicString<typename Source::Char>>& lines) {
  using String = std::basic_string<typename Source::Char>;
  for (unsigned count = 0; count <= kRules.lineCap; ++count) {
    if (std::basic_string_view<typename Source::Char> whole; takeWholeLine(source, whole)) {
      if (!whole.empty()) lines.emplace_back(String(whole));
      continue;
    }
    String line;
    const bool found = readLine<kRules.lastLine>(source, line);
    if (!line.empty()) lines.emplace_back(std::move(line));
    if (!found) return true;
  }
  return false;
}

using Stream = std::unique_ptr<std::FILE, decltype(&std::fclose)>;

/// Whether the text from `start` on is UTF-16LE; leaves the stream there.
inline bool holdsUtf16(std::FILE* file, long start) {
  std::array<unsigned char, 256> bytes;
  const std::size_t size = std::fread(bytes.data(), 1, bytes.size(), file);
  std::fseek(file, start, SEEK_SET);
  return looksLikeUtf16(bytes.data(), size);
}

template <ReadingRules kRules>
bool collectText(const char*, Stream& stream, std::FILE*&,
                 std::vector<ksBasicString<char>>& lines) {
  return collectLines<kRules>(BlockPieces<ByteInput>(stream.get()), lines);
}

/// Text that is not UTF-16LE is read by the C library under the host's locale, from a stream opened
/// anew: looking at the bytes has made the first one a byte stream for good. It gets its place
/// before its orientation: in a wide stream glibc's fseek() need not return, not from the middle of
/// a character.
template <ReadingRules kRules>
bool collectText(const char* path, Stream& stream, std::FILE*& file,
                 std::vector<ksBasicString<wchar_t>>& lines) {
  if (holdsUtf16(stream.get(), kRules.start)) {
    return collectLines<kRules>(BlockPieces<Utf16Input>(stream.get()), lines);
  }
  stream.reset(file = sub_fopen(path, "rb"));
  if (file == nullptr) return false;
  std::fseek(file, kRules.start, SEEK_SET);
  std::fwide(file, 1);
  return collectLines<kRules>(StreamPieces<wchar_t>(file), lines);
}

/// Replaces `lines` by the non-empty lines of the file at `path`; false if it cannot be opened, is
/// empty, or has too many lines. `file` is then the stream, closed but for an empty file.
template <ReadingRules kRules, typename Char>
bool readLines(const char* path, std::FILE*& file, std::vector<ksBasicString<Char>>& lines) {
  lines.clear();
  file = sub_fopen(path, "rb");
  if (file == nullptr) return false;
  std::fseek(file, 0, SEEK_END);
  // Deliberate: the size counts modulo 2^32, and the stream of an empty file stays open.
  if (static_cast<int>(ftello(file)) < 1) return false;
  std::fseek(file, kRules.start, SEEK_SET);
  Stream stream(file, &std::fclose);
  return collectText<kRules>(path, stream, file, lines);
}

/// Open() of the parsers, after what each does first.
template <ReadingRules kRules, typename Parser>
bool openAndConvert(Parser& parser, const char* path, bool (Parser::*convert)()) {
  if (!readLines<kRules>(path, parser.file, parser.lines)) return false;
  (parser.*convert)();
  parser.opened = true;
  return true;
}

}  // namespace kssubtitle::internal
