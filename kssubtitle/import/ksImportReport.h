/// @file
/// What the import library found out about a file besides its cues.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "kssubtitle/import/export.h"

namespace kssubtitle::importing {
struct ReportData;
}

/// Why no file is open.
enum class ksImportRefusal {
  kNone,                 ///< One is open.
  kNotOpened,            ///< No file has been opened yet, or memory ran out.
  kCannotOpen,           ///< It cannot be opened or read; see ksImportReport::systemError().
  kTooLarge,             ///< It is larger than ksImportOptions::maxBytes.
  kEmpty,                ///< It has no bytes.
  kPictures,             ///< It holds pictures, not text: a VobSub index or stream, or PGS.
  kBinary,               ///< It is compressed, or not text at all.
  kUnknownFormat,        ///< It is text, but in no known format.
  kUnknownEncodingName,  ///< The options name an encoding that iconv does not know.
  kUnknownFormatName,    ///< The options name a format that does not exist.
};

/// How the encoding of a file was determined.
enum class ksImportEncodingSource {
  kBom,         ///< By its byte order mark.
  kNulBytes,    ///< By the positions of its NUL bytes: UTF-16 or UTF-32 without a BOM.
  kValidUtf8,   ///< It is valid UTF-8, which ASCII is too.
  kMostlyUtf8,  ///< It is UTF-8 but for a few bytes.
  kDeclared,    ///< The file declares it.
  kDetected,    ///< By the statistics of its bytes.
  kFallback,    ///< It could not be detected: ksImportOptions::fallbackEncoding.
  kGiven,       ///< By ksImportOptions::encoding.
};

/// How the lines of a file end.
enum class ksImportLineEnds {
  kNone,    ///< There is no line end.
  kLf,      ///< "\n", as on Unix.
  kCrLf,    ///< "\r\n", as on Windows.
  kCr,      ///< "\r", as on old Macintosh systems.
  kCrCrLf,  ///< "\r\r\n", from a conversion that was done twice.
  kMixed,   ///< Several of these.
};

/// What can be wrong with a file that was read all the same.
enum class ksImportProblem {
  kNumberMissing,     ///< A cue has no number where others have one.
  kNumberRepeated,    ///< A cue has the same number as the previous one.
  kNumberDecreasing,  ///< A cue has a lower number than the previous one.
  kCueWithoutText,    ///< A cue has no text and is dropped.
  kEndNotAfterStart,  ///< A cue does not end after max(start, 0), so it is never shown.
  kOverlap,           ///< A cue starts before an earlier one has ended.
  kTimeRepaired,      ///< A time is written in an unusual way.
  kTimeUnreadable,    ///< A time cannot be read; its cue is dropped.
  kLineIgnored,       ///< A line belongs to no cue.
  kTagUnclosed,       ///< A tag or an override block is not closed.
  kUndecodable,       ///< Bytes that are invalid in the file's encoding became U+FFFD.
  kNulCharacter,      ///< A NUL was dropped, or replaced by U+FFFD; all at the end count as one.
  kCueCutOff,         ///< The file ends in the middle of a cue.
  kColumnsMissing,    ///< An event has fewer columns than its section's Format line; dropped.
  kUnknownStyle,      ///< An event names a style that the script does not define.
  kFrameRateAssumed,  ///< Times are frame numbers, and the file gives no frame rate.
  kEndAssumed,        ///< The last cue has no end of its own; others end where the next begins.
  kDuplicate,         ///< A cue occurs twice.
  kPictureDamaged,    ///< A picture cannot be read and is dropped.
  kColoursChange,     ///< A picture changes its colours by column; only the first set is used.
  kOutsideParent,     ///< A cue begins after the element around it has ended; dropped.
  kContainerWithoutTime,  ///< An element around cues ends no later than it begins; its end is
                          ///< ignored.
  kUnsupported,           ///< A feature of the format is not supported and is ignored.
  kIndexUnreadable,       ///< The index beside a VobSub stream cannot be read, so it is not used.
};

/// Every problem. Valid for as long as the library is loaded. Never throws.
KSSUBTITLE_IMPORT_API std::span<const ksImportProblem> ksImportProblems() noexcept;

/// One English sentence about a problem; empty for a value that is not one. Never throws.
KSSUBTITLE_IMPORT_API std::string_view ksImportSentence(ksImportProblem problem) noexcept;

/// One problem in a file.
struct ksImportNote {
  ksImportProblem problem;  ///< What is wrong.
  int line;                 ///< On which line, from 1; 0: it concerns the whole file.
};

/// What was found out about the last file that was to be opened.
///
/// Belongs to the ksImportParser or ksImportPictures that opened the file, and may be read by
/// several threads while that opens nothing; what it returns is valid until the next Open().
/// Nothing throws.
class KSSUBTITLE_IMPORT_API ksImportReport {
 public:
  /// @{
  /// Created and moved together with its parser.
  ksImportReport() noexcept;
  ksImportReport(ksImportReport&& other) noexcept;
  ksImportReport& operator=(ksImportReport&& other) noexcept;
  ~ksImportReport();
  /// @}

  /// Why no file is open; kNone if one is.
  ksImportRefusal refusal() const noexcept;
  /// The `errno` of kCannotOpen; 0 otherwise.
  int systemError() const noexcept;
  /// One English sentence for viewers on why no file is open; empty if one is.
  std::string_view refusalSentence() const noexcept;
  /// The name of the format: one of ksImportFormats(), "vobsub" for pictures; empty if the format
  /// was not recognised.
  std::string_view format() const noexcept;
  /// The name of the encoding, such as "UTF-8" or "windows-1251", as in the IANA registry (RFC
  /// 2978) where it has one; empty if the file was refused before it was determined.
  std::string_view encoding() const noexcept;
  /// How the encoding was determined; meaningless if encoding() is empty.
  ksImportEncodingSource encodingSource() const noexcept;
  /// How the lines end.
  ksImportLineEnds lineEnds() const noexcept;
  /// How many bytes of the file were read.
  std::size_t size() const noexcept;
  /// The languages that the file says its cues are in, in its order; in SAMI, classes that the
  /// style sheet does not declare come last. Empty if it names none.
  std::span<const std::string> languages() const noexcept;
  /// Whether the file has the language that the options asked for. True also if they asked for
  /// none, or the file names no languages.
  bool hasLanguage() const noexcept;
  /// The problems that were found, by line: the 1,000 with the lowest line numbers.
  std::span<const ksImportNote> notes() const noexcept;
  /// How often a problem was found, including notes that notes() does not keep; 0 for a value that
  /// is not a problem.
  std::size_t count(ksImportProblem problem) const noexcept;

 private:
  friend class ksImportParser;
  friend class ksImportPictures;
  std::unique_ptr<kssubtitle::importing::ReportData> data_;
};
