/// @file
/// Reads the pictures of a VobSub subtitle: an index, ".idx", and a program stream, ".sub".
///
/// The stream is that of ISO/IEC 13818-1 (MPEG-2 Systems, ITU-T H.222.0): packs that contain PES
/// packets. Subpictures are in private stream 1, and the first byte of a packet's data, 20 to 3F,
/// says which language it belongs to. The units in these packets are the subpicture units of
/// DVD-Video, as described in "DVD subtitles" (sam.zoy.org/writings/dvd/subtitles) and
/// "Sub-Pictures" (dvd.sourceforge.net/dvdinfo/spu.html). The index is plain text that explains
/// itself in its comments.
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

namespace kssubtitle::importing {
struct OpenPictures;
}

/// A language of a VobSub file.
struct ksImportPictureStream {
  int index = 0;             ///< The number that the file gives it, 0 to 31 in a valid one.
  std::string language;      ///< As the index has it, such as "en"; empty if it does not say.
  std::string name;          ///< A name to show to viewers, such as "English"; commonly empty.
  std::size_t pictures = 0;  ///< How many entries it has.
};

/// A part of the frame, in pixels of the frame. Its corner may be outside.
struct ksImportRectangle {
  int left = 0;    ///< From the left edge of the frame.
  int top = 0;     ///< From its top.
  int width = 0;   ///< Not negative.
  int height = 0;  ///< Not negative.
};

/// What is known about a picture without its pixels.
struct ksImportPictureEntry {
  long long start = 0;  ///< Milliseconds; may be negative.
  /// Milliseconds, greater than `start`; the first moment at which the picture is no longer shown.
  /// A later picture that begins before then replaces this one.
  long long end = 0;
  bool isEndAssumed = false;  ///< The file gives none: it is the next start, the last's 5 s later.
  bool isForced = false;      ///< To be shown even to viewers who have subtitles turned off.
  ksImportRectangle rectangle;  ///< Where it is shown, after the index's own origin and scale.
  std::string_view
      damage;    ///< Why there is no picture, an English sentence; empty if there is one.
  int line = 0;  ///< Its line in the index, from 1; 0 without an index.
};

/// A picture with straight (not premultiplied) alpha.
struct ksImportPicture {
  long long start = 0;    ///< As in its entry.
  long long end = 0;      ///< As in its entry.
  bool isForced = false;  ///< As in its entry.
  ksImportRectangle
      rectangle;        ///< Where it is shown; if its size differs, scale the picture to it.
  int width = 0;        ///< Of the picture in pixels, 1 to 4,096.
  int height = 0;       ///< Likewise.
  int frameWidth = 0;   ///< Of the whole video frame in pixels, which `rectangle` refers to.
  int frameHeight = 0;  ///< Likewise.
  /// Red, green, blue and alpha of each pixel, a byte each; rows from the top, without padding.
  std::vector<unsigned char> rgba;
};

/// The pictures of a VobSub index and stream, of any size and number of languages.
///
/// The index is read leniently: in any encoding, with any line ends, keys in any case; what cannot
/// be read is noted and ignored. If it states no size, the frame is the smallest usual one that
/// contains all pictures of the language.
///
/// One language is selected at a time. At first it is ksImportOptions::language (a language or a
/// name in streams()), else the one that the index selects, else the first that has pictures. Its
/// units are read when it is selected. A picture is decoded when it is asked for, and kept until
/// there are more than 32, or more than 16 MB beside the last one.
///
/// Several threads may call const members at once, while none calls another member. Separate
/// objects share nothing. Nothing throws but `std::bad_alloc`, after which Open() leaves the object
/// closed and empty, and Select() leaves it without entries. Not copyable. A moved-from object is
/// closed; what it returned before stays valid.
class KSSUBTITLE_IMPORT_API ksImportPictures {
 public:
  /// @{
  /// A new object is closed; a move takes over what is open.
  ksImportPictures() noexcept;
  ksImportPictures(ksImportPictures&& other) noexcept;
  ksImportPictures& operator=(ksImportPictures&& other) noexcept;
  ~ksImportPictures();
  /// @}

  /// Closes what is open, and opens a pair of files: that at `path` (NUL-terminated, not null), and
  /// the one beside it with the same name and the extension ".sub" or ".idx", in any case. False if
  /// they are refused: report() then says why, and the object is closed and empty.
  ///
  /// A stream without an index, or beside one that cannot be read, which is noted, is searched for
  /// units in one pass, and shown in shades of grey. Both must be regular files. The stream stays
  /// open and may be of any size; if it changes while it is open, pictures are wrong or missing.
  /// Of the options, the encodings, the language, and `maxBytes` (for the index) count.
  bool Open(const char* path, const ksImportOptions& options = {});
  /// The same for an index and a stream in memory, which are copied. Either pointer may be null if
  /// its size is 0; without an index the stream is searched.
  bool OpenMemory(const void* index, std::size_t indexSize, const void* stream,
                  std::size_t streamSize, const ksImportOptions& options = {});
  /// Whether files are open.
  bool IsOpen() const noexcept;

  /// The languages, in the order of the index, or of their numbers. Valid until the next Open().
  std::span<const ksImportPictureStream> streams() const noexcept;
  /// Selects streams()[stream]. False, without an effect, if there is none.
  bool Select(std::size_t stream);
  /// The position in streams() of the selected language; 0 if there is none.
  std::size_t selected() const noexcept;

  /// The pictures of the selected language by start, including the damaged ones. Valid until the
  /// next Open() or Select().
  std::span<const ksImportPictureEntry> entries() const noexcept;
  /// The picture that is shown at `t` milliseconds: that of the last entry to have started by then,
  /// unless it has ended or is damaged; null if none is shown. If the index asks for forced
  /// pictures only, the others do not count. Returns the same object again as long as it is kept.
  std::shared_ptr<const ksImportPicture> PictureAt(long long t) const;
  /// The picture of entries()[entry]; null if it is damaged, its part of the stream can no longer
  /// be read, or there is no such entry.
  std::shared_ptr<const ksImportPicture> Picture(std::size_t entry) const;

  /// What was found out about the files: encoding, line ends and size of the index, and the notes
  /// on it and on the units of the selected language. Valid as long as the object; Select()
  /// replaces the notes.
  const ksImportReport& report() const noexcept { return report_; }

 private:
  std::unique_ptr<kssubtitle::importing::OpenPictures> opened_;
  ksImportReport report_;
};
