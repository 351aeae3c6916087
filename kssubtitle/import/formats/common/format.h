// What a format is: its name, how it is recognised, how it is read.
#pragma once

#include <cstddef>
#include <string_view>

#include "kssubtitle/import/formats/common/cue_sink.h"
#include "kssubtitle/import/ksImportFormats.h"
#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {

/// How likely a text is to be of a format. Between equal ones the extension decides, then the order
/// of the table.
enum class Likelihood {
  kNone,
  kPossible,  ///< Other kinds of text look like that too.
  kLikely,    ///< Some of its lines have a form that no other format has.
  kCertain,   ///< It begins with the format's signature.
};

/// The Format::longestAssumed of formats in which a cue lasts until the next one, however long that
/// is. A time plus this still fits a number.
inline constexpr long long kUpToTheNext = 1LL << 60;

/// What a format's reader reads.
struct FormatInput {
  std::string_view text;  ///< Valid UTF-8 without a BOM. Every line ends in a line feed, with or
                          ///< without a carriage return before it; the last one may lack it.
  std::size_t begin;      ///< Where the lines begin, after what is not part of the format.
  int firstLine;          ///< The number of the line there.
  const ksImportOptions& options;

  Lines lines() const noexcept { return Lines(text, begin, firstLine); }
};

/// The Format::read of a format that is read by a class.
template <typename Reader>
void readWith(const FormatInput& input, CueSink& sink) {
  Reader(input, sink).read();
}

/// The same for a class that is given one line after the other, without white space at its ends.
template <typename Reader>
void readByLine(const FormatInput& input, CueSink& sink) {
  Reader reader(input, sink);
  for (const Line& line : input.lines()) reader.readLine(withoutBlanks(line.text), line.number);
  reader.finish();
}

/// One format; each source of formats/ defines its own.
struct Format {
  ksImportFormat info;
  /// Looks at the first lines of a text, which may be cut off anywhere.
  Likelihood (*likelihood)(std::string_view text) noexcept;
  void (*read)(const FormatInput& input, CueSink& sink);
  /// How long a cue without an end is shown at most, in ms.
  long long longestAssumed = 0;
  /// Whether a text with the format's extension is of the format but for the missing signature,
  /// without which its standard rejects it. Null if a text needs no signature.
  bool (*lacksSignature)(std::string_view text) noexcept = nullptr;
  std::string_view signatureMissing{};  ///< The sentence for such a file.
  bool keepsNuls = false;               ///< A NUL becomes U+FFFD; elsewhere it is dropped.
};

}  // namespace kssubtitle::importing
