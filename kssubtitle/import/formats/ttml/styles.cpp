// Styles and regions of TTML.
#include "kssubtitle/import/formats/ttml/styles.h"

#include <algorithm>
#include <cstddef>

#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/ttml/names.h"
#include "kssubtitle/import/markup/colours.h"

namespace kssubtitle::importing {
namespace {

/// References between styles are followed no further than this.
constexpr int kMostReferences = 16;

/// Consumes a word.
std::string_view consumeWord(std::string_view& text) noexcept {
  constexpr std::string_view kBlanks = " \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return word;
}

/// "r,g,b)", with white space between.
std::optional<int> colourByComponents(std::string_view text) noexcept {
  int colour = 0;
  for (int i = 0; i < 3; ++i) {
    if (i > 0 && !consumeCharacter(text, ',')) return std::nullopt;
    const auto digits = consumeDigits(text);
    if (!digits) return std::nullopt;
    colour = colour << 8 | static_cast<int>(std::min(digits->value, 255LL));
  }
  return colour;
}

/// Ignores opacity.
std::optional<int> ttmlColour(std::string_view text) noexcept {
  constexpr std::size_t kOpaque = 7;  // "#rrggbb"
  text = withoutBlanks(text);
  if (text.starts_with("rgb")) {
    return colourByComponents(text.substr(std::min(text.find('(') + 1, text.size())));
  }
  return colourOf(text.starts_with('#') ? text.substr(0, kOpaque) : text);
}

/// The second of two percentages, as a fraction.
std::optional<double> verticalIn(std::string_view text) noexcept {
  consumeWord(text);
  const auto number = consumeDecimal(text);
  return number && text.starts_with('%') ? std::optional(*number / 100) : std::nullopt;
}

std::optional<double> anchorOf(std::string_view align) noexcept {
  if (align == "before") return 0;
  if (align == "center") return 0.5;
  return align == "after" ? std::optional(1.0) : std::nullopt;
}

std::optional<int> columnOf(std::string_view align) noexcept {
  if (align == "start" || align == "left") return 1;
  if (align == "center") return 2;
  return align == "end" || align == "right" ? std::optional(3) : std::nullopt;
}

std::string_view valueOf(pugi::xml_node node, std::string_view name) noexcept {
  for (const pugi::xml_attribute attribute : node.attributes()) {
    if (localName(attribute.name()) == name) return attribute.value();
  }
  return {};
}

}  // namespace

void TtmlStyle::set(std::string_view name, std::string_view value) noexcept {
  if (name == "color") setIfSaid(kColour, colour_, ttmlColour(value));
  if (name == "fontStyle") set(kItalic, value == "italic" || value == "oblique");
  if (name == "fontWeight") set(kBold, value == "bold");
  if (name == "textDecoration") setDecoration(value);
  if (name == "textAlign") setIfSaid(kColumn, column_, columnOf(value));
  if (name == "displayAlign") setIfSaid(kAnchor, anchor_, anchorOf(value));
  if (name == "origin") setIfSaid(kTop, top_, verticalIn(value));
  if (name == "extent") setIfSaid(kHeight, height_, verticalIn(value));
}

void TtmlStyle::setDecoration(std::string_view value) noexcept {
  for (std::string_view word; !(word = consumeWord(value)).empty();) {
    if (word == "underline") set(kUnderline, true);
    if (word == "lineThrough") set(kStrikeOut, true);
    if (word == "noUnderline" || word == "none") set(kUnderline, false);
    if (word == "noLineThrough" || word == "none") set(kStrikeOut, false);
  }
}

int TtmlStyle::alignment() const noexcept {
  int row = 0;
  if (says(kTop | kAnchor)) {
    const double text = top_ + (says(kHeight) ? height_ : 1 - top_) * anchor_;
    row = text < 1.0 / 3 ? 2 : (text < 2.0 / 3 ? 1 : 0);
  }
  return 3 * row + column_;
}

void TtmlStyles::readHead(pugi::xml_node head) {
  if (hasHead_) return;
  hasHead_ = !head.first_child().empty() || *head.value() != '\0';
  for (const pugi::xml_node part : head) {
    for (const pugi::xml_node node : part) {
      const std::string_view name = localName(node.name());
      if (name == "style") add(styles_, node);
      if (name == "region") add(regions_, node);
      if (name != "initial") continue;
      for (const pugi::xml_attribute attribute : node.attributes()) {
        initial_.set(localName(attribute.name()), attribute.value());
      }
    }
  }
  for (const auto& [name, definition] : styles_) find(styles_, name, 0);
  for (const auto& [name, definition] : regions_) find(regions_, name, 0);
}

void TtmlStyles::add(Definitions& definitions, pugi::xml_node node) {
  if (const std::string_view name = valueOf(node, "id"); !name.empty()) {
    definitions.try_emplace(name, Definition{node, {}});
  }
}

/// A cyclic reference contributes nothing.
const TtmlStyle* TtmlStyles::find(Definitions& definitions, std::string_view name, int depth) {
  const auto found = definitions.find(name);
  if (found == definitions.end()) return nullptr;
  Definition& definition = found->second;
  if (!definition.isResolved) {
    definition.isResolved = true;
    definition.style = resolve(definition.node, depth);
  }
  return &definition.style;
}

/// The styles it refers to, then those nested in it (in a region), then its own.
TtmlStyle TtmlStyles::resolve(pugi::xml_node node, int depth) {
  TtmlStyle style = named(valueOf(node, "style"), depth + 1);
  for (const pugi::xml_node inner : node) {
    if (localName(inner.name()) == "style" && depth < kMostReferences) {
      style.take(resolve(inner, depth + 1));
    }
  }
  for (const pugi::xml_attribute attribute : node.attributes()) {
    style.set(localName(attribute.name()), attribute.value());
  }
  return style;
}

TtmlStyle TtmlStyles::named(std::string_view names, int depth) {
  TtmlStyle style;
  if (depth > kMostReferences) return style;
  for (std::string_view name; !(name = consumeWord(names)).empty();) {
    if (const TtmlStyle* const found = find(styles_, name, depth)) style.take(*found);
  }
  return style;
}

}  // namespace kssubtitle::importing
