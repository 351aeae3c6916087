// The style that texts keep: a small fixed set, whatever the format.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace kssubtitle::importing {

/// What a run of text looks like.
struct Style {
  static constexpr int kNoColour = -1;

  bool italic = false;
  bool bold = false;
  bool underline = false;
  bool strikeOut = false;
  int colour = kNoColour;  ///< 0xRRGGBB.

  bool operator==(const Style&) const = default;
};

/// The tags that set it.
enum class StyleTag { kItalic, kBold, kUnderline, kStrikeOut, kFont };

/// The style that results from tags opened and closed in any order: a closing tag ends the last
/// open one of its name, and is ignored if there is none.
class TagStyle {
 public:
  /// Opens or closes `tag`, which has these attributes. A font without a colour keeps the one
  /// around it.
  void apply(StyleTag tag, bool isClosing, std::string_view attributes);
  void closeAll() noexcept;
  bool isAnyOpen() const noexcept;
  Style style() const noexcept;

 private:
  void close(StyleTag tag) noexcept;

  static constexpr std::size_t kSwitches = 4;
  std::size_t open_[kSwitches] = {};  // how many, by tag
  std::vector<int> colours_;          // of the open font tags
};

/// The tag of that name in any case: i, b, u, s, font, and those of HTML that mean the same.
std::optional<StyleTag> styleTagNamed(std::string_view name) noexcept;

}  // namespace kssubtitle::importing
