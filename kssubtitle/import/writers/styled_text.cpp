// The text of a cue with the style of each part.
#include "kssubtitle/import/writers/styled_text.h"

#include <algorithm>

#include "kssubtitle/import/markup/entities.h"
#include "kssubtitle/import/markup/subrip_tags.h"
#include "kssubtitle/import/markup/white_space.h"
#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

/// Collects characters and their styles into a normalised text.
class Builder {
 public:
  void setStyle(const Style& style) { style_ = style; }

  /// Requires: `characters` contains no line ends.
  void append(std::string_view characters) {
    if (text_.characters.size() == lineBegin_) {
      characters.remove_prefix(leadingWhiteSpace(characters));
    }
    if (characters.empty()) return;
    text_.characters += characters;
    extendRun(style_);
  }

  /// The line feed belongs to the run before it.
  void endLine() {
    const std::string_view line = std::string_view(text_.characters).substr(lineBegin_);
    if (line.empty()) return;
    cutTo(text_.characters.size() - trailingWhiteSpace(line));
    text_.characters += '\n';
    text_.runs.back().end = text_.characters.size();
    lineBegin_ = text_.characters.size();
  }

  StyledText finish() {
    endLine();
    if (!text_.characters.empty()) cutTo(text_.characters.size() - 1);
    return std::move(text_);
  }

 private:
  void extendRun(const Style& style) {
    if (text_.runs.empty() || text_.runs.back().style != style) text_.runs.push_back({0, style});
    text_.runs.back().end = text_.characters.size();
  }

  /// A line begins with a character that is not white space, so at least one run remains.
  void cutTo(std::size_t size) {
    text_.characters.resize(size);
    while (text_.runs.size() > 1 && text_.runs[text_.runs.size() - 2].end >= size) {
      text_.runs.pop_back();
    }
    text_.runs.back().end = size;
  }

  StyledText text_;
  Style style_;
  std::size_t lineBegin_ = 0;
};

/// Reads a text with tags and entities into a Builder.
class HtmlReader {
 public:
  HtmlReader(std::string_view text, Builder& out) : rest_(text), out_(out) {}

  void read() {
    while (!rest_.empty()) {
      consumeText(std::min(rest_.find_first_of("\n\r<&"), rest_.size()));
      if (!rest_.empty()) consumeSpecial();
    }
  }

 private:
  void consumeText(std::size_t length) {
    out_.append(rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  void consumeSpecial() {
    if (rest_.front() == '<') return consumeTag();
    if (rest_.front() == '&') return consumeEntity();
    out_.endLine();
    rest_.remove_prefix(1);
  }

  void consumeTag() {
    const TagAtFront tag = tagAtFront(rest_);
    if (tag.length == 0) return consumeText(1);
    style_.apply(tag.tag, tag.isClosing, tag.attributes);
    out_.setStyle(style_.style());
    rest_.remove_prefix(tag.length);
  }

  void consumeEntity() {
    const Entity entity = subRipEntityOf(rest_);
    if (entity.length == 0) return consumeText(1);
    rest_.remove_prefix(entity.length);
    if (entity.first == '\n' || entity.first == '\r') return out_.endLine();
    std::string character;
    appendUtf8(character, entity.first);
    out_.append(character);
  }

  std::string_view rest_;
  Builder& out_;
  TagStyle style_;
};

void readPlain(std::string_view text, Builder& out) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\n\r"), text.size());
    out.append(text.substr(0, end));
    out.endLine();
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

}  // namespace

StyledText styledText(std::string_view text, ksImportMarkup markup) {
  std::string valid = repairUtf8(text, [](std::size_t) {});
  std::erase(valid, '\0');
  Builder builder;
  if (markup == ksImportMarkup::kHtml) {
    HtmlReader(valid, builder).read();
  } else {
    readPlain(valid, builder);
  }
  return builder.finish();
}

}  // namespace kssubtitle::importing
