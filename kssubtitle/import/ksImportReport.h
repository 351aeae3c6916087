/// @file
/// What the import library tells about a file beside its cues.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/export.h"

namespace kssubtitle::importing {
struct ReportData;
}

/// Why a file is refused.
enum class ksImportRefusal {
  kNone,             ///< It was not refused.
  kCannotOpen,       ///< The system cannot open or read it; ksImportReport::systemError() says why.
  kTooLarge,         ///< It has more bytes than the options allow.
  kEmpty,            ///< It has no bytes.
  kPictures,         ///< It holds pictures, not text: a VobSub index or stream, or PGS.
  kBinary,           ///< It is compressed, or no text at all.
  kUnknownFormat,    ///< It is text, but in no format that is known.
  kUnknownEncoding,  ///< The options name an encoding that the C library does not know.
  kUnknownOption,    ///< The options name a format that there is none of.
};

/// How the encoding of a file was found.
enum class ksImportEncodingSource {
  kMark,        ///< By the mark that it begins with.
  kZeroBytes,   ///< By where its zero bytes stand.
  kValidUtf8,   ///< All of it is UTF-8, or ASCII.
  kMostlyUtf8,  ///< It is UTF-8 but for a few bytes.
  kDeclared,    ///< The file names it.
  kDetected,    ///< By the statistics of its bytes.
  kFallback,    ///< It could not be told: ksImportOptions::fallbackEncoding.
  kGiven,       ///< By ksImportOptions::encoding.
};

/// How the lines of a file end.
enum class ksImportLineEnds { kNone, kLf, kCrLf, kCr, kCrCrLf, kMixed };

/// What can be wrong with a file that is read all the same.
enum class ksImportProblem {
  kNumberMissing,      ///< A cue has no number where others have one.
  kNumberDoubled,      ///< A cue has the number of the one before.
  kNumberFalling,      ///< A cue has a lesser number than the one before.
  kCueWithoutText,     ///< A cue has no text and is left out.
  kEndNotBehindStart,  ///< A cue is never shown, as its end is not behind its start or above 0.
  kOverlap,            ///< A cue starts before an earlier one has ended.
  kTimeRepaired,       ///< A time is written in an unusual way.
  kTimeUnreadable,     ///< A time cannot be read: its cue is left out.
  kLineIgnored,        ///< A line is no part of any cue.
  kTagUnclosed,        ///< A tag or an override block is not closed.
  kUndecodable,        ///< Bytes without a meaning in the file's encoding became U+FFFD.
  kZeroCharacter,      ///< A zero character was left out or replaced.
  kCueCutOff,          ///< The file ends inside of a cue.
  kColumnsMissing,     ///< An event has fewer columns than its section's format: it is left out.
  kUnknownStyle,       ///< An event names a style that the script does not have.
  kFrameRateAssumed,   ///< Times are counted in frames, and the file does not say of which rate.
  kEndAssumed,         ///< The last cue has no end of its own; others end where the next begins.
  kDuplicate,          ///< A cue is there twice.
  kPictureDamaged,     ///< A picture cannot be read and is left out.
  kColorsChange,       ///< A picture changes colours from column to column: it keeps its first.
  kOutsideParent,      ///< A cue begins when the part that it stands in is over: it is left out.
  kUnsupported,        ///< Something that the format has is left out.
};

/// The number of problems that there are.
inline constexpr std::size_t kImportProblems =
    static_cast<std::size_t>(ksImportProblem::kUnsupported) + 1;

/// One problem of a file.
struct ksImportNote {
  ksImportProblem problem;  ///< What is wrong.
  int line;                 ///< Where, as a line number from 1; 0 for the whole file.
};

/// One English sentence about a note, without its line number.
KSSUBTITLE_IMPORT_API std::string_view describe(const ksImportNote& note) noexcept;

/// Something that a file must be for the fixed readers, those of ksSubtitleManager, to answer it as
/// it is meant. Always valid.
struct ksImportCondition {
  std::string_view name;      ///< A word or two, such as "line ends".
  std::string_view sentence;  ///< One English sentence on a file that is not so.
};

/// What was found out about the file that a parser was last asked to open. Belongs to the parser;
/// what it hands out is valid until the parser's next Open(). Before the first one it
/// tells of a file that cannot be opened. Nothing throws but `std::bad_alloc`, and that only
/// from unmetConditions().
class KSSUBTITLE_IMPORT_API ksImportReport {
 public:
  /// @{
  /// A report is made, and moved, with its parser.
  ksImportReport() noexcept;
  ksImportReport(ksImportReport&& other) noexcept;
  ksImportReport& operator=(ksImportReport&& other) noexcept;
  ~ksImportReport();
  /// @}

  /// Why the file was refused; kNone if it was read.
  ksImportRefusal refusal() const noexcept;
  /// The `errno` of kCannotOpen; 0 otherwise.
  int systemError() const noexcept;
  /// One English sentence on the refusal; empty if the file was read.
  std::string_view refusalText() const noexcept;
  /// The short name of the format, such as "subrip" or "ass"; empty if it was not recognised.
  std::string_view format() const noexcept;
  /// The name of the encoding, such as "UTF-8" or "windows-1251"; empty if the file was refused
  /// before it was told.
  std::string_view encoding() const noexcept;
  /// How the encoding was found.
  ksImportEncodingSource encodingSource() const noexcept;
  /// How the lines end.
  ksImportLineEnds lineEnds() const noexcept;
  /// The size of the file in bytes, as far as it was read.
  std::size_t size() const noexcept;
  /// The languages that the file says its cues have, in its order; in SAMI the classes that the
  /// style sheet leaves out come behind them. Empty if there are none.
  std::span<const std::string> languages() const noexcept;
  /// The problems that were found, by line; the first 1,000 of them.
  std::span<const ksImportNote> notes() const noexcept;
  /// How many of one kind were found, those that notes() does not keep included.
  std::size_t count(ksImportProblem problem) const noexcept;
  /// Whether ksSubtitleManager answers the file as it is meant: with the start, end and text that
  /// its parser here gives, at every millisecond, in the query of the file's width. It may be false
  /// where that is so, and is never true where it is not; a file without a name is taken to have
  /// the right one. Looks at every text, so ask once.
  bool fixedReadersAgree() const noexcept;
  /// Why not: the conditions that the file does not meet, none if fixedReadersAgree(). Looks at
  /// every text, too.
  std::vector<ksImportCondition> unmetConditions() const;

 private:
  friend class ksImportParser;
  friend class ksImportPictures;
  std::unique_ptr<kssubtitle::importing::ReportData> data_;
};
