// The tags that stand in the texts of SubRip cues.
#include "kssubtitle/import/markup/subrip_tags.h"

#include <algorithm>

#include "kssubtitle/import/markup/ass_overrides.h"
#include "kssubtitle/import/markup/entities.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {
namespace {

constexpr bool isSpace(char c) noexcept { return isBlank(c) || c == '\n'; }

/// Most texts end in a blank line.
std::string_view withoutBlankLinesBehind(std::string_view text) noexcept {
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

/// How many letters `text` begins with.
std::size_t letterCount(std::string_view text) noexcept {
  const auto* const end = std::find_if_not(text.begin(), text.end(), isLetter);
  return static_cast<std::size_t>(end - text.begin());
}

std::optional<StyleTag> tagNamed(std::string_view name) noexcept {
  constexpr std::pair<std::string_view, StyleTag> kNames[] = {{"i", StyleTag::kItalic},
                                                              {"b", StyleTag::kBold},
                                                              {"u", StyleTag::kUnderline},
                                                              {"s", StyleTag::kStrikeOut},
                                                              {"font", StyleTag::kFont}};
  for (const auto& [known, tag] : kNames) {
    if (equalNoCase(known, name)) return tag;
  }
  return std::nullopt;
}

/// A tag as far as its name goes.
std::optional<TagAtFront> tagBegun(std::string_view text) noexcept {
  TagAtFront begun;
  begun.isClosing = text.substr(1).starts_with('/');
  const std::size_t at = begun.isClosing ? 2 : 1;
  const std::string_view name = text.substr(at, letterCount(text.substr(at)));
  const std::optional<StyleTag> tag = tagNamed(name);
  if (!tag) return std::nullopt;
  begun.tag = *tag;
  begun.length = at + name.size();
  return begun;
}

bool beginsOverride(std::string_view text, std::string_view codes) noexcept {
  return text.size() > 2 &&
         (text[1] == '\\' || (text[2] == ':' && codes.find(lowerOf(text[1])) != codes.npos));
}

constexpr std::string_view kCodes = "yfscp";

/// Walks over a text and hands its pieces on.
class Writer {
 public:
  Writer(std::string_view text, SubRipMarks& marks, CueText& out) noexcept
      : rest_(withoutBlankLinesBehind(text)), marks_(marks), out_(out) {}

  TextTraits write() {
    while (!rest_.empty()) {
      takeLines(marks_.countBefore(rest_));
      if (!rest_.empty()) takeSpecial();
    }
    return {alignment_, style_.isAnyOpen()};
  }

 private:
  void takeLines(std::size_t length) {
    for (std::string_view plain = rest_.substr(0, length);;) {
      const std::size_t end = plain.find('\n');
      if (end == plain.npos) return takeText(plain.size());
      out_.appendLine(plain.substr(0, end));
      rest_.remove_prefix(end + 1);
      plain.remove_prefix(end + 1);
    }
  }

  void takeSpecial() {
    switch (rest_.front()) {
      case '<':
        return takeTag();
      case '{':
        return takeOverride();
      default:
        return takeEntity();
    }
  }

  void takeText(std::size_t length) {
    if (length > 0) out_.append(rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  void takeTag() {
    const TagAtFront tag = tagAtFront(rest_);
    if (tag.length == 0) return takeText(1);
    rest_.remove_prefix(tag.length);
    applyTag(tag, style_);
    out_.setStyle(style_.style());
  }

  void takeOverride() {
    const std::size_t length = overrideLength(rest_, kCodes);
    if (length == 0) return takeText(1);
    const std::string_view block = rest_.substr(0, length);
    if (!alignment_) alignment_ = alignmentOfOverride(block);
    rest_.remove_prefix(length);
  }

  void takeEntity() {
    const Entity entity = entityOf(rest_);
    if (entity.length == 0) return takeText(1);
    out_.append(entity.character);
    rest_.remove_prefix(entity.length);
  }

  std::string_view rest_;
  SubRipMarks& marks_;
  CueText& out_;
  TagStyle style_;
  std::optional<int> alignment_;
};

}  // namespace

TagAtFront tagAtFront(std::string_view text) noexcept {
  const std::optional<TagAtFront> begun = tagBegun(text);
  if (!begun) return {};
  TagAtFront found = *begun;
  const std::size_t at = found.length;
  const std::size_t end = text.find_first_of("<>", at);
  if (end == text.npos || text[end] == '<') return {};
  found.attributes = text.substr(at, end - at);
  const bool mayHaveAttributes = found.tag == StyleTag::kFont;
  const bool isBare = std::all_of(found.attributes.begin(), found.attributes.end(), isSpace);
  if (!isBare && !(mayHaveAttributes && isSpace(found.attributes.front()))) return {};
  found.length = end + 1;
  return found;
}

void applyTag(const TagAtFront& tag, TagStyle& style) {
  if (tag.isClosing) return style.close(tag.tag);
  const bool isFont = tag.tag == StyleTag::kFont;
  const auto colour = isFont ? colourOf(attributeOf(tag.attributes, "color")) : std::nullopt;
  style.open(tag.tag, colour.value_or(Style::kNoColour));
}

std::string_view attributeOf(std::string_view attributes, std::string_view name) noexcept {
  const std::size_t at = findNoCase(attributes, name);
  if (at == attributes.npos) return {};
  std::string_view value = withoutBlanks(attributes.substr(at + name.size()));
  if (!value.starts_with('=')) return {};
  value = withoutLeadingBlanks(value.substr(1));
  if (value.starts_with('"') || value.starts_with('\'')) {
    const char quote = value.front();
    value.remove_prefix(1);
    return value.substr(0, value.find(quote));
  }
  return value.substr(0, value.find_first_of(" \t\r\n"));
}

std::size_t overrideLength(std::string_view text, std::string_view codes) noexcept {
  if (!beginsOverride(text, codes)) return 0;
  const std::size_t end = text.find_first_of("{}", 1);
  return end == text.npos || text[end] == '{' ? 0 : end + 1;
}

std::optional<int> alignmentOfOverride(std::string_view block) noexcept {
  for (std::size_t at; (at = block.find("\\a")) != block.npos; block.remove_prefix(at + 2)) {
    const std::string_view value = block.substr(at + 2);  // the closing brace at the least
    if (value.front() == 'n' && value[1] >= '1' && value[1] <= '9') return value[1] - '0';
    if (isDigit(value.front())) return alignmentOfSsa(integerOfAss(value).value_or(0));
  }
  return std::nullopt;
}

bool mayBeSubRipMarkup(std::string_view text) noexcept {
  switch (text.front()) {
    case '<':
      return tagBegun(text).has_value();
    case '{':
      return beginsOverride(text, kCodes);
    case '&':
      return entityOf(text).length > 0;
    default:
      return false;
  }
}

TextTraits writeSubRipText(std::string_view text, SubRipMarks& marks, CueText& out) {
  return Writer(text, marks, out).write();
}

}  // namespace kssubtitle::importing
