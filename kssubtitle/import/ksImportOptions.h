/// @file
/// What a host may ask of the import library when it opens a file.
#pragma once

#include <cstddef>
#include <string>

/// How style is kept in the texts of cues.
enum class ksImportMarkup {
  kPlain,  ///< Not at all: the text is what a viewer reads.
  kHtml,   ///< As `<i> <b> <u> <s> <font color="#rrggbb">`, with `&amp; &lt; &gt;` for those signs.
};

/// How a file is read. As they are, the options find everything out from the file. The host makes
/// them, so that members are added only with a new SOVERSION of the library.
struct ksImportOptions {
  /// A name that ksImportFormats() has; empty: the file's content decides. Another name
  /// is refused.
  std::string format;
  /// The name of an encoding that overrides everything else; empty: find it out. One that the C
  /// library's iconv does not know is refused.
  std::string encoding;
  /// The encoding of 8-bit text that cannot be told by its bytes; empty: windows-1252. It should be
  /// the code page that is usual where the viewer lives. An unknown one is refused where it is
  /// needed.
  std::string fallbackEncoding;
  /// Frames in a second, for formats that count frames in a file that does not say; 0 (or any other
  /// value that is no positive number): 23.976, as written, or in TTML 30, as its standard says.
  double frameRate = 0;
  /// Which of several languages in one file, by the name that ksImportReport::languages() gives, or
  /// by a tag that the file gives to it, or the first part of one: "en" is "en-US" too; in any
  /// case. Empty, or unknown to the file: the first, or in TTML, whose parts may take turns, all.
  std::string language;
  /// How style is kept.
  ksImportMarkup markup = ksImportMarkup::kPlain;
  /// Larger files are refused without being read.
  std::size_t maxBytes = std::size_t{64} << 20;
};
