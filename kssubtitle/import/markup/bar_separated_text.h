// Texts of the formats of early players: a bar ends a line, and codes in braces or signs at a
// line's ends set the style.
#pragma once

#include <optional>
#include <string_view>

#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/markup/style.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {

/// What a format knows beside bars, which end lines, tags such as `<i>`, and codes such as "{y:i}",
/// of which those in capital letters count for all that follows, not for their line alone.
struct BarMarkup {
  enum class Signs {
    kNone,
    kSlashes,   ///< A line between slashes, or behind one, is italic.
    kPrefixes,  ///< A line behind '/' is italic, behind '\' bold, behind '_' underlined.
  };
  Signs signs = Signs::kNone;
  bool hasBreaks = false;         ///< "[br]" ends a line too.
  bool dropsUnknownTags = false;  ///< Whatever looks like a tag is none of the text.
};

/// Writes the texts of a file's cues.
class BarWriter {
 public:
  BarWriter(const BarMarkup& markup, CueText& out) noexcept : markup_(markup), out_(out) {}

  /// Writes lines of a cue that begin in the style `base`, but for the tags that are open. Sets
  /// `alignment` if they ask for one.
  void write(std::string_view text, int& alignment, const Style& base = Style());
  /// Closes the tags of a cue; whether any was open.
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
  void takePiece();
  void takeText(std::size_t length);
  void takeSigns();
  void takeSlashes() noexcept;
  bool takePrefix() noexcept;
  bool takeCode();
  bool takeTag();
  bool takeUnknownTag() noexcept;
  void setStyle();

  BarMarkup markup_;
  CueText& out_;
  TagStyle tags_;
  bool hasTags_ = false;   // there were any in the cue
  std::string_view rest_;  // of the line that is being written
  Style cueStyle_;         // what codes set for all that follows
  Style lineStyle_;
  bool isBehindSlash_ = false;
  std::optional<int> alignment_;  // the first one
};

/// The style that codes such as "{Y:i}{C:$bbggrr}" leave.
Style styleOfCodes(std::string_view codes) noexcept;

}  // namespace kssubtitle::importing
