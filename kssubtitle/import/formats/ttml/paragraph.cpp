// The paragraphs of TTML, which become cues.
#include "kssubtitle/import/formats/ttml/paragraph.h"

#include <algorithm>
#include <cmath>

#include "kssubtitle/import/formats/common/frames.h"
#include "kssubtitle/import/formats/ttml/names.h"
#include "kssubtitle/import/markup/entities.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

constexpr std::size_t kMostBoundaries = 64;

constexpr bool isXmlSpace(char c) noexcept {
  return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

constexpr bool isLineEnd(char c) noexcept { return c == '\n' || c == '\r'; }

bool isAllSpace(std::string_view text) noexcept {
  return std::all_of(text.begin(), text.end(), isXmlSpace);
}

long long toMilliseconds(double time) noexcept {
  constexpr double kFarthest = 1e18;
  return std::llround(std::min(inDoublePrecision(time), kFarthest));
}

/// Whether text in an element with that name belongs to the paragraph. Files made from HTML have
/// its tags too, in which the text after an unclosed `<br>` is inside of it.
bool isInline(std::string_view name) noexcept {
  return name == "span" || name == "br" || name == "i" || name == "b" || name == "u" ||
         name == "em" || name == "strong" || name == "font";
}

bool isWhiteSpace(const Entity& entity) noexcept {
  return entity.length > 0 && entity.first <= ' ' && isXmlSpace(static_cast<char>(entity.first));
}

/// The style that the name of an element implies.
void setStyleOfName(std::string_view name, TtmlStyle& style) noexcept {
  if (name == "i" || name == "em") style.set(TtmlStyle::kItalic, true);
  if (name == "b" || name == "strong") style.set(TtmlStyle::kBold, true);
  if (name == "u") style.set(TtmlStyle::kUnderline, true);
}

}  // namespace

double TtmlParagraphs::write(pugi::xml_node node, TtmlContext& context, int line) {
  line_ = line;
  parts_.clear();
  hasTimes_ = hasOwnText_ = false;
  if (context.region != nullptr) context.style.fillIn(*context.region);
  context.style.fillIn(document_.styles.initial());
  alignment_ = context.style.alignment();
  const double end = collect(node, context, 0);
  if (hasTimes_ && context.time.begin < context.time.end) {
    writeTimed(context.time);
  } else {
    writeCue(context.time);
    sink_.finish();
  }
  return end;
}

/// Returns when the last of them ends.
double TtmlParagraphs::collect(pugi::xml_node node, const TtmlContext& context, int depth) {
  double reference = context.time.begin;
  double last = reference;
  const auto addText = [&](std::string_view text, bool hasReferences) {
    if (collectText(text, hasReferences, context, depth)) last = TtmlInterval::kNever;
  };
  // The XML parser stores text before all children in the parent.
  addText(node.value(), true);
  for (const pugi::xml_node child : node) {
    if (child.type() != pugi::node_element) {
      addText(child.value(), child.type() == pugi::node_pcdata);
    } else if (const std::string_view name = localName(child.name()); isInline(name)) {
      const double end = collectElement(child, name, context, reference, depth);
      if (context.isSequential) reference = end;
      last = std::max(last, end);
    }
  }
  return last;
}

/// Whether it is shown, being more than white space.
bool TtmlParagraphs::collectText(std::string_view text, bool hasReferences,
                                 const TtmlContext& context, int depth) {
  const bool isSpace = isAllSpace(text);
  if (text.empty() || (context.isInstant && !isSpace)) return false;
  Part& part = parts_.emplace_back();
  part.text = isSpace && !context.keepsSpace ? " " : text;
  if (sink_.text().isHtml()) part.style = context.style.toStyle();
  part.keepsSpace = context.keepsSpace;
  part.hasReferences = hasReferences;
  hasOwnText_ = hasOwnText_ || (!isSpace && depth == 0);
  return !isSpace;
}

double TtmlParagraphs::collectElement(pugi::xml_node node, std::string_view name,
                                      const TtmlContext& outer, double reference, int depth) {
  const TtmlElement element = readTtmlElement(node, document_.rates);
  TtmlContext context = document_.enter(element, outer, reference);
  setStyleOfName(name, context.style);
  hasTimes_ = hasTimes_ || element.hasTimes() || outer.isSequential;
  const bool isFollowed = depth < kMostTtmlDepth;
  if (element.hasBadTime || !isFollowed) sink_.notes().add(ksImportProblem::kUnsupported, line_);
  if (element.isOwnLine) addLineEnd(context.time);
  const std::size_t place = parts_.size();
  Part& part = parts_.emplace_back();
  part.endsLine = name == "br";
  part.time = context.time;
  const double end = isFollowed ? collect(node, context, depth + 1) : TtmlInterval::kNever;
  parts_[place].next = parts_.size();
  if (element.isOwnLine) addLineEnd(context.time);
  return element.hasEnd() ? context.time.end : std::min(end, context.time.end);
}

void TtmlParagraphs::addLineEnd(const TtmlInterval& time) {
  Part& part = parts_.emplace_back();
  part.endsLine = true;
  part.time = time;
  part.next = parts_.size();
}

/// Where something in the paragraph begins or ends, including the paragraph itself.
void TtmlParagraphs::findBoundaries(const TtmlInterval& time) {
  boundaries_ = {time.begin, time.end};
  for (const Part& part : parts_) {
    if (!part.text.empty()) continue;
    for (const double boundary : {part.time.begin, part.time.end}) {
      if (boundary > time.begin && boundary < time.end) boundaries_.push_back(boundary);
    }
  }
  std::sort(boundaries_.begin(), boundaries_.end());
  boundaries_.erase(std::unique(boundaries_.begin(), boundaries_.end()), boundaries_.end());
}

/// From the first to the last, unless there is text outside of them, or a word of a song is outside
/// of the paragraph.
TtmlInterval TtmlParagraphs::timeOfElements(const TtmlInterval& time) const noexcept {
  if (hasOwnText_) return time;
  TtmlInterval all{TtmlInterval::kNever, time.begin};
  for (const Part& part : parts_) {
    if (!part.text.empty()) continue;
    if (part.time.begin >= std::min(part.time.end, time.end)) {
      if (document_.timeline.isAbsolute()) return time;
      continue;
    }
    all.begin = std::min(all.begin, std::max(part.time.begin, time.begin));
    all.end = std::max(all.end, std::min(part.time.end, time.end));
  }
  return all.begin < all.end ? all : time;
}

void TtmlParagraphs::showParts(double time) noexcept {
  for (Part& part : parts_) part.isShown = !part.text.empty() || part.time.holds(time);
}

/// In files whose times count from their beginning, times within paragraphs are those of lyrics:
/// they say when a word is sung, not that the others are hidden.
void TtmlParagraphs::writeTimed(const TtmlInterval& time) {
  findBoundaries(time);
  const bool isSong = document_.timeline.isAbsolute();
  if (!isSong && boundaries_.size() <= kMostBoundaries && pieceBytesLeft_ > 0) {
    return writePieces();
  }
  if (!isSong) sink_.notes().add(ksImportProblem::kUnsupported, line_);
  writeCue(timeOfElements(time));
  sink_.finish();
}

/// Once the pieces have too much text, the rest of the paragraph becomes one.
void TtmlParagraphs::writePieces() {
  const std::size_t firstPiece = sink_.cues().size();
  bool isLast = false;
  for (std::size_t i = 0; !isLast; ++i) {
    const bool isRest = pieceBytesLeft_ == 0;
    isLast = isRest || i + 2 == boundaries_.size();
    showParts(boundaries_[i]);
    if (isRest) std::for_each(parts_.begin(), parts_.end(), [](Part& p) { p.isShown = true; });
    writeCue({boundaries_[i], isRest ? boundaries_.back() : boundaries_[i + 1]});
    finishPiece(firstPiece);
  }
  if (sink_.cues().size() == firstPiece) {
    sink_.notes().add(ksImportProblem::kCueWithoutText, line_);
  }
}

/// Drops a piece without text, and merges one with the same text as the previous piece.
void TtmlParagraphs::finishPiece(std::size_t firstPiece) {
  sink_.finishOrMark();
  std::vector<ksImportCue>& cues = sink_.cues();
  const ksImportCue& piece = cues.back();
  pieceBytesLeft_ -= std::min(pieceBytesLeft_, piece.text.size());
  bool isOver = piece.text.empty();
  if (cues.size() > firstPiece + 1) {
    ksImportCue& before = cues[cues.size() - 2];
    const bool goesOn = before.end == piece.start && before.text == piece.text;
    if (goesOn) {
      before.end = piece.end;
      before.isEndAssumed = piece.isEndAssumed;
    }
    isOver = isOver || goesOn;
  }
  if (isOver) cues.pop_back();
}

void TtmlParagraphs::writeCue(const TtmlInterval& time) {
  const long long start = toMilliseconds(time.begin);
  ksImportCue& cue = time.end == TtmlInterval::kNever
                         ? sink_.beginWithoutEnd(start, line_)
                         : sink_.begin(start, toMilliseconds(time.end), line_);
  cue.alignment = alignment_;
  isAfterSpace_ = true;
  writeShownParts();
}

void TtmlParagraphs::writeShownParts() {
  for (std::size_t i = 0; i < parts_.size();) {
    const Part& part = parts_[i];
    if (!part.isShown) {
      i = part.next;
      continue;
    }
    ++i;
    if (!part.text.empty()) {
      writeText(part);
    } else if (part.endsLine) {
      sink_.text().endLine();
      isAfterSpace_ = true;
    }
  }
}

void TtmlParagraphs::writeText(const Part& part) {
  sink_.text().setStyle(part.style);
  if (part.keepsSpace) {
    writeTextAsItIs(part.text, part.hasReferences);
  } else {
    writeTextWithSpaces(part.text, part.hasReferences);
  }
}

/// Collapses white space, including that of references, to single spaces.
void TtmlParagraphs::writeTextWithSpaces(std::string_view text, bool hasReferences) {
  while (!text.empty()) {
    if (isXmlSpace(text.front())) {
      writeSpace();
      text.remove_prefix(1);
    } else if (hasReferences && text.front() == '&') {
      writeReference(text);
    } else {
      const std::size_t length = 1 + findAnyOrBlanks<'\n', '\t', '\r', '&'>(text.substr(1));
      sink_.text().append(text.substr(0, length));
      isAfterSpace_ = text[length - 1] == ' ';
      text.remove_prefix(length);
    }
  }
}

void TtmlParagraphs::writeReference(std::string_view& text) {
  const Entity entity = htmlEntityOf(text);
  if (isWhiteSpace(entity)) {
    writeSpace();
    return text.remove_prefix(entity.length);
  }
  consumeHtmlEntity(text, sink_.text());
  isAfterSpace_ = false;
}

void TtmlParagraphs::writeSpace() {
  if (!isAfterSpace_) sink_.text().append(" ");
  isAfterSpace_ = true;
}

/// Preserves white space; line feeds end lines.
void TtmlParagraphs::writeTextAsItIs(std::string_view text, bool hasReferences) {
  isAfterSpace_ = isXmlSpace(text.back());
  while (!text.empty()) {
    if (isLineEnd(text.front())) {
      sink_.text().endLine();
      text.remove_prefix(1);
    } else if (hasReferences && text.front() == '&') {
      consumeHtmlEntity(text, sink_.text(), LineReference::kLineEnd);
    } else {
      const std::size_t length = 1 + findAny<'\n', '\r', '&'>(text.substr(1));
      sink_.text().append(text.substr(0, length));
      text.remove_prefix(length);
    }
  }
}

}  // namespace kssubtitle::importing
