// The texts of SAMI, which are HTML.
#include "kssubtitle/import/markup/sami_text.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "kssubtitle/import/markup/colours.h"
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

/// `text` without what is left out at its ends: white space and, in front, the no-break spaces that
/// most paragraphs without text are made of.
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

/// Walks over a text and hands its pieces on.
class Writer {
 public:
  Writer(std::string_view text, CueText& out) noexcept : rest_(text), out_(out) {}

  bool write() {
    while (!rest_.empty()) {
      takePlain();
      if (!rest_.empty()) takeSpecial();
    }
    const bool isClosed = !style_.isAnyOpen();
    out_.endLine();
    out_.setStyle(Style());
    return isClosed;
  }

 private:
  /// Takes words with a space between each two.
  void takePlain() {
    const char first = rest_.front();
    if (isSpace(first) || first == '<' || first == '&') return;
    takeText(1 + findAnyOrBlanks<'\t', '\r', '\n', '\v', '\f', '<', '&'>(rest_.substr(1)));
  }

  void takeText(std::size_t length) {
    out_.append(rest_.substr(0, length));
    isBehindSpace_ = rest_[length - 1] == ' ';
    rest_.remove_prefix(length);
  }

  void takeSpecial() {
    switch (rest_.front()) {
      case '<':
        return takeTag();
      case '&':
        isBehindSpace_ = false;
        return consumeHtmlEntity(rest_, out_);
      default:
        return takeSpaces();
    }
  }

  void takeSpaces() {
    const auto* const end = std::find_if_not(rest_.begin(), rest_.end(), isSpace);
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.begin()));
    if (!isBehindSpace_) out_.append(" ");
    isBehindSpace_ = true;
  }

  void takeTag() {
    const LooseTag tag = tags_.at(rest_);
    if (tag.length == 0 || !(tag.isWhole || tag.name.empty())) return takeText(1);
    rest_.remove_prefix(tag.length);
    if (endsLine(tag.name)) {
      out_.endLine();
      isBehindSpace_ = true;
    } else if (const auto style = styleTagNamed(tag.name)) {
      setStyle(*style, tag);
    }
  }

  void setStyle(StyleTag style, const LooseTag& tag) {
    if (tag.isClosing) {
      style_.close(style);
    } else {
      const bool isFont = style == StyleTag::kFont;
      const auto colour = isFont ? colourOf(tag.attribute("color")) : std::nullopt;
      style_.open(style, colour.value_or(Style::kNoColour));
    }
    out_.setStyle(style_.style());
  }

  std::string_view rest_;
  CueText& out_;
  LooseTags tags_;
  TagStyle style_;
  bool isBehindSpace_ = true;
};

}  // namespace

bool writeSamiText(std::string_view text, CueText& out) {
  text = withoutBlankEnds(text);
  return text.empty() || Writer(text, out).write();
}

}  // namespace kssubtitle::importing
