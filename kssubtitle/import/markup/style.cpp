// Styles that tags set.
#include "kssubtitle/import/markup/style.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "kssubtitle/import/markup/colours.h"
#include "kssubtitle/import/markup/loose_tags.h"
#include "kssubtitle/import/text/ascii.h"

namespace kssubtitle::importing {

void TagStyle::apply(StyleTag tag, bool isClosing, std::string_view attributes) {
  if (isClosing) return close(tag);
  if (tag == StyleTag::kFont) {
    const auto colour = colourOf(attributeOf(attributes, "color"));
    colours_.push_back(colour.value_or(style().colour));
  } else {
    ++open_[static_cast<std::size_t>(tag)];
  }
}

void TagStyle::close(StyleTag tag) noexcept {
  if (tag == StyleTag::kFont) {
    if (!colours_.empty()) colours_.pop_back();
  } else if (std::size_t& open = open_[static_cast<std::size_t>(tag)]; open > 0) {
    --open;
  }
}

void TagStyle::closeAll() noexcept {
  std::fill(std::begin(open_), std::end(open_), 0);
  colours_.clear();
}

bool TagStyle::isAnyOpen() const noexcept {
  return !colours_.empty() ||
         std::any_of(std::begin(open_), std::end(open_), [](std::size_t open) { return open > 0; });
}

Style TagStyle::style() const noexcept {
  const auto isOpen = [this](StyleTag tag) { return open_[static_cast<std::size_t>(tag)] > 0; };
  return {isOpen(StyleTag::kItalic), isOpen(StyleTag::kBold), isOpen(StyleTag::kUnderline),
          isOpen(StyleTag::kStrikeOut), colours_.empty() ? Style::kNoColour : colours_.back()};
}

std::optional<StyleTag> styleTagNamed(std::string_view name) noexcept {
  constexpr std::pair<std::string_view, StyleTag> kNames[] = {
      {"i", StyleTag::kItalic},    {"b", StyleTag::kBold},           {"u", StyleTag::kUnderline},
      {"s", StyleTag::kStrikeOut}, {"font", StyleTag::kFont},        {"em", StyleTag::kItalic},
      {"strong", StyleTag::kBold}, {"strike", StyleTag::kStrikeOut}, {"del", StyleTag::kStrikeOut},
  };
  for (const auto& [known, tag] : kNames) {
    if (equalNoCase(known, name)) return tag;
  }
  return std::nullopt;
}

}  // namespace kssubtitle::importing
