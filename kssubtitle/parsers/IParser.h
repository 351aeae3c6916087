/// @file
/// The interface of a subtitle parser, and the answers that it gives.
#pragma once

#include "kssubtitle/export.h"
#include "kssubtitle/strings/ksString.h"
#include "kssubtitle/strings/ksWString.h"

/// The cue shown at a moment; all defaults when nothing is shown. Times are milliseconds from the
/// start of the media.
struct KSSUBTITLE_API SUBTITLE_ST {
  long long start = -1;  ///< First moment of the cue; -1 when nothing is shown.
  long long end = -1;    ///< Last moment of the cue, itself included; -1 when nothing is shown.
  ksString text;         ///< Begins with a line feed; empty also in a record without text.
};

/// SUBTITLE_ST with wide text.
struct KSSUBTITLE_API SUBTITLE_ST_U {
  long long start = -1;  ///< First moment of the cue; -1 when nothing is shown.
  long long end = -1;    ///< Last moment of the cue, itself included; -1 when nothing is shown.
  ksWString text;        ///< Begins with a line feed; empty also in a record without text.
};

/// Reads one subtitle file whole and then answers from memory.
///
/// A parser object must not be used by two threads at once; separate objects share nothing. Nothing
/// throws on bad input; allocation failures pass through, and leave the object usable and
/// destructible. An answer is a copy that belongs to the caller; paths are not kept.
class KSSUBTITLE_API IParser {
 public:
  /// @{
  /// The interface holds nothing; a parser's copies are deep, but for the stream in its `file`.
  IParser() = default;
  IParser(const IParser&) = default;
  IParser(IParser&&) = default;
  IParser& operator=(const IParser&) = default;
  IParser& operator=(IParser&&) = default;
  /// @}
  /// Releases the records and lines, but closes no stream.
  virtual ~IParser();

  /// Replaces what the parser holds by the content of the file at `path` (a NUL-terminated string
  /// for `fopen`, not null). True if the file was read, whatever it holds: up to its end, or up to
  /// a read error, a line that begins with a NUL, or bytes that the locale cannot decode. False if
  /// it cannot be opened, is empty (its size counts as a signed number of 32 bits: below 1), or has
  /// more than 20000 lines ended by a line feed; the parser then answers every query with nothing.
  /// The stream of an empty file stays open on purpose.
  virtual bool Open(const char* path) = 0;
  /// Whether an Open() of this object ever succeeded; a later failure does not take that back.
  virtual bool IsOpen() const = 0;
  /// The duration that the format reports, in milliseconds; 0 without a cue.
  virtual long long DurationTime() = 0;
  /// The cue shown at `t` milliseconds, both its ends included. Nothing if no cue covers `t`, if
  /// `t` is negative, or if this is a parser of wide text. Of several cues the last one in key
  /// order wins.
  virtual SUBTITLE_ST GetSubTitle(long long t) = 0;
  /// GetSubTitle() of a parser of wide text; nothing from a parser of 8-bit text.
  virtual SUBTITLE_ST_U GetSubTitleU(long long t) = 0;
};
