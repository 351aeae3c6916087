/// @file
/// SubRip (".srt") readers for 8-bit and wide text.
#pragma once

#include <cstdio>
#include <vector>

#include "kssubtitle/parsers/IParser.h"
#include "kssubtitle/parsers/ksSessionMap.h"

/// A SubRip cue.
struct KSSUBTITLE_API SRC_SESSION_ST {
  long long start = 0;  ///< Milliseconds.
  long long end = 0;    ///< Milliseconds; the cue is still shown at this moment.
  ksString text;  ///< For each text line a line feed, then the line and every second one after.
};

/// A SubRip cue with wide text.
struct KSSUBTITLE_API SRC_SESSION_ST_U {
  long long start = 0;  ///< Milliseconds.
  long long end = 0;    ///< Milliseconds; the cue is still shown at this moment.
  ksWString text;       ///< As SRC_SESSION_ST::text.
};

/// Reads SubRip files of 8-bit text, in whatever encoding they have.
///
/// Not a strict reader: each line is a number line, a time line or a text line by its look alone,
/// and blank lines play no part. Lines must end in LF: with CR LF no number line is recognised.
/// Digits beyond the third of the milliseconds are not read, and times wrap at 32 bits. The places
/// of the end time's separators cut the start time as well, so that the two must have fields of the
/// same lengths.
///
/// An object must not be used by two threads at once. Copies are deep, but for the stream in
/// `file`; the destructor closes no stream.
class KSSUBTITLE_API ksSrtParser : public IParser {
 public:
  /// Replaces `lines` and `sessions` by the content of the file at `path`. True if it was read,
  /// whatever it holds: up to its end, or up to a read error or a line that begins with a NUL.
  /// False if it cannot be opened, is empty (its size counts as a signed number of 32 bits: below
  /// 1; its stream stays open on purpose), or has more than 20000 lines ended by a line feed;
  /// `sessions` is then empty.
  bool Open(const char* path) override;
  /// Whether an Open() of this object ever succeeded; a later failure does not take that back.
  bool IsOpen() const override { return opened; }
  /// The greatest end time of all cues; 0 without any.
  long long DurationTime() override;
  /// Of the records that cover `t` the one with the greatest key, with its own times.
  SUBTITLE_ST GetSubTitle(long long t) override;
  /// Always nothing: the text is 8-bit.
  SUBTITLE_ST_U GetSubTitleU(long long t) override;

  /// Appends the next line of `file` to `out`, without its line feed. False at the end of the file,
  /// `out` then holding a last line that has no line feed (its last 128 characters twice, if its
  /// length is a multiple of 128), and with `out` empty for a line that begins with a NUL and after
  /// a read error at a line's start.
  /// Requires: `file` is open for reading, `out` is empty.
  bool ReadString(ksString& out);
  /// Adds the cues of `lines` to `sessions`, and trims the lines in place. Always true.
  bool ConvertBufToSrtMap();

  std::FILE* file = nullptr;              ///< Meaningful only while Open() runs.
  std::vector<ksString> lines;            ///< The file's non-empty lines, without line feeds.
  ksSessionMap<SRC_SESSION_ST> sessions;  ///< The cues under the numbers that the file gives.
  bool opened = false;                    ///< Set by the first Open() that succeeds.
};

/// Reads SubRip files of wide text: UTF-16LE after the BOM FF FE, or text in the encoding of the
/// host's locale after two bytes that are skipped.
///
/// Differs from ksSrtParser on unusual time lines only: the arrow needs no space after it, and a
/// start time is cut also where it ends right at the place of the end time's separator.
class KSSUBTITLE_API ksSrtParserU : public IParser {
 public:
  /// As ksSrtParser::Open(); reads also no further than bytes that the locale cannot decode.
  bool Open(const char* path) override;
  /// As ksSrtParser::IsOpen().
  bool IsOpen() const override { return opened; }
  /// The greatest end time of all cues; 0 without any.
  long long DurationTime() override;
  /// Always nothing: the text is wide.
  SUBTITLE_ST GetSubTitle(long long t) override;
  /// Of the records that cover `t` the one with the greatest key, with its own times.
  SUBTITLE_ST_U GetSubTitleU(long long t) override;

  /// As ksSrtParser::ReadString(). A stream with wide orientation is read with `fgetws` under the
  /// host's locale, any other as UTF-16LE.
  bool ReadString(ksWString& out);
  /// Adds the cues of `lines` to `sessions`, and trims the lines in place. Always true.
  bool ConvertBufToSrtMap();

  std::FILE* file = nullptr;                ///< Meaningful only while Open() runs.
  std::vector<ksWString> lines;             ///< The file's non-empty lines, without line feeds.
  ksSessionMap<SRC_SESSION_ST_U> sessions;  ///< The cues under the numbers that the file gives.
  bool opened = false;                      ///< Set by the first Open() that succeeds.
};

extern template class ksSessionMap<SRC_SESSION_ST>;
extern template class ksSessionMap<SRC_SESSION_ST_U>;
