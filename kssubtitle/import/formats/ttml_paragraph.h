// The paragraphs of TTML, which become cues.
#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

#include "kssubtitle/import/formats/cue_sink.h"
#include "kssubtitle/import/formats/ttml_elements.h"

namespace kssubtitle::importing {

/// Writes paragraphs. One without times inside is one cue; one with such times is a cue for each
/// span of time in which its text stays the same, as long as that is worth it.
class TtmlParagraphs {
 public:
  /// All pieces of paragraphs together may have `mostPieceBytes` of text.
  TtmlParagraphs(TtmlDocument& document, CueSink& sink, std::size_t mostPieceBytes) noexcept
      : document_(document), sink_(sink), pieceBytesLeft_(mostPieceBytes) {}

  /// Writes the paragraph that `node` is and which begins at `line`. `context` holds within it.
  /// Returns when what it holds is over; TtmlInterval::kNever if nothing says so.
  double write(pugi::xml_node node, const TtmlContext& context, int line);

 private:
  /// An element within the paragraph.
  struct Span {
    TtmlInterval time;
    Style style;
    bool keepsSpace;
    bool isFollowed;  // it does not stand too deep
    bool isShown = true;
    std::size_t next = 0;  // the first one that is not inside of it
  };

  double collectSpans(pugi::xml_node node, const TtmlContext& context, int depth);
  double collectSpan(pugi::xml_node node, const TtmlContext& outer, double reference, int depth);
  void findBoundaries(const TtmlInterval& time);
  TtmlInterval timeOfSpans(const TtmlInterval& time) const noexcept;
  void showSpans(double time) noexcept;
  void writeTimed(const TtmlInterval& time);
  void writePieces();
  void finishPiece(std::size_t firstPiece);
  void writeCue(const TtmlInterval& time);
  void writeChildren(pugi::xml_node node, const Style& style, bool keepsSpace);
  void writeSpan(pugi::xml_node node);
  void writeText(std::string_view text, bool hasReferences);
  void writeSpace();
  void writeTextAsItIs(std::string_view text, bool hasReferences);

  TtmlDocument& document_;
  CueSink& sink_;
  std::size_t pieceBytesLeft_;
  // The paragraph that is being written.
  pugi::xml_node node_;
  TtmlStyle style_;
  bool keepsSpace_ = false;
  int line_ = 0;
  std::vector<Span> spans_;  // in the order of the file
  bool hasTimes_ = false;    // elements in it have
  bool hasOwnText_ = false;  // there is text in none of them
  std::vector<double> boundaries_;
  // The cue that is being written.
  std::size_t span_ = 0;  // the next one
  bool isBehindSpace_ = true;
};

}  // namespace kssubtitle::importing
