// What a file must be for the fixed readers to answer it as it is meant.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "kssubtitle/import/ksImportCue.h"
#include "kssubtitle/import/ksImportReport.h"

namespace kssubtitle::importing {

struct ReportData;

/// The rows of the table in conditions.cpp, where each has its sentence.
enum class Condition {
  kReadable,
  kFormat,
  kExtension,
  kEncoding,
  kLineEnds,
  kLineCount,
  kCuesAlone,
  kScript,
  kNumbers,
  kTimes,
  kOrder,
  kVerbatim,
  kTwoLines,
  kSigns,
  kDigits,
};
inline constexpr std::size_t kConditions = static_cast<std::size_t>(Condition::kDigits) + 1;

/// The conditions that a file fails.
class FailedConditions {
 public:
  void add(Condition condition) noexcept { bits_ |= bitOf(condition); }
  bool has(Condition condition) const noexcept { return (bits_ & bitOf(condition)) != 0; }
  bool empty() const noexcept { return bits_ == 0; }

 private:
  static std::uint32_t bitOf(Condition condition) noexcept {
    return std::uint32_t{1} << static_cast<unsigned>(condition);
  }

  std::uint32_t bits_ = 0;
};

/// The fixed readers refuse a file of more lines.
inline constexpr int kMostLinesOfFixedReaders = 20000;

/// Whether the fixed readers decode these bytes, a whole file, as `encoding`.
bool isEncodingOfFixedReaders(std::string_view bytes, std::string_view encoding) noexcept;
/// Whether ksSubtitleManager reads a file of that name as `format`; any does that has no name.
bool isExtensionOfFixedReaders(std::string_view path, std::string_view format) noexcept;
/// Whether `text` was written from `source`, the lines of a SubRip cue, without a change, but that
/// the line feeds at the end are gone. Sizes tell: whatever is changed becomes shorter, or holds a
/// sign of HTML, which is a condition of its own.
inline bool isVerbatimSubRip(std::string_view source, std::string_view text) noexcept {
  while (source.ends_with('\n')) source.remove_suffix(1);
  return source.size() == text.size();
}
/// The same of the text of a script's event, in which one line may end in `\N`.
inline bool isVerbatimAss(std::string_view source, std::string_view text) noexcept {
  if (source.size() == text.size()) return true;
  if (source.size() != text.size() + 1) return false;
  const std::size_t end = text.find('\n');
  return end != text.npos && source[end + 1] == 'N';
}

/// Everything that a report's file fails, the texts of its cues looked at.
FailedConditions failedConditions(const ReportData& data) noexcept;
/// The row of the table.
const ksImportCondition& rowOf(Condition condition) noexcept;

}  // namespace kssubtitle::importing
