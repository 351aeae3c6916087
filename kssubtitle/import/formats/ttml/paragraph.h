// The paragraphs of TTML, which become cues.
#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

#include "kssubtitle/import/formats/common/cue_sink.h"
#include "kssubtitle/import/formats/ttml/timing.h"

namespace kssubtitle::importing {

/// Writes paragraphs. A paragraph without timed parts becomes one cue; with timed parts it becomes
/// a cue for each span in which its text stays the same, up to a limit.
class TtmlParagraphs {
 public:
  /// All pieces of paragraphs together may have `mostPieceBytes` of text.
  TtmlParagraphs(TtmlDocument& document, CueSink& sink, std::size_t mostPieceBytes) noexcept
      : document_(document), sink_(sink), pieceBytesLeft_(mostPieceBytes) {}

  /// Writes the paragraph `node`, which begins at `line`. `context` applies within it, and is
  /// completed by the style of its region. Returns when its contents end; TtmlInterval::kNever if
  /// nothing says so.
  double write(pugi::xml_node node, TtmlContext& context, int line);

 private:
  /// A text, an element or a line end within the paragraph.
  struct Part {
    std::string_view text;  // empty for an element
    // Of a text.
    Style style;
    bool keepsSpace;
    bool hasReferences;
    // Of an element.
    bool endsLine;
    bool isShown = true;
    TtmlInterval time;
    std::size_t next;  // the first one outside of it
  };

  double collect(pugi::xml_node node, const TtmlContext& context, int depth);
  double collectElement(pugi::xml_node node, std::string_view name, const TtmlContext& outer,
                        double reference, int depth);
  bool collectText(std::string_view text, bool hasReferences, const TtmlContext& context,
                   int depth);
  void findBoundaries(const TtmlInterval& time);
  void addLineEnd(const TtmlInterval& time);
  TtmlInterval timeOfElements(const TtmlInterval& time) const noexcept;
  void showParts(double time) noexcept;
  void writeTimed(const TtmlInterval& time);
  void writePieces();
  void finishPiece(std::size_t firstPiece);
  void writeCue(const TtmlInterval& time);
  void writeShownParts();
  void writeText(const Part& part);
  void writeTextWithSpaces(std::string_view text, bool hasReferences);
  void writeReference(std::string_view& text);
  void writeSpace();
  void writeTextAsItIs(std::string_view text, bool hasReferences);

  TtmlDocument& document_;
  CueSink& sink_;
  std::size_t pieceBytesLeft_;
  // The current paragraph.
  int alignment_ = 0;
  int line_ = 0;
  std::vector<Part> parts_;  // in document order
  bool hasTimes_ = false;    // its elements have
  bool hasOwnText_ = false;  // there is text outside of them
  std::vector<double> boundaries_;
  bool isAfterSpace_ = true;  // in the current cue
};

}  // namespace kssubtitle::importing
