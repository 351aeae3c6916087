/// @file
/// The library's front door.
#pragma once

#include <map>
#include <memory>

#include "kssubtitle/parsers/IParser.h"
#include "kssubtitle/parsers/ass/ksAssParser.h"
#include "kssubtitle/parsers/srt/ksSrtParser.h"

/// Opens a subtitle file by path and answers which subtitle is shown at a moment.
///
/// The extension chooses the reader: "srt", "ass" or "ssa", in lower case, after the last "." of
/// the path. A file that begins with the bytes FF FE is wide and is answered by GetSubTitleU()
/// only, any other file by GetSubTitle() only; a host that does not know asks both.
///
/// Owns its parsers. Not copyable, not movable. One manager must not be used by two threads at
/// once; separate managers share nothing. Nothing throws on bad input; allocation failures pass
/// through.
class KSSUBTITLE_API ksSubtitleManager {
 public:
  ksSubtitleManager();
  ksSubtitleManager(const ksSubtitleManager&) = delete;
  ksSubtitleManager& operator=(const ksSubtitleManager&) = delete;
  virtual ~ksSubtitleManager();

  /// Replaces the open file by the one at `path`. False if `path` is null, empty or has another
  /// extension, and if the file cannot be opened, is shorter than two bytes, or is refused by its
  /// parser (see ksSrtParser::Open()).
  bool Open(const char* path);
  /// Whether a file is open. After a failure of the chosen parser: whether that parser ever opened
  /// a file.
  bool IsOpen();
  /// How long the subtitles run, in milliseconds: in SubRip the greatest end time, in ASS and SSA
  /// the end time of the last event line. 0 when nothing is open. In a script without events each
  /// call adds an empty record, which then answers for 0 ms; see ksAssParser::DurationTime().
  long long DurationTime();
  /// Of the cues that cover `t` milliseconds the one with the greatest number, of events the last
  /// one; nothing if no cue covers `t` or the file is wide.
  SUBTITLE_ST GetSubTitle(long long t);
  /// GetSubTitle() of a wide file; nothing if the file is not wide.
  SUBTITLE_ST_U GetSubTitleU(long long t);

 private:
  KSSUBTITLE_LOCAL IParser* current();

  int currentKey = 0;                          // key in `parsers` of the parser in use; 0: none
  [[maybe_unused]] bool reservedFlag = false;  // these two keep their place in the layout
  bool isUnicode = false;
  [[maybe_unused]] int reservedInteger = 0;
  std::unique_ptr<ksAssParser> assParser = std::make_unique<ksAssParser>();
  std::unique_ptr<ksSrtParser> srtParser = std::make_unique<ksSrtParser>();
  std::unique_ptr<ksAssParserU> assParserU = std::make_unique<ksAssParserU>();
  std::unique_ptr<ksSrtParserU> srtParserU = std::make_unique<ksSrtParserU>();
  std::map<int, IParser*> parsers;  // not owning
};
