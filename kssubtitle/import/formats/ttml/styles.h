// Styles and regions of TTML.
#pragma once

#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string_view>

#include "kssubtitle/import/markup/style.h"

namespace kssubtitle::importing {

/// The style that an element specifies; everything else is inherited.
class TtmlStyle {
 public:
  /// Properties that are on or off.
  enum Switch : unsigned { kItalic = 1, kBold = 2, kUnderline = 4, kStrikeOut = 8 };

  /// Applies an attribute, if it is about style.
  void set(std::string_view name, std::string_view value) noexcept;
  void set(Switch property, bool isOn) noexcept {
    said_ |= property;
    switches_ = isOn ? switches_ | property : switches_ & ~property;
  }
  /// Copies everything that `other` specifies.
  void take(const TtmlStyle& other) noexcept { take(other, other.said_); }
  /// Copies what `other` specifies and this does not.
  void fillIn(const TtmlStyle& other) noexcept { take(other, other.said_ & ~said_); }
  Style toStyle() const noexcept {
    return {isOn(kItalic), isOn(kBold), isOn(kUnderline), isOn(kStrikeOut), colour_};
  }
  /// 1 to 9 as on a numeric keypad.
  int alignment() const noexcept;

 private:
  enum Value : unsigned { kColour = 16, kColumn = 32, kTop = 64, kHeight = 128, kAnchor = 256 };

  void take(const TtmlStyle& other, unsigned properties) noexcept {
    if (properties == 0) return;
    said_ |= properties;
    switches_ = (switches_ & ~properties) | (other.switches_ & properties);
    if ((properties & kColour) != 0) colour_ = other.colour_;
    if ((properties & kColumn) != 0) column_ = other.column_;
    if ((properties & (kTop | kHeight | kAnchor)) == 0) return;
    if ((properties & kTop) != 0) top_ = other.top_;
    if ((properties & kHeight) != 0) height_ = other.height_;
    if ((properties & kAnchor) != 0) anchor_ = other.anchor_;
  }
  bool says(unsigned properties) const noexcept { return (said_ & properties) != 0; }
  bool isOn(Switch property) const noexcept { return (switches_ & property) != 0; }
  template <typename T>
  void setIfSaid(Value property, T& to, const std::optional<T>& value) noexcept {
    if (!value) return;
    said_ |= property;
    to = *value;
  }
  void setDecoration(std::string_view value) noexcept;

  // Unspecified properties have their initial values.
  unsigned said_ = 0;
  unsigned switches_ = 0;
  int colour_ = Style::kNoColour;
  int column_ = 2;  // 1 to 3 from the left
  // Of a region, as fractions of the picture's height.
  double top_ = 0;
  double height_ = 1;
  double anchor_ = 0;  // where in the region its text is: 0 at the top, 1 at the bottom
};

/// The styles and regions that the head of a document defines. Names refer to the document's
/// characters, which must outlive them; its nodes need not.
class TtmlStyles {
 public:
  /// Reads the first head that is not empty; a document has one.
  void readHead(pugi::xml_node head);
  /// The combined styles with these names; later ones win.
  TtmlStyle named(std::string_view names) { return named(names, 0); }
  /// What a region applies to its contents; null if no region has the name.
  const TtmlStyle* region(std::string_view name) { return find(regions_, name, 0); }
  /// The initial style.
  const TtmlStyle& initial() const noexcept { return initial_; }

 private:
  struct Definition {
    pugi::xml_node node;
    TtmlStyle style;
    bool isResolved = false;
  };
  // Not a hash table: a file could choose names that collide.
  using Definitions = std::map<std::string_view, Definition>;

  static void add(Definitions& definitions, pugi::xml_node node);
  const TtmlStyle* find(Definitions& definitions, std::string_view name, int depth);
  TtmlStyle resolve(pugi::xml_node node, int depth);
  TtmlStyle named(std::string_view names, int depth);

  Definitions styles_;
  Definitions regions_;
  TtmlStyle initial_;
  bool hasHead_ = false;
};

}  // namespace kssubtitle::importing
