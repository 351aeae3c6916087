/// @file
/// Reads any text subtitle file as a careful person would.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "kssubtitle/import/export.h"
#include "kssubtitle/import/ksImportCue.h"
#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/ksImportReport.h"
#include "kssubtitle/parsers/IParser.h"

namespace kssubtitle::importing {
struct ParserContents;
}

/// A text subtitle file of any common format, in any encoding.
///
/// The content decides which format and encoding a file has; its extension only settles ties. Both
/// queries answer whatever the encoding is.
///
/// At `t` every cue with start <= t < end is shown or, if there is none, those with end == t; their
/// texts are joined by line feeds in file order. Of cues with equal start, end and text, whatever
/// its style, only the first is shown. `start` and `end` of an answer bound the longest span around
/// `t` in which the same cues are shown, with `start` at least 0; at `end` itself they are shown
/// only if nothing else is.
///
/// Queries change nothing: several threads may query one parser while none opens a file. Separate
/// parsers share nothing. Nothing throws but `std::bad_alloc`; if Open() does, the parser is closed
/// and empty. The locale is neither set nor consulted. Not copyable; moving leaves the source
/// closed, and what cues() and the members of report() returned stays valid.
///
/// WebVTT is read by the algorithm of the W3C's "WebVTT: The Web Video Text Tracks Format". TTML is
/// the W3C's "Timed Text Markup Language 2 (TTML2)" with its profiles IMSC 1.2 (W3C) and EBU-TT-D
/// (EBU Tech 3380).
class KSSUBTITLE_IMPORT_API ksImportParser : public IParser {
 public:
  /// @{
  /// A new parser is closed; moving transfers an open file.
  ksImportParser() noexcept;
  ksImportParser(ksImportParser&& other) noexcept;
  ksImportParser& operator=(ksImportParser&& other) noexcept;
  ~ksImportParser() override;
  /// @}

  /// Opens the file at `path` with the default options.
  bool Open(const char* path) override;
  /// Replaces the contents by the file at `path` (NUL-terminated, not null), which may be a pipe.
  /// The file is read whole and closed. Returns false if it is refused: report() then says why,
  /// and the parser is closed and empty.
  bool Open(const char* path, const ksImportOptions& options);
  /// Opens a file that is already in memory. The bytes are not needed after the call, and may be
  /// null if `size` is 0. Returns false as Open() does.
  bool OpenMemory(const void* bytes, std::size_t size, const ksImportOptions& options = {});
  /// Whether a file is open.
  bool IsOpen() const override;
  /// The greatest end of all cues in milliseconds; 0 without cues.
  long long DurationTime() override;
  /// What is shown at `t` milliseconds, in UTF-8, each cue preceded by a line feed. If nothing is
  /// shown, or `t` is negative, `start` and `end` are -1 and the text is empty.
  SUBTITLE_ST GetSubTitle(long long t) override;
  /// The same with one code point per character.
  SUBTITLE_ST_U GetSubTitleU(long long t) override;
  /// Every cue that has text, by start, then by position in the file, including those that are
  /// never shown (see ksImportCue). Valid until the next Open(), even a failed one.
  std::span<const ksImportCue> cues() const noexcept;
  /// What was found out about the file. Valid for as long as the parser.
  const ksImportReport& report() const noexcept { return report_; }

 private:
  std::unique_ptr<kssubtitle::importing::ParserContents> contents_;  // null: closed
  ksImportReport report_;
};
