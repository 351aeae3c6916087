/// @file
/// Reads the pictures of a VobSub subtitle: an index, ".idx", and a program stream, ".sub".
///
/// The stream is that of ISO/IEC 13818-1 (MPEG-2 Systems, ITU-T H.222.0): packs, and in them PES
/// packets; subpictures are in private stream 1, where the first byte of a packet's data, 20 to 3F,
/// tells the language. The units in these packets are the subpicture units of DVD-Video, as public
/// descriptions give them: "DVD subtitles" (sam.zoy.org/writings/dvd/subtitles) and "Sub-Pictures"
/// (dvd.sourceforge.net/dvdinfo/spu.html). The index is plain text that explains itself in its
/// comments.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/export.h"
#include "kssubtitle/import/ksImportOptions.h"
#include "kssubtitle/import/ksImportReport.h"

/// A language of a VobSub file.
struct ksImportPictureStream {
  int index = 0;             ///< The number that the file gives it, 0 to 31 in a sound one.
  std::string language;      ///< As the index has it, such as "en"; empty if it does not say.
  std::string name;          ///< Another name for viewers, such as "English"; commonly empty.
  std::size_t pictures = 0;  ///< How many entries it has.
};

/// A part of the frame, in pixels of the frame. Its corner may be outside.
struct ksImportRectangle {
  int left = 0;    ///< From the left edge of the frame.
  int top = 0;     ///< From its top.
  int width = 0;   ///< Not negative.
  int height = 0;  ///< Not negative.
};

/// What is known of a picture without its pixels.
struct ksImportPictureEntry {
  long long start = 0;  ///< Milliseconds, of either sign.
  /// Milliseconds, above `start`; the first moment at which the picture is not shown any more. A
  /// later picture that begins before replaces this one.
  long long end = 0;
  bool isEndAssumed = false;    ///< The file says none: it is the next start, the last's 5 s later.
  bool isForced = false;        ///< To be shown even to viewers who did not ask for subtitles.
  ksImportRectangle rectangle;  ///< Where it is shown; as the index moves and scales it.
  std::string_view damage;  ///< Why there is no picture, an English sentence; empty if there is.
  int line = 0;             ///< Its line in the index, from 1; 0 without an index.
};

/// A picture, of straight (not premultiplied) alpha.
struct ksImportPicture {
  long long start = 0;          ///< As its entry has it.
  long long end = 0;            ///< As its entry has it.
  bool isForced = false;        ///< As its entry has it.
  ksImportRectangle rectangle;  ///< Where it is shown; if its size differs, scaled to that.
  int width = 0;                ///< Of the picture in pixels, 1 to 4,096.
  int height = 0;               ///< Likewise.
  int frameWidth = 0;           ///< Of the whole film in pixels, which the rectangle refers to.
  int frameHeight = 0;          ///< Likewise.
  /// Red, green, blue and alpha of each pixel, a byte each; rows from the top, without gaps.
  std::vector<unsigned char> rgba;
};

/// The pictures of a VobSub index and stream, of any size and number of languages.
///
/// The index is read leniently: in any encoding, with any line ends, keys in any case; what cannot
/// be read is noted and left out. Where it states no size, the frame is the least of the usual ones
/// that holds all pictures of the language.
///
/// One language is selected at a time, at first that of ksImportOptions::language (by the language
/// or the name that streams() has), else the one that the index says is in use, else the first
/// that has pictures. Its units are read when it is selected, and again when a picture is asked for
/// that is not among the last ones: at most 32 pictures and 16 MB are kept, and the last one.
///
/// Members that are const may be called by several threads at once, while none calls another.
/// Separate objects share nothing. Nothing throws but `std::bad_alloc`, after which an Open()
/// leaves the object closed and empty, and select() leaves it without entries. Not copyable; a move
/// leaves the source closed, and what the object gave stays valid.
class KSSUBTITLE_IMPORT_API ksImportPictures {
 public:
  /// @{
  /// A new object is closed; a move takes over what is open.
  ksImportPictures() noexcept;
  ksImportPictures(ksImportPictures&& other) noexcept;
  ksImportPictures& operator=(ksImportPictures&& other) noexcept;
  ~ksImportPictures();
  /// @}

  /// Replaces what the object holds by the pair of files of which one is at `path` (NUL-terminated,
  /// not null) and the other has the same name and the extension ".sub" or ".idx", in any case. A
  /// stream without an index is searched for units, which takes one pass over it; its colours are
  /// greys. Both are regular files; the stream stays open, and may be of any size. If it changes or
  /// shrinks, pictures are wrong or missing. Of the options the encodings, the language, and
  /// `maxBytes` (of the index) count. False if the files are refused: report() then tells why, and
  /// the object is closed and empty.
  bool Open(const char* path, const ksImportOptions& options = {});
  /// Open() of an index and a stream in memory, which are copied. Either pointer may be null if its
  /// size is 0; without an index the stream is searched.
  bool OpenMemory(const void* index, std::size_t indexSize, const void* stream,
                  std::size_t streamSize, const ksImportOptions& options = {});
  /// Whether files are open now.
  bool IsOpen() const noexcept;

  /// The languages, in the order of the index, or of their numbers. Valid until the next Open().
  std::span<const ksImportPictureStream> streams() const noexcept;
  /// Lets entries(), PictureAt() and Picture() be about the language at this place in streams().
  /// False, without an effect, if there is none.
  bool select(std::size_t stream);
  /// The place in streams() of the language that is selected; 0 without any.
  std::size_t selected() const noexcept;

  /// The selected language's pictures by start, those that are damaged included. Valid until the
  /// next Open() or select().
  std::span<const ksImportPictureEntry> entries() const noexcept;
  /// What is shown at `t` milliseconds: of the entries that have started the last one, if it has
  /// not ended; if the index asks for forced pictures alone, of these. Null if nothing is shown.
  /// The same object is given again as long as it is kept.
  std::shared_ptr<const ksImportPicture> PictureAt(long long t) const;
  /// The picture of an entry; null if it is damaged, its part of the stream cannot be read any
  /// more, or there is no such entry.
  std::shared_ptr<const ksImportPicture> Picture(std::size_t entry) const;

  /// What was found out about the files: of the index its encoding, line ends and size, and the
  /// notes on it and on the selected language's units. Valid as long as the object; a select()
  /// renews the notes.
  const ksImportReport& report() const noexcept { return report_; }

 private:
  struct KSSUBTITLE_IMPORT_LOCAL Contents;

  KSSUBTITLE_IMPORT_LOCAL bool open(std::unique_ptr<Contents> contents, std::string indexBytes,
                                    const ksImportOptions& options);
  KSSUBTITLE_IMPORT_LOCAL bool readIndexText(Contents& contents, std::string bytes,
                                             const ksImportOptions& options);
  KSSUBTITLE_IMPORT_LOCAL bool finish(std::unique_ptr<Contents> contents,
                                      const ksImportOptions& options);
  KSSUBTITLE_IMPORT_LOCAL bool refuse(ksImportRefusal refusal, int systemError = 0,
                                      std::string_view sentence = {}) noexcept;
  KSSUBTITLE_IMPORT_LOCAL void close();

  std::unique_ptr<Contents> contents_;
  ksImportReport report_;
};
