// Texts in which bars end lines.
#include "kssubtitle/import/markup/bar_separated_text.h"

#include "kssubtitle/import/markup/colours.h"
#include "kssubtitle/import/markup/subrip_tags.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

// Style, colour, font, size, position, origin, character set.
constexpr std::string_view kCodes = "ycfspoh";
constexpr std::string_view kBreak = "[br]";

/// The colour of "$bbggrr".
std::optional<int> colourOfCode(std::string_view value) noexcept {
  value = withoutBlanks(value);
  if (value.starts_with('$')) value.remove_prefix(1);
  const auto blueGreenRed = value.size() == 6 ? hexadecimalNumber(value) : std::nullopt;
  return blueGreenRed ? std::optional(swappedRedAndBlue(*blueGreenRed)) : std::nullopt;
}

/// Applies `code`, "{y:...}" or the like, to `style`.
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

/// What is on in either.
Style joined(const Style& a, const Style& b) noexcept {
  return {a.italic || b.italic, a.bold || b.bold, a.underline || b.underline,
          a.strikeOut || b.strikeOut, b.colour == Style::kNoColour ? a.colour : b.colour};
}

/// The length of what looks like a tag at the beginning of `text`, which begins with '<'; 0 if
/// nothing does.
std::size_t unknownTagLength(std::string_view text) noexcept {
  const std::size_t name = text.substr(1).starts_with('/') ? 2 : 1;
  if (name >= text.size() || !isLetter(text[name])) return 0;
  const std::size_t end = text.find_first_of("<>", name);
  return end == text.npos || text[end] == '<' ? 0 : end + 1;
}

}  // namespace

/// How many characters precede the first that may have a meaning.
std::size_t BarWriter::plainLength(std::string_view text) const noexcept {
  return markup_.hasBreaks ? findAny<'|', '\\', '<', '{', '['>(text)
                           : findAny<'|', '\\', '<', '{'>(text);
}

/// The length of what ends a line at the beginning of `text`; 0 if nothing does.
std::size_t BarWriter::separatorLength(std::string_view text) const noexcept {
  if (text.front() == '|') return 1;
  const bool hasSignsOfItsOwn = markup_.signs == BarMarkup::Signs::kPrefixes;
  if (text.front() == '\\') return hasSignsOfItsOwn ? 0 : lineBreakLength(text);
  if (text.front() != '[' || !markup_.hasBreaks) return 0;
  return startsWithNoCase(text, kBreak) ? kBreak.size() : 0;
}

void BarWriter::write(std::string_view text, int& alignment, const Style& base) {
  cueStyle_ = base;
  isAfterSlash_ = false;
  alignment_.reset();
  while (!text.empty()) text = writeLine(text);
  if (alignment_) alignment = *alignment_;
}

/// Writes the first line of `text`. Returns what follows it.
std::string_view BarWriter::writeLine(std::string_view text) {
  std::size_t end = plainLength(text);
  std::size_t separator = 0;
  while (end < text.size() && (separator = separatorLength(text.substr(end))) == 0) {
    ++end;
    end += plainLength(text.substr(end));
  }
  lineStyle_ = cueStyle_;
  rest_ = withoutBlanks(text.substr(0, end));
  consumeSigns();
  setStyle();
  while (!rest_.empty()) writePiece();
  out_.endLine();
  return text.substr(end + separator);
}

/// The signs may follow codes.
void BarWriter::consumeSigns() {
  while (rest_.starts_with('{') && consumeCode()) rest_ = withoutLeadingBlanks(rest_);
  if (markup_.signs == BarMarkup::Signs::kSlashes) consumeSlashes();
  if (markup_.signs == BarMarkup::Signs::kPrefixes) {
    while (!rest_.empty() && applyPrefix()) rest_.remove_prefix(1);
  }
}

/// A slash applies until a line closes it.
void BarWriter::consumeSlashes() noexcept {
  if (rest_.starts_with('/')) {
    isAfterSlash_ = true;
    lineStyle_.italic = true;
    rest_.remove_prefix(1);
  }
  if (isAfterSlash_ && rest_.ends_with('/')) {
    lineStyle_.italic = true;
    isAfterSlash_ = false;
    rest_.remove_suffix(1);
  }
}

bool BarWriter::applyPrefix() noexcept {
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

void BarWriter::writePiece() {
  const std::size_t length = findAny<'<', '{'>(rest_);
  if (length > 0) return writeText(length);
  if (!(rest_.front() == '{' ? consumeCode() : consumeTag())) writeText(1);
  setStyle();
}

void BarWriter::writeText(std::size_t length) {
  out_.append(rest_.substr(0, length));
  rest_.remove_prefix(length);
}

bool BarWriter::consumeCode() {
  const std::size_t length = overrideLength(rest_, kCodes);
  if (length == 0) return false;
  const std::string_view code = rest_.substr(0, length);
  if (code[1] == '\\') {
    if (!alignment_) alignment_ = alignmentOfOverride(code);
  } else {
    applyCode(code, lineStyle_);
    if (isCapital(code[1])) applyCode(code, cueStyle_);
  }
  rest_.remove_prefix(length);
  return true;
}

bool BarWriter::consumeTag() {
  const TagAtFront tag = tagAtFront(rest_);
  if (tag.length == 0) return consumeUnknownTag();
  hasTags_ = true;
  tags_.apply(tag.tag, tag.isClosing, tag.attributes);
  rest_.remove_prefix(tag.length);
  return true;
}

bool BarWriter::consumeUnknownTag() noexcept {
  const std::size_t length = markup_.dropsUnknownTags ? unknownTagLength(rest_) : 0;
  rest_.remove_prefix(length);
  return length > 0;
}

void BarWriter::setStyle() {
  if (out_.isHtml()) out_.setStyle(joined(lineStyle_, tags_.style()));
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
