/// @file
/// Advanced SubStation Alpha (".ass") and SubStation Alpha v4 (".ssa") readers for 8-bit and wide
/// text.
#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

#include "kssubtitle/parsers/IParser.h"
#include "kssubtitle/parsers/ksSessionMap.h"

/// An event ("Dialogue" line).
struct KSSUBTITLE_API ASS_SESSION_ST {
  int layer = 0;            ///< The Layer column of an ASS script; 0 in other scripts.
  long long startTime = 0;  ///< Milliseconds.
  long long endTime = 0;    ///< Milliseconds; the event is still shown at this moment.
  ksString text;    ///< A line feed, then the text without its override tags; see RemoveSSATags().
  ksString style;   ///< The style after TrimLeft('*'); "Default" in any case becomes "Default".
  ksString name;    ///< The Name (Actor) column.
  ksString effect;  ///< The Effect column; empty if it begins as the text does or vice versa.
};

/// An event with wide text.
struct KSSUBTITLE_API ASS_SESSION_ST_U {
  int layer = 0;            ///< As ASS_SESSION_ST::layer.
  long long startTime = 0;  ///< Milliseconds.
  long long endTime = 0;    ///< Milliseconds; the event is still shown at this moment.
  ksWString text;           ///< As ASS_SESSION_ST::text.
  ksWString style;          ///< As ASS_SESSION_ST::style.
  ksWString name;           ///< The Name (Actor) column.
  ksWString effect;         ///< As ASS_SESSION_ST::effect.
};

/// Reads ASS and SSA scripts of 8-bit text.
///
/// Every "Dialogue" line becomes an event, malformed or not; a column that is no number reads as
/// -1. Script information and the last Style line of the file are kept in the members below for a
/// renderer; no answer depends on them. A last line without a line feed is lost.
///
/// Deliberate: the colour columns of a Style line are not skipped. In an ordinary script, which has
/// four of them, only `fontName` and `fontSize` are what their names say: every member after them
/// holds an earlier column.
///
/// An object must not be used by two threads at once. Copies are deep, but for the stream in
/// `file`; the destructor closes no stream.
class KSSUBTITLE_API ksAssParser : public IParser {
 public:
  /// Replaces `lines` and `sessions` by the content of the file at `path`. True if it was read,
  /// whatever it holds: up to its end, or up to a read error or a line that begins with a NUL.
  /// False if it cannot be opened, is empty (its size counts as a signed number of 32 bits: below
  /// 1; its stream stays open on purpose), or has more than 20000 lines ended by a line feed;
  /// `sessions` is then empty.
  bool Open(const char* path) override;
  /// Whether an Open() of this object ever succeeded; a later failure does not take that back.
  bool IsOpen() const override { return opened; }
  /// The end time of the last event line, not the greatest. 0 without events; each such call adds
  /// one empty record to `sessions` (keys 0, 1, 2, ...), which then answers GetSubTitle(0).
  long long DurationTime() override;
  /// Of the records that cover `t` the one with the greatest key, with its own times.
  SUBTITLE_ST GetSubTitle(long long t) override;
  /// Always nothing: the text is 8-bit.
  SUBTITLE_ST_U GetSubTitleU(long long t) override;

  /// Assigns the next line of `file`, without its line feed, to `out`. False at the end of the
  /// file, where a last line without a line feed is dropped and `out` stays as it was, and with
  /// `out` empty for a line that begins with a NUL and after a read error at a line's start.
  /// Requires: `file` is open for reading, `out` is empty.
  bool ReadString(ksString& out);
  /// Turns `lines` into `sessions` and the script's state. Always true. Texts are appended to those
  /// of records that are there already.
  bool ConvertBufToAssMap();

  /// Removes the text before the first `sep`, and the `sep`, from the front of `s`, after
  /// TrimLeft(), and returns it. Without a `sep` returns all of `s`, which may be empty, and leaves
  /// it in place.
  ksString GetStr(ksString& s, char sep);
  /// GetStr() read as a decimal number, cut to 32 bits; -1 if it is not one, and for hexadecimal
  /// numbers ("&H...").
  int GetInt(ksString& s, char sep);
  /// GetStr() read with `sscanf`'s "%f" under the host's locale; -1.0 if it is no number.
  double GetFloat(ksString& s, char sep);
  /// The first position at or after `start` whose character is `c`; -1 if there is none. A negative
  /// `start` counts as 0; the last argument is ignored.
  int FindChar(ksString s, char c, int start, int ignored);
  /// `s` without "{...}" and "<...>", and with the first "\N" (and every one at the very front)
  /// turned into a line feed. The recorded length counts stale characters after the terminating
  /// NUL, as ksBasicString::deleteStr() leaves them. The charset is ignored.
  ksString RemoveSSATags(ksString s, int charset);

  std::FILE* file = nullptr;              ///< Meaningful only while Open() runs.
  std::vector<ksString> lines;            ///< The file's non-empty lines, without line feeds.
  ksSessionMap<ASS_SESSION_ST> sessions;  ///< The events under the keys 1, 2, 3, ...
  bool opened = false;                    ///< Set by the first Open() that succeeds.
  // What follows keeps its values from one file to the next.
  ksString collisions;            ///< "1" for reversed collisions, else "0".
  int playResX = 0;               ///< Pixels.
  int playResY = 0;               ///< Pixels.
  int marginLeft = 0;             ///< Pixels.
  int marginTop = 0;              ///< The vertical margin, in pixels.
  int marginRight = 0;            ///< Pixels.
  int marginBottom = 0;           ///< The vertical margin, in pixels.
  std::uint64_t colours[4] = {};  ///< 0xAABBGGRR; not read from the file.
  std::uint8_t alphas[4] = {};    ///< A v4+ style moves each colour's AA here.
  ksString fontName;              ///< The style's font.
  int charset = 0;                ///< The style's last number.
  int alignment = 0;              ///< As on a numeric keypad.
  int borderStyle = 0;            ///< As the script gives it.
  double fontSize = 0;            ///< As the script gives it.
  double fontScaleX = 0;          ///< Percent.
  double fontScaleY = 0;          ///< Percent.
  double fontSpacing = 0;         ///< Pixels.
  double fontAngle = 0;           ///< Degrees.
  double outlineWidth = 0;        ///< Pixels.
  double shadowDepth = 0;         ///< Pixels.
  bool bold = false;              ///< Whether the column in its place is not 0.
  bool italic = false;            ///< Whether the column in its place is not 0.
};

/// Reads ASS and SSA scripts of wide text: UTF-16LE after the BOM FF FE, or text in the encoding
/// of the host's locale after two bytes that are skipped. Otherwise as ksAssParser.
class KSSUBTITLE_API ksAssParserU : public IParser {
 public:
  /// As ksAssParser::Open(); reads also no further than bytes that the locale cannot decode.
  bool Open(const char* path) override;
  /// As ksAssParser::IsOpen().
  bool IsOpen() const override { return opened; }
  /// As ksAssParser::DurationTime(), with its growth.
  long long DurationTime() override;
  /// Always nothing: the text is wide.
  SUBTITLE_ST GetSubTitle(long long t) override;
  /// Of the records that cover `t` the one with the greatest key, with its own times.
  SUBTITLE_ST_U GetSubTitleU(long long t) override;

  /// As ksAssParser::ReadString(). A stream with wide orientation is read with `fgetws` under the
  /// host's locale, any other as UTF-16LE.
  bool ReadString(ksWString& out);
  /// Turns `lines` into `sessions` and the script's state. Always true. Texts are appended to those
  /// of records that are there already.
  bool ConvertBufToAssMap();

  /// As ksAssParser::GetStr().
  ksWString GetStr(ksWString& s, wchar_t sep);
  /// As ksAssParser::GetInt().
  int GetInt(ksWString& s, wchar_t sep);
  /// As ksAssParser::GetFloat(); the separator is a `char`, unlike that of the other readers.
  double GetFloat(ksWString& s, char sep);
  /// The first position at or after `start` whose character is `c`; -1 if there is none or if
  /// `start` is negative.
  int FindChar(ksWString s, char c, int start);
  /// As ksAssParser::RemoveSSATags(), without a charset.
  ksWString RemoveSSATags(ksWString s);

  std::FILE* file = nullptr;                ///< Meaningful only while Open() runs.
  std::vector<ksWString> lines;             ///< The file's non-empty lines, without line feeds.
  ksSessionMap<ASS_SESSION_ST_U> sessions;  ///< The events under the keys 1, 2, 3, ...
  bool opened = false;                      ///< Set by the first Open() that succeeds.
  // What follows keeps its values from one file to the next.
  ksWString collisions;           ///< "1" for reversed collisions, else "0".
  int playResX = 0;               ///< Pixels.
  int playResY = 0;               ///< Pixels.
  int marginLeft = 0;             ///< Pixels.
  int marginTop = 0;              ///< The vertical margin, in pixels.
  int marginRight = 0;            ///< Pixels.
  int marginBottom = 0;           ///< The vertical margin, in pixels.
  std::uint64_t colours[4] = {};  ///< 0xAABBGGRR; not read from the file.
  std::uint8_t alphas[4] = {};    ///< A v4+ style moves each colour's AA here.
  ksWString fontName;             ///< The style's font.
  int charset = 0;                ///< The style's last number.
  int alignment = 0;              ///< As on a numeric keypad.
  int borderStyle = 0;            ///< As the script gives it.
  double fontSize = 0;            ///< As the script gives it.
  double fontScaleX = 0;          ///< Percent.
  double fontScaleY = 0;          ///< Percent.
  double fontSpacing = 0;         ///< Pixels.
  double fontAngle = 0;           ///< Degrees.
  double outlineWidth = 0;        ///< Pixels.
  double shadowDepth = 0;         ///< Pixels.
  bool bold = false;              ///< Whether the column in its place is not 0.
  bool italic = false;            ///< Whether the column in its place is not 0.
};

extern template class ksSessionMap<ASS_SESSION_ST>;
extern template class ksSessionMap<ASS_SESSION_ST_U>;
