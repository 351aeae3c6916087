/// @file
/// What a host may ask for when it opens a file.
#pragma once

#include <cstddef>
#include <string>

/// How style is kept in the texts of cues.
enum class ksImportMarkup {
  kPlain,  ///< Not at all: the text is what a viewer reads.
  kHtml,   ///< As `<i> <b> <u> <s> <font color="#rrggbb">`; `& < >` become `&amp; &lt; &gt;`.
};

/// How a file is read. The defaults detect everything. Hosts create this struct, so members are
/// added only with a new SOVERSION of the library.
struct ksImportOptions {
  /// The name of a format from ksImportFormats(), in any case; empty: detected from the content.
  /// A file is refused if no format has the name.
  std::string format;
  /// The encoding, by a name that iconv knows, to use whatever the bytes look like; empty:
  /// detected. "UTF-16" and "UTF-32" name no byte order: the file's counts, and a BOM of another
  /// encoding overrides them. A file is refused if no encoding has the name.
  std::string encoding;
  /// The encoding of 8-bit text that cannot be detected, best the code page that is usual where the
  /// viewer lives; empty: windows-1252. An unknown name refuses only files that need it.
  std::string fallbackEncoding;
  /// Frames per second for times counted in frames where the file gives no rate. 0, or any value
  /// outside 0.01 to 1,000,000: 23.976, or in TTML 30, the default of the W3C's TTML2.
  double frameRate = 0;
  /// Which language of a multilingual file to read, in any case: a name from
  /// ksImportReport::languages(), a language tag (BCP 47) that the file uses, or the beginning of
  /// one ("en" matches "en-US"). Empty or unknown to the file: the first, or in TTML, where parts
  /// of one track may be in different languages, all of them.
  std::string language;
  /// How style is kept.
  ksImportMarkup markup = ksImportMarkup::kPlain;
  /// Larger files, in bytes, are refused without being read; so is any file of 2 GiB or more.
  std::size_t maxBytes = std::size_t{64} << 20;
};
