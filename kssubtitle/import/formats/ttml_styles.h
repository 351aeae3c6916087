// Styles and regions of TTML.
#pragma once

#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string_view>

#include "kssubtitle/import/markup/style.h"

namespace kssubtitle::importing {

/// What an element says of style; what it does not say is as round it.
struct TtmlStyle {
  bool saysAnything = false;
  std::optional<bool> italic;
  std::optional<bool> bold;
  std::optional<bool> underline;
  std::optional<bool> strikeOut;
  std::optional<int> colour;
  std::optional<int> column;  ///< 1 to 3 from the left.
  // Of a region, in parts of the picture's height.
  std::optional<double> top;
  std::optional<double> height;
  std::optional<double> anchor;  ///< Where in the region its text stands: 0 at its top, 1 below.

  /// Takes note of an attribute, if it is one of style.
  void set(std::string_view name, std::string_view value) noexcept;
  /// Takes over all that `other` says.
  void take(const TtmlStyle& other) noexcept {
    if (other.saysAnything) takeWhatIsSaid(other);
  }
  Style toStyle() const noexcept;
  /// 1 to 9 as on a number pad.
  int alignment() const noexcept;

 private:
  void takeWhatIsSaid(const TtmlStyle& other) noexcept;
};

/// The styles and regions that the head of a document defines. Their names are those in the
/// document's characters, which must outlive it; its nodes are not needed any more afterwards.
class TtmlStyles {
 public:
  /// Reads the first head that holds anything; a document has one.
  void readHead(pugi::xml_node head);
  /// What the styles of these names say together; what a later one says counts.
  const TtmlStyle& named(std::string_view names);
  /// What a region hands on to what stands in it; null if there is none of that name.
  const TtmlStyle* region(std::string_view name);
  /// What holds where nobody says anything.
  const TtmlStyle& initial() const noexcept { return initial_; }

 private:
  struct Definition {
    pugi::xml_node node;
    TtmlStyle style;
    bool isResolved = false;
  };
  // A file may choose names that hashes do not tell apart.
  using Definitions = std::map<std::string_view, Definition>;

  static void add(Definitions& definitions, pugi::xml_node node);
  const TtmlStyle* find(Definitions& definitions, std::string_view name, int depth);
  TtmlStyle resolve(pugi::xml_node node, int depth);
  TtmlStyle named(std::string_view names, int depth);

  Definitions styles_;
  Definitions regions_;
  TtmlStyle initial_;
  bool hasHead_ = false;
  // What was asked for last: one paragraph after the other asks for the same.
  std::string_view lastNames_;
  TtmlStyle lastNamed_;
  std::string_view lastRegionName_;
  const TtmlStyle* lastRegion_ = nullptr;
};

}  // namespace kssubtitle::importing
