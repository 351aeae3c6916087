// Tags, overrides and entities in the texts of SubRip cues.
#include "kssubtitle/import/markup/subrip_tags.h"

#include <algorithm>

#include "kssubtitle/import/markup/ass_overrides.h"
#include "kssubtitle/import/markup/colours.h"
#include "kssubtitle/import/markup/entities.h"
#include "kssubtitle/import/markup/loose_tags.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

/// Most texts end in a blank line.
std::string_view withoutTrailingBlankLines(std::string_view text) noexcept {
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

/// How many letters `text` begins with.
std::size_t letterCount(std::string_view text) noexcept {
  const auto* const end = std::find_if_not(text.begin(), text.end(), isLetter);
  return static_cast<std::size_t>(end - text.begin());
}

/// SubRip has only the five short names; anything else in angle brackets is text.
std::optional<StyleTag> tagNamed(std::string_view name) noexcept {
  const bool isShort = name.size() == 1 || equalNoCase(name, "font");
  return isShort ? styleTagNamed(name) : std::nullopt;
}

/// A tag up to the end of its name.
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

/// Writes the pieces of a text.
class Writer {
 public:
  Writer(std::string_view text, CueText& out) noexcept
      : rest_(withoutTrailingBlankLines(text)), out_(out) {}

  TextTraits write() {
    while (!rest_.empty()) {
      appendText(findAny<'\n', '<', '{', '&', '\\'>(rest_));
      if (!rest_.empty()) readSpecial();
    }
    return {alignment_, style_.isAnyOpen()};
  }

 private:
  void readSpecial() {
    switch (rest_.front()) {
      case '\n':
        out_.endLine();
        return rest_.remove_prefix(1);
      case '<':
        return readTag();
      case '{':
        return readOverride();
      case '\\':
        return readBackslash();
      default:
        return readEntity();
    }
  }

  void appendText(std::size_t length) {
    if (length > 0) out_.append(rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  void readTag() {
    const TagAtFront tag = tagAtFront(rest_);
    if (tag.length == 0) return appendText(1);
    rest_.remove_prefix(tag.length);
    style_.apply(tag.tag, tag.isClosing, tag.attributes);
    out_.setStyle(style_.style());
  }

  void readOverride() {
    const std::size_t length = overrideLength(rest_, kSubRipCodes);
    if (length == 0) return appendText(1);
    const std::string_view block = rest_.substr(0, length);
    if (!alignment_) alignment_ = alignmentOfOverride(block);
    rest_.remove_prefix(length);
  }

  void readBackslash() {
    const std::size_t length = lineBreakLength(rest_);
    if (length == 0) return appendText(1);
    out_.endLine();
    rest_.remove_prefix(length);
  }

  void readEntity() {
    const Entity entity = subRipEntityOf(rest_);
    if (entity.length == 0) return appendText(1);
    out_.append(entity.first);
    if (entity.second != 0) out_.append(entity.second);
    rest_.remove_prefix(entity.length);
  }

  std::string_view rest_;
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

std::size_t lineBreakLength(std::string_view text) noexcept {
  for (const std::string_view code : {"\\N", "\\\\N"}) {
    if (text.starts_with(code)) return code.size();
  }
  return 0;
}

std::size_t overrideLength(std::string_view text, std::string_view codes) noexcept {
  if (!beginsOverride(text, codes)) return 0;
  const std::size_t end = text.find_first_of("{}", 1);
  return end == text.npos || text[end] == '{' ? 0 : end + 1;
}

std::optional<int> alignmentOfOverride(std::string_view block) noexcept {
  for (std::size_t at; (at = block.find("\\a")) != block.npos; block.remove_prefix(at + 2)) {
    const std::string_view value = block.substr(at + 2);  // at least the closing brace
    if (value.front() == 'n' && value[1] >= '1' && value[1] <= '9') return value[1] - '0';
    if (isDigit(value.front())) return alignmentOfSsa(integerOfAss(value).value_or(0));
  }
  return std::nullopt;
}

bool mayBeSubRipMarkup(std::string_view text) noexcept {
  switch (text.front()) {
    case '<':
      return tagBegun(text).has_value();
    case '&':
      return subRipEntityOf(text).length > 0;
    case '\\':
      return lineBreakLength(text) > 0;
    default:
      return false;
  }
}

TextTraits writeSubRipText(std::string_view text, CueText& out) {
  return Writer(text, out).write();
}

}  // namespace kssubtitle::importing
