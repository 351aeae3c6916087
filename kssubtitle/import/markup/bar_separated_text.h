// Texts of MicroDVD, MPL2, TMPlayer, SubViewer, SBV and MPsub: a bar ends a line, and codes in
// braces or signs at the ends of a line set its style.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/markup/style.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {

/// What a format has besides bars, which end lines, tags such as `<i>`, and codes such as "{y:i}",
/// which apply to all following lines, not only to their own, if they are upper case.
struct BarMarkup {
  enum class Signs {
    kNone,
    kSlashes,   ///< A line between slashes, or after one, is italic.
    kPrefixes,  ///< A line after '/' is italic, after '\' bold, after '_' underlined.
  };
  Signs signs = Signs::kNone;
  bool hasBreaks = false;         ///< "[br]" ends a line too.
  bool dropsUnknownTags = false;  ///< Whatever looks like a tag is dropped.
};

/// Writes the texts of a file's cues.
class BarWriter {
 public:
  BarWriter(const BarMarkup& markup, CueText& out) noexcept : markup_(markup), out_(out) {}

  /// Writes lines of a cue that begin in the style `base` plus open tags. Sets
  /// `alignment` if they ask for one.
  void write(std::string_view text, int& alignment, const Style& base = Style());
  /// Closes the tags of a cue. Returns whether any was open.
  bool closeTags() noexcept {
    if (!hasTags_) return false;
    hasTags_ = false;
    const bool isAnyOpen = tags_.isAnyOpen();
    tags_.closeAll();
    return isAnyOpen;
  }

 private:
  std::size_t plainLength(std::string_view text) const noexcept;
  std::size_t separatorLength(std::string_view text) const noexcept;
  std::string_view writeLine(std::string_view text);
  void writePiece();
  void writeText(std::size_t length);
  void consumeSigns();
  void consumeSlashes() noexcept;
  bool applyPrefix() noexcept;
  bool consumeCode();
  bool consumeTag();
  bool consumeUnknownTag() noexcept;
  void setStyle();

  BarMarkup markup_;
  CueText& out_;
  TagStyle tags_;
  bool hasTags_ = false;   // the cue has had any
  std::string_view rest_;  // of the line that is being written
  Style cueStyle_;         // what codes set for all that follows
  Style lineStyle_;
  bool isAfterSlash_ = false;
  std::optional<int> alignment_;  // the first one
};

/// The style that codes such as "{Y:i}{C:$bbggrr}" leave.
Style styleOfCodes(std::string_view codes) noexcept;

}  // namespace kssubtitle::importing
