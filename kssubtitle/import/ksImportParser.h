/// @file
/// Reads any subtitle file as a careful person would.
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
struct Format;
struct FormatInput;
}  // namespace kssubtitle::importing

/// A text subtitle file of any common format, in any encoding.
///
/// Which format and which encoding a file has is told by its content; its extension settles ties
/// only. Both queries answer, whatever the encoding is.
///
/// At `t` every cue with start <= t < end is shown and, if there is none, those that end at `t`;
/// their texts stand in the order of the file, with a line feed between them. Of cues equal in
/// start, end and text only the first one is shown. An answer's `start`
/// and `end` bound the longest span round `t` in which the same cues are shown, `start` not below
/// 0; the moment `end` belongs to what follows, if anything does.
///
/// Queries change nothing: several threads may ask one parser at once while none opens a file.
/// Separate parsers share nothing. Nothing throws but `std::bad_alloc`, after which the parser is
/// closed and empty. The library neither sets nor asks for a locale. Not copyable; a move leaves
/// the source closed, and what cues() and the members of report() gave stays
/// valid.
class KSSUBTITLE_IMPORT_API ksImportParser : public IParser {
 public:
  /// @{
  /// A new parser is closed; a move takes over what is open.
  ksImportParser() noexcept;
  ksImportParser(ksImportParser&& other) noexcept;
  ksImportParser& operator=(ksImportParser&& other) noexcept;
  ~ksImportParser() override;
  /// @}

  /// Opens the file at `path` (NUL-terminated, not null) as the default options have it.
  bool Open(const char* path) override;
  /// Replaces what the parser holds by the content of the file at `path`, which may be a pipe. The
  /// file is read whole and closed. False if it is refused: report() then tells why, and the parser
  /// is closed and empty.
  bool Open(const char* path, const ksImportOptions& options);
  /// Open() of a file that is in memory already; the bytes are not needed any more afterwards, and
  /// may be null if `size` is 0.
  bool OpenMemory(const void* bytes, std::size_t size, const ksImportOptions& options = {});
  /// Whether a file is open now.
  bool IsOpen() const override;
  /// The greatest end of all cues, in milliseconds; 0 without one.
  long long DurationTime() override;
  /// What is shown at `t` milliseconds, in UTF-8; nothing if no cue is, or if `t` is negative. The
  /// text begins with a line feed.
  SUBTITLE_ST GetSubTitle(long long t) override;
  /// GetSubTitle() with one code point a character.
  SUBTITLE_ST_U GetSubTitleU(long long t) override;
  /// Every cue that has text, by start, then by place in the file; those that are never shown (end
  /// not behind start, or not above 0, or kImportDuplicate) included. Valid until the next Open(),
  /// a failed one too.
  std::span<const ksImportCue> cues() const noexcept;
  /// What was found out about the file. Valid as long as the parser.
  const ksImportReport& report() const noexcept { return report_; }

 private:
  struct KSSUBTITLE_IMPORT_LOCAL Contents;

  KSSUBTITLE_IMPORT_LOCAL bool openBytes(std::string bytes, std::string_view path,
                                         const ksImportOptions& options);
  KSSUBTITLE_IMPORT_LOCAL bool openText(std::string text, std::string_view path,
                                        const ksImportOptions& options);
  KSSUBTITLE_IMPORT_LOCAL void readCues(const kssubtitle::importing::Format& format,
                                        const kssubtitle::importing::FormatInput& input);
  KSSUBTITLE_IMPORT_LOCAL bool refuse(ksImportRefusal refusal, int systemError = 0) noexcept;
  KSSUBTITLE_IMPORT_LOCAL void close();

  std::unique_ptr<Contents> contents_;
  ksImportReport report_;
};
