// Texts of the formats of early players.
#include "kssubtitle/import/markup/bar_text.h"

#include <algorithm>
#include <charconv>

#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

// Style, colour, font, size, position, origin, character set.
constexpr std::string_view kCodes = "ycfspoh";
constexpr std::string_view kBreak = "[br]";

/// "$bbggrr" as 0xRRGGBB.
std::optional<int> colourOfCode(std::string_view value) noexcept {
  value = withoutBlanks(value);
  if (value.starts_with('$')) value.remove_prefix(1);
  constexpr std::size_t kDigits = 6;
  int colour = 0;
  const char* const end = value.data() + value.size();
  if (value.size() != kDigits || std::from_chars(value.data(), end, colour, 16).ptr != end) {
    return std::nullopt;
  }
  return (colour & 0xFF) << 16 | (colour & 0xFF00) | colour >> 16;
}

/// Lets `code`, "{y:...}" or its like, set `style`.
void applyCode(std::string_view code, Style& style) noexcept {
  const std::string_view value = code.substr(3, code.size() - 4);
  if (lowerOf(code[1]) == 'c') style.colour = colourOfCode(value).value_or(style.colour);
  if (lowerOf(code[1]) != 'y') return;
  for (const char c : value) {
    if (lowerOf(c) == 'i') style.italic = true;
    if (lowerOf(c) == 'b') style.bold = true;
    if (lowerOf(c) == 'u') style.underline = true;
    if (lowerOf(c) == 's') style.strikeOut = true;
  }
}

constexpr bool isCapital(char c) noexcept { return c != lowerOf(c); }

/// What is on in one of both.
Style joined(const Style& a, const Style& b) noexcept {
  return {a.italic || b.italic, a.bold || b.bold, a.underline || b.underline,
          a.strikeOut || b.strikeOut, b.colour == Style::kNoColour ? a.colour : b.colour};
}

/// The length of what looks like a tag at the front of `text`, which begins with '<'; 0 if nothing
/// does.
std::size_t unknownTagLength(std::string_view text) noexcept {
  const std::size_t name = text.substr(1).starts_with('/') ? 2 : 1;
  if (name >= text.size() || !isLetter(text[name])) return 0;
  const std::size_t end = text.find_first_of("<>", name);
  return end == text.npos || text[end] == '<' ? 0 : end + 1;
}

/// Walks over a text line by line and hands its pieces on.
class Writer {
 public:
  Writer(std::string_view text, const BarMarkup& markup, const Style& base, TagStyle& tags,
         CueText& out) noexcept
      : text_(text), markup_(markup), out_(out), cueStyle_(base), tags_(tags) {}

  TextTraits write() {
    while (!text_.empty()) {
      const std::string_view line = takeLine();
      lineStyle_ = cueStyle_;
      rest_ = withoutBlanks(line);
      takeSigns();
      setStyle();
      while (!rest_.empty()) takePiece();
      out_.endLine();
    }
    traits_.isUnclosed = tags_.isAnyOpen();
    return traits_;
  }

 private:
  std::string_view takeLine() noexcept {
    std::size_t end = possibleSeparator(0);
    std::size_t separator = 0;
    while (end < text_.size() && (separator = separatorLength(end)) == 0) {
      end = possibleSeparator(end + 1);
    }
    const std::string_view line = text_.substr(0, end);
    text_.remove_prefix(end + separator);
    return line;
  }

  /// Where the first character is from `at` on that may end a line.
  std::size_t possibleSeparator(std::size_t at) const noexcept {
    const std::string_view rest = text_.substr(at);
    return at + (markup_.hasBreaks ? findAny<'|', '\n', '['>(rest) : findAny<'|', '\n'>(rest));
  }

  /// How long what ends a line at `at` is; 0 if nothing does.
  std::size_t separatorLength(std::size_t at) const noexcept {
    const char c = text_[at];
    if (c == '|' || c == '\n') return 1;
    if (c != '[' || !markup_.hasBreaks) return 0;
    return startsWithNoCase(text_.substr(at, kBreak.size()), kBreak) ? kBreak.size() : 0;
  }

  /// The signs may stand behind codes.
  void takeSigns() {
    while (rest_.starts_with('{') && takeCode()) rest_ = withoutLeadingBlanks(rest_);
    if (markup_.signs == BarMarkup::Signs::kSlashes) takeSlashes();
    if (markup_.signs == BarMarkup::Signs::kPrefixes) {
      while (!rest_.empty() && takePrefix()) rest_.remove_prefix(1);
    }
  }

  /// A slash that no line before it closes goes on.
  void takeSlashes() noexcept {
    if (rest_.starts_with('/')) {
      isBehindSlash_ = true;
      lineStyle_.italic = true;
      rest_.remove_prefix(1);
    }
    if (isBehindSlash_ && rest_.ends_with('/')) {
      lineStyle_.italic = true;
      isBehindSlash_ = false;
      rest_.remove_suffix(1);
    }
  }

  bool takePrefix() noexcept {
    switch (rest_.front()) {
      case '/':
        return lineStyle_.italic = true;
      case '\\':
        return lineStyle_.bold = true;
      case '_':
        return lineStyle_.underline = true;
      default:
        return false;
    }
  }

  void takePiece() {
    const std::size_t length = findAny<'<', '{'>(rest_);
    if (length > 0) return takeText(length);
    if (!(rest_.front() == '{' ? takeCode() : takeTag())) takeText(1);
    setStyle();
  }

  void takeText(std::size_t length) {
    out_.append(rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  bool takeCode() {
    const std::size_t length = overrideLength(rest_, kCodes);
    if (length == 0) return false;
    const std::string_view code = rest_.substr(0, length);
    if (code[1] == '\\') {
      if (!traits_.alignment) traits_.alignment = alignmentOfOverride(code);
    } else {
      applyCode(code, lineStyle_);
      if (isCapital(code[1])) applyCode(code, cueStyle_);
    }
    rest_.remove_prefix(length);
    return true;
  }

  bool takeTag() {
    const TagAtFront tag = tagAtFront(rest_);
    if (tag.length == 0) return takeUnknownTag();
    if (tag.isClosing) {
      tags_.close(tag.tag);
    } else {
      const int colour = colourOf(attributeOf(tag.attributes, "color")).value_or(Style::kNoColour);
      tags_.open(tag.tag, tag.tag == StyleTag::kFont ? colour : Style::kNoColour);
    }
    rest_.remove_prefix(tag.length);
    return true;
  }

  bool takeUnknownTag() noexcept {
    const std::size_t length = markup_.dropsUnknownTags ? unknownTagLength(rest_) : 0;
    rest_.remove_prefix(length);
    return length > 0;
  }

  void setStyle() {
    if (out_.isHtml()) out_.setStyle(joined(lineStyle_, tags_.style()));
  }

  std::string_view text_;  // what is not yet written
  std::string_view rest_;  // of its line
  const BarMarkup& markup_;
  CueText& out_;
  Style cueStyle_;  // what codes set for all that follows
  Style lineStyle_;
  TagStyle& tags_;
  bool isBehindSlash_ = false;
  TextTraits traits_;
};

}  // namespace

TextTraits writeBarText(std::string_view text, const BarMarkup& markup, const Style& base,
                        CueText& out) {
  TagStyle tags;
  return writeBarText(text, markup, base, tags, out);
}

TextTraits writeBarText(std::string_view text, const BarMarkup& markup, const Style& base,
                        TagStyle& tags, CueText& out) {
  return Writer(text, markup, base, tags, out).write();
}

Style styleOfCodes(std::string_view codes) noexcept {
  Style style;
  for (std::size_t at = codes.find('{'); at != codes.npos; at = codes.find('{', at + 1)) {
    const std::string_view code = codes.substr(at, overrideLength(codes.substr(at), kCodes));
    if (code.size() > 3 && code[1] != '\\') applyCode(code, style);
  }
  return style;
}

}  // namespace kssubtitle::importing
