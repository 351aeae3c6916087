/// @file
/// VobSub index (".idx") readers for 8-bit and wide text, which fetch raw subpicture units from the
/// companion ".sub" file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <vector>

#include "kssubtitle/export.h"
#include "kssubtitle/strings/ksString.h"
#include "kssubtitle/strings/ksWString.h"

/// An entry of the index.
struct KSSUBTITLE_API SUB_SESSION_ST {
  long long startTime = 0;  ///< Milliseconds.
  /// The offset, in bytes, of the first pack in the ".sub" file: its low 32 bits.
  long long filePos = 0;
};

/// An entry of an index of wide text.
struct KSSUBTITLE_API SUB_SESSION_ST_U {
  long long startTime = 0;  ///< Milliseconds.
  long long filePos = 0;    ///< No file position: the wide class does not read it.
};

/// Reads a VobSub index of 8-bit text and fetches its subpicture units. Decoding their bitmaps is
/// the host's business.
///
/// **Open() never returns** for an index with a line of spaces only, or one whose first character,
/// after spaces, is ';'. A host that opens files from strangers looks for such lines first, and
/// for zero bytes, which hide what a line really begins with.
///
/// An object must not be used by two threads at once; separate objects share nothing.
class KSSUBTITLE_API ksIdxParser {
 public:
  /// @{
  /// Copies are deep, but for the stream in `file`.
  ksIdxParser() = default;
  ksIdxParser(const ksIdxParser&) = default;
  ksIdxParser(ksIdxParser&&) = default;
  ksIdxParser& operator=(const ksIdxParser&) = default;
  ksIdxParser& operator=(ksIdxParser&&) = default;
  /// @}
  /// Releases the entries and lines, but closes no stream.
  virtual ~ksIdxParser();

  /// Reads the index at `path` (not null, and no part of this object) into `lines`, **adds** its
  /// entries to `sessions`, and sets `subFilePath` to the text from the path's first '.' on, with
  /// "sub" after it: "film.idx" gives ".idxsub". False if the file cannot be opened, is empty (its
  /// stream then stays open in `file`) or has more than 5000 lines ended by a line feed. A last
  /// line without one is lost.
  /// @throws std::out_of_range if a "timestamp" or "custom colors" line has no "filepos:", "tridx:"
  /// or "colors:" and is too short for its place.
  bool Open(const char* path);
  /// Assigns the next line of `file`, without its line feed, to `out`. False at the end of the
  /// file, where a last line without a line feed is dropped and `out` stays as it was, and with
  /// `out` empty for a line that begins with a NUL and after a read error at a line's start.
  /// Requires: `file` is open for reading.
  bool ReadString(ksString& out);
  /// Adds the entries of `lines` to `sessions`, and reads the palette and the colours. Always true;
  /// never returns for the lines named above.
  /// @throws std::out_of_range as Open().
  bool ConvertBufToIdxMap();
  /// Removes the text before the first `sep`, and the `sep`, from the front of `s`, after
  /// TrimLeft(), and returns it. Without a `sep` returns all of `s` and leaves it in place.
  /// @throws int 1 if nothing is left of `s` after TrimLeft().
  ksString GetStr(ksString& s, char sep);
  /// GetStr() read as a decimal number, cut to 32 bits; -1 if it is not one, and for hexadecimal
  /// numbers ("&H...").
  /// @throws int as GetStr().
  int GetInt(ksString& s, char sep);
  /// The file position of the first entry, in key order, that starts within 499 ms of `t`
  /// milliseconds; 0 if there is none or `t` < 1. Deliberate: counts the keys up from 0 and adds an
  /// empty entry for each that is missing, so that `sessions` grows to its greatest key at most,
  /// and times up to 499 ms find the empty entries. Requires: no key is negative.
  long long GetFilePos(long long t);
  /// The raw subpicture unit (its own two size bytes first) that starts at GetFilePos(`t`) in
  /// `subFilePath`, a program stream (ISO/IEC 13818-1) of packs of 2048 bytes. The unit is a buffer
  /// of `size` bytes that the caller releases with `delete[]`; `ctrlOffset` is the offset, in
  /// bytes, of its control sequence table. Null if the file cannot be opened or no unit of the
  /// first subpicture stream begins there; `size` and `ctrlOffset` are then unchanged. A time
  /// without an entry fetches the unit at the start of the file. A unit of size 0 is a buffer that
  /// is not null. Where the file ends inside the unit, its last payload fills the rest. Deliberate:
  /// each call that opens the file leaves one stream open for good.
  unsigned char* GetPacket(long long t, int& size, int& ctrlOffset);

  std::FILE* file = nullptr;    ///< Meaningful only while Open() runs.
  std::vector<ksString> lines;  ///< The file's non-empty lines, without line feeds.
  /// The entries under the index of their line in `lines`.
  std::map<int, SUB_SESSION_ST> sessions;
  bool opened = false;                 ///< Set by the first Open() that succeeds.
  ksString subFilePath;                ///< The ".sub" file; may be set by the host after Open().
  bool useCustomColors = false;        ///< From "custom colors".
  std::uint32_t trIdx = 0;             ///< Which colours are transparent: the first one's is bit 0.
  std::uint32_t palette[16] = {};      ///< 0xRRGGBB, as the file has them.
  std::uint32_t customColors[4] = {};  ///< 0xRRGGBB, as the file has them.
  ksString spare1;                     ///< Not used.
  ksString spare2;                     ///< Not used.
};

/// Reads a VobSub index of wide text: UTF-16LE, or text in the encoding of the host's locale. No
/// byte-order mark is skipped.
///
/// A transcription of ksIdxParser that differs on purpose in what is documented below; it yields
/// times, the palette and the colours, but no subpicture units.
class KSSUBTITLE_API ksIdxParserU {
 public:
  /// @{
  /// Copies are deep, but for the stream in `file`.
  ksIdxParserU() = default;
  ksIdxParserU(const ksIdxParserU&) = default;
  ksIdxParserU(ksIdxParserU&&) = default;
  ksIdxParserU& operator=(const ksIdxParserU&) = default;
  ksIdxParserU& operator=(ksIdxParserU&&) = default;
  /// @}
  /// Releases the entries and lines, but closes no stream.
  virtual ~ksIdxParserU();

  /// As ksIdxParser::Open(), but opens the file whose name is the **bytes** of `path` up to the
  /// first zero byte: the path's first character, if that is below U+0100. Sets `subFilePath` to
  /// the path up to its first '.', with "sub" after it: "film.idx" gives "film.sub".
  bool Open(wchar_t* path);
  /// As ksIdxParser::ReadString(). A stream with wide orientation is read with `fgetws` under the
  /// host's locale, any other as UTF-16LE.
  bool ReadString(ksWString& out);
  /// As ksIdxParser::ConvertBufToIdxMap().
  bool ConvertBufToIdxMap();
  /// As ksIdxParser::GetStr().
  ksWString GetStr(ksWString& s, wchar_t sep);
  /// As ksIdxParser::GetInt().
  int GetInt(ksWString& s, wchar_t sep);
  /// As ksIdxParser::GetFilePos(), within 999 ms, and for as many keys only as there are entries at
  /// the call.
  long long GetFilePos(int t);
  /// Always null, with `size` and `ctrlOffset` unchanged; may add entries as GetFilePos() does.
  unsigned char* GetPacket(int t, int& size, int& ctrlOffset);

  std::FILE* file = nullptr;                 ///< Meaningful only while Open() runs.
  std::vector<ksWString> lines;              ///< The file's non-empty lines, without line feeds.
  std::map<int, SUB_SESSION_ST_U> sessions;  ///< The entries under the keys 0, 1, 2, ...
  bool opened = false;                       ///< Set by the first Open() that succeeds.
  ksWString subFilePath;                     ///< The ".sub" file.
  bool useCustomColors = false;              ///< From "custom colors".
  std::uint32_t trIdx = 0;             ///< Which colours are transparent: the first one's is bit 0.
  std::uint32_t palette[16] = {};      ///< 0xRRGGBB, as the file has them.
  std::uint32_t customColors[4] = {};  ///< 0xRRGGBB, as the file has them.
  ksWString spare1;                    ///< Not used.
  ksWString spare2;                    ///< Not used.
};
