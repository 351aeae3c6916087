// The table of the formats that are known.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/formats/common/cue_sink.h"
#include "kssubtitle/import/ksImportOptions.h"

namespace kssubtitle::importing {

/// How likely a text is of a format. Between equal ones the extension decides, then the table's
/// order.
enum class Likelihood {
  kNone,
  kPossible,  ///< Other kinds of text look like that too.
  kLikely,    ///< Some of its lines are of a form that no other format has.
  kCertain,   ///< It begins with the format's signature.
};

/// The Format::longestAssumed of formats in which a cue lasts up to the next one however long. A
/// time plus this is still a number.
inline constexpr long long kUpToTheNext = 1LL << 60;

/// What a format's reader reads.
struct FormatInput {
  std::string_view text;  ///< Valid UTF-8 without a mark. Every line ends in a line feed, with or
                          ///< without a carriage return in front; the last one may lack it.
  std::size_t begin;      ///< Where the lines begin, behind what is no part of the format.
  int firstLine;          ///< The number of the line there.
  const ksImportOptions& options;
  std::vector<std::string>& languages;  ///< What the file says it holds, for the report.
};

/// A format: what it is called, how it is recognised, how it is read.
struct Format {
  std::string_view name;        ///< As options and reports have it.
  std::string_view extensions;  ///< In lower case, separated by blanks.
  /// Looks at the first lines of a text; they may be cut off anywhere.
  Likelihood (*likelihood)(std::string_view text);
  void (*read)(const FormatInput& input, CueSink& sink);
  long long longestAssumed = 0;  ///< How long a cue without an end is shown at most, in ms.
  bool keepsZeros = false;       ///< A zero character is U+FFFD, not nothing.
};

/// Every format.
std::span<const Format> formats() noexcept;
/// The format of that name; null if there is none.
const Format* formatNamed(std::string_view name) noexcept;
/// The format of a text from a file of that name; null if it is of none.
const Format* recognise(std::string_view text, std::string_view path) noexcept;
/// Whether such a text, of another format or none, is WebVTT by its name and by its times: only the
/// signature is missing, without which the standard lets no text be WebVTT.
bool isWebVttWithoutSignature(std::string_view text, std::string_view path) noexcept;

}  // namespace kssubtitle::importing
