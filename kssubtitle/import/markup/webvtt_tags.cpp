// Tags and character references in the texts of WebVTT cues.
#include "kssubtitle/import/markup/webvtt_tags.h"

#include <algorithm>
#include <vector>

#include "kssubtitle/import/markup/colours.h"
#include "kssubtitle/import/markup/entities.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

/// An open element, with the style within it.
struct Element {
  std::string_view name;
  Style style;
};

/// The colour that a class names: the standard's classes are colour names, others are
/// "colorE5E5E5".
std::optional<int> colourOfClass(std::string_view name) noexcept {
  constexpr std::string_view kPrefix = "color";
  return colourOf(name.starts_with(kPrefix) ? name.substr(kPrefix.size()) : name);
}

/// Writes the pieces of a text.
class Writer {
 public:
  Writer(std::string_view text, CueText& out) noexcept : rest_(text), out_(out) {}

  /// Returns false if a tag does not end.
  bool write() {
    while (!rest_.empty()) {
      const std::size_t plain = findAny<'\n', '<', '&'>(rest_);
      if (plain > 0) out_.append(rest_.substr(0, plain));
      rest_.remove_prefix(plain);
      if (!rest_.empty()) readSpecial();
    }
    return !isCutOff_;
  }

 private:
  void readSpecial() {
    if (rest_.front() == '&') return consumeHtmlEntity(rest_, out_, LineReference::kLineEnd);
    if (rest_.front() == '<') return readTag();
    out_.endLine();
    rest_.remove_prefix(1);
  }

  /// A tag that does not end extends to the end of the text.
  void readTag() {
    const std::size_t end = std::min(rest_.find('>'), rest_.size());
    isCutOff_ = end == rest_.size();
    const std::string_view tag = rest_.substr(1, end - 1);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (!out_.isHtml()) return;
    if (tag.starts_with('/')) {
      close(tag.substr(1));
    } else {
      open(tag.substr(0, tag.find_first_of(" \t\f\r\n")));
    }
    out_.setStyle(style());
  }

  Style style() const noexcept { return open_.empty() ? Style() : open_.back().style; }

  /// `tag` is a name and its classes, each after a full stop.
  void open(std::string_view tag) {
    const std::string_view name = tag.substr(0, tag.find('.'));
    constexpr std::string_view kNames[] = {"c", "i", "b", "u", "v", "lang", "ruby", "rt"};
    const bool isInRuby = !open_.empty() && open_.back().name == "ruby";
    const bool isKnown = std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
    if (!isKnown || (name == "rt" && !isInRuby)) return;
    Style style = this->style();
    style.italic |= name == "i";
    style.bold |= name == "b";
    style.underline |= name == "u";
    for (std::size_t at = tag.find('.'); at != tag.npos; at = tag.find('.')) {
      tag.remove_prefix(at + 1);
      if (const auto colour = colourOfClass(tag.substr(0, tag.find('.')))) style.colour = *colour;
    }
    open_.push_back({name, style});
  }

  /// Only the innermost element can be closed; the end of ruby also closes its annotation.
  void close(std::string_view name) noexcept {
    if (open_.empty()) return;
    if (name == "ruby" && open_.back().name == "rt") open_.pop_back();
    if (!open_.empty() && open_.back().name == name) open_.pop_back();
  }

  std::string_view rest_;
  CueText& out_;
  std::vector<Element> open_;
  bool isCutOff_ = false;
};

}  // namespace

bool writeWebVttText(std::string_view text, CueText& out) { return Writer(text, out).write(); }

}  // namespace kssubtitle::importing
