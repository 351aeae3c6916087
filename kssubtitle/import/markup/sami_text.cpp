// The texts of SAMI, which are HTML.
#include "kssubtitle/import/markup/sami_text.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "kssubtitle/import/markup/entities.h"
#include "kssubtitle/import/markup/loose_tags.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

bool endsLine(std::string_view name) noexcept {
  constexpr std::string_view kNames[] = {"br", "p", "div", "tr", "li"};
  return std::any_of(std::begin(kNames), std::end(kNames),
                     [name](std::string_view known) { return equalNoCase(known, name); });
}

/// `text` without what is dropped at its ends: white space and, at the beginning, the no-break
/// spaces that paragraphs without text consist of.
std::string_view withoutBlankEnds(std::string_view text) noexcept {
  constexpr std::string_view kSpace = "&nbsp;";
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  while (!text.empty()) {
    const std::size_t length = isSpace(text.front()) ? 1 : kSpace.size();
    if (length > 1 && !text.starts_with(kSpace)) break;
    text.remove_prefix(length);
  }
  return text;
}

/// Writes the pieces of a text.
class Writer {
 public:
  Writer(std::string_view text, CueText& out) noexcept : rest_(text), out_(out) {}

  TextTraits write() {
    while (!rest_.empty()) {
      appendPlain();
      if (!rest_.empty()) readSpecial();
    }
    out_.endLine();
    out_.setStyle(Style());
    return {alignment_, style_.isAnyOpen()};
  }

 private:
  /// Appends words separated by single spaces.
  void appendPlain() {
    const char first = rest_.front();
    if (isSpace(first) || first == '<' || first == '&' || first == '{') return;
    appendText(1 + findAnyOrBlanks<'\t', '\r', '\n', '\v', '\f', '<', '&', '{'>(rest_.substr(1)));
  }

  void appendText(std::size_t length) {
    out_.append(rest_.substr(0, length));
    isAfterSpace_ = rest_[length - 1] == ' ';
    rest_.remove_prefix(length);
  }

  void readSpecial() {
    switch (rest_.front()) {
      case '<':
        return readTag();
      case '{':
        return readOverride();
      case '&':
        isAfterSpace_ = false;
        return consumeHtmlEntity(rest_, out_);
      default:
        return readSpaces();
    }
  }

  void readOverride() {
    const std::size_t length = overrideLength(rest_, kSubRipCodes);
    if (length == 0) return appendText(1);
    if (!alignment_) alignment_ = alignmentOfOverride(rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  void readSpaces() {
    const auto* const end = std::find_if_not(rest_.begin(), rest_.end(), isSpace);
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.begin()));
    if (!isAfterSpace_) out_.append(" ");
    isAfterSpace_ = true;
  }

  void readTag() {
    const LooseTag tag = tags_.at(rest_);
    if (tag.length == 0 || !(tag.isWhole || tag.name.empty())) return appendText(1);
    rest_.remove_prefix(tag.length);
    if (endsLine(tag.name)) {
      out_.endLine();
      isAfterSpace_ = true;
    } else if (const auto style = styleTagNamed(tag.name)) {
      style_.apply(*style, tag.isClosing, tag.attributes);
      out_.setStyle(style_.style());
    }
  }

  std::string_view rest_;
  CueText& out_;
  LooseTags tags_;
  TagStyle style_;
  std::optional<int> alignment_;
  bool isAfterSpace_ = true;
};

}  // namespace

TextTraits writeSamiText(std::string_view text, CueText& out) {
  return Writer(withoutBlankEnds(text), out).write();
}

}  // namespace kssubtitle::importing
