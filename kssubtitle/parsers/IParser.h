/// @file
/// The interface of a subtitle parser, and the answers that it gives.
#pragma once

#include "kssubtitle/export.h"
#include "kssubtitle/strings/ksString.h"
#include "kssubtitle/strings/ksWString.h"

/// What is shown at a moment; all defaults when nothing is. Times are milliseconds from the
/// start of the media.
struct KSSUBTITLE_API SUBTITLE_ST {
  long long start = -1;  ///< The first moment of it; -1 when nothing is shown.
  long long end = -1;    ///< The last moment of it, itself included; -1 when nothing is shown.
  ksString text;         ///< Begins with a line feed; getData() has its characters. Empty for a
                         ///< record without text too: `start` says whether anything is shown.
};

/// SUBTITLE_ST with wide text.
struct KSSUBTITLE_API SUBTITLE_ST_U {
  long long start = -1;  ///< The first moment of it; -1 when nothing is shown.
  long long end = -1;    ///< The last moment of it, itself included; -1 when nothing is shown.
  ksWString text;        ///< As in SUBTITLE_ST.
};

/// Reads one subtitle file whole and then answers from memory.
///
/// Each parser says which of the two queries answers for a file, what they answer where cues
/// overlap, and how many threads may ask it at once; separate objects share nothing. Nothing throws
/// on bad input; allocation failures pass through, and leave the object usable and destructible. An
/// answer is a copy that belongs to the caller.
class KSSUBTITLE_API IParser {
 public:
  /// @{
  /// The interface holds nothing.
  IParser() = default;
  IParser(const IParser&) = default;
  IParser(IParser&&) = default;
  IParser& operator=(const IParser&) = default;
  IParser& operator=(IParser&&) = default;
  /// @}
  /// Releases what the parser holds.
  virtual ~IParser();

  /// Replaces what the parser holds by the content of the file at `path` (a NUL-terminated string
  /// for `fopen`, not null). True if the file was read. False if it cannot be opened or the parser
  /// refuses it; the parser then answers every query with nothing.
  virtual bool Open(const char* path) = 0;
  /// Whether a file is open, in the sense that the parser gives to it.
  virtual bool IsOpen() const = 0;
  /// How long the subtitles run, in milliseconds, by the parser's own reckoning; 0 without a cue.
  virtual long long DurationTime() = 0;
  /// What is shown at `t` milliseconds, with `start` <= `t` <= `end`. Nothing if nothing is shown
  /// at `t`, or if `t` is negative.
  virtual SUBTITLE_ST GetSubTitle(long long t) = 0;
  /// GetSubTitle() with wide text.
  virtual SUBTITLE_ST_U GetSubTitleU(long long t) = 0;
};
