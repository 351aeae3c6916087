// The paragraphs of TTML, which become cues.
#include "kssubtitle/import/formats/ttml_paragraph.h"

#include <algorithm>

#include "kssubtitle/import/formats/ttml_names.h"
#include "kssubtitle/import/markup/html_entities.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

constexpr std::size_t kMostBoundaries = 64;

constexpr bool isXmlSpace(char c) noexcept {
  return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

constexpr bool isLineEnd(char c) noexcept { return c == '\n' || c == '\r'; }

bool isText(pugi::xml_node_type type) noexcept {
  return type == pugi::node_pcdata || type == pugi::node_cdata;
}

bool isBlank(const char* text) noexcept {
  while (isXmlSpace(*text)) ++text;
  return *text == '\0';
}

/// Rounds to the nearest one. Requires: `time` is not negative.
long long toMilliseconds(double time) noexcept {
  constexpr double kFarthest = 1e18;
  const double bounded = std::min(time, kFarthest);
  const auto whole = static_cast<long long>(bounded);
  return bounded - static_cast<double>(whole) < 0.5 ? whole : whole + 1;
}

/// Whether the text in it is text of the paragraph. Files made from HTML have its tags too, with
/// the text behind a `<br>` that they do not close inside of it.
bool isInline(pugi::xml_node node, pugi::xml_node_type type) noexcept {
  if (type != pugi::node_element) return false;
  const std::string_view name = localName(node.name());
  return is(name, "span") || is(name, "br") || is(name, "i") || is(name, "b") || is(name, "u");
}

/// What the name of an element says of style.
void setStyleOfName(std::string_view name, TtmlStyle& style) noexcept {
  if (is(name, "i")) style.italic = style.saysAnything = true;
  if (is(name, "b")) style.bold = style.saysAnything = true;
  if (is(name, "u")) style.underline = style.saysAnything = true;
}

}  // namespace

double TtmlParagraphs::write(pugi::xml_node node, const TtmlContext& context, int line) {
  node_ = node;
  line_ = line;
  keepsSpace_ = context.keepsSpace;
  spans_.clear();
  hasTimes_ = hasOwnText_ = false;
  TtmlContext inner = context;
  inner.style = document_.styles.initial();
  if (context.region != nullptr) inner.style.take(*context.region);
  inner.style.take(context.style);
  style_ = inner.style;
  const double end = collectSpans(node, inner, 0);
  if (hasTimes_ && context.time.begin < context.time.end) {
    writeTimed(context.time);
  } else {
    writeCue(context.time);
    sink_.finish();
  }
  return end;
}

/// Returns when the last of them is over.
double TtmlParagraphs::collectSpans(pugi::xml_node node, const TtmlContext& context, int depth) {
  double reference = context.time.begin;
  double last = reference;
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    const pugi::xml_node_type type = child.type();
    if (isText(type)) {
      if (isBlank(child.value())) continue;
      last = TtmlInterval::kNever;
      hasOwnText_ = hasOwnText_ || depth == 0;
    } else if (isInline(child, type)) {
      const double end = collectSpan(child, context, reference, depth);
      if (context.isSequential) reference = end;
      last = std::max(last, end);
    }
  }
  return last;
}

double TtmlParagraphs::collectSpan(pugi::xml_node node, const TtmlContext& outer, double reference,
                                   int depth) {
  const TtmlElement element = readTtmlElement(node, document_.rates);
  TtmlContext context = document_.enter(element, outer, reference);
  setStyleOfName(localName(node.name()), context.style);
  hasTimes_ = hasTimes_ || element.hasTimes() || outer.isSequential;
  const bool isFollowed = depth < kMostTtmlDepth;
  if (element.hasBadTime || !isFollowed) sink_.notes().add(ksImportProblem::kUnsupported, line_);
  const std::size_t place = spans_.size();
  spans_.push_back({context.time, context.style.toStyle(), context.keepsSpace, isFollowed});
  const double end = isFollowed ? collectSpans(node, context, depth + 1) : TtmlInterval::kNever;
  spans_[place].next = spans_.size();
  return element.hasEnd() ? context.time.end : std::min(end, context.time.end);
}

/// Where something begins or ends within the paragraph, its own begin and end included.
void TtmlParagraphs::findBoundaries(const TtmlInterval& time) {
  boundaries_ = {time.begin, time.end};
  for (const Span& span : spans_) {
    for (const double boundary : {span.time.begin, span.time.end}) {
      if (boundary > time.begin && boundary < time.end) boundaries_.push_back(boundary);
    }
  }
  std::sort(boundaries_.begin(), boundaries_.end());
  boundaries_.erase(std::unique(boundaries_.begin(), boundaries_.end()), boundaries_.end());
}

/// From the first one to the last one, unless there is text that is in none.
TtmlInterval TtmlParagraphs::timeOfSpans(const TtmlInterval& time) const noexcept {
  if (hasOwnText_) return time;
  TtmlInterval all{TtmlInterval::kNever, time.begin};
  for (const Span& span : spans_) {
    if (span.time.begin >= std::min(span.time.end, time.end)) continue;
    all.begin = std::min(all.begin, std::max(span.time.begin, time.begin));
    all.end = std::max(all.end, std::min(span.time.end, time.end));
  }
  return all.begin < all.end ? all : time;
}

void TtmlParagraphs::showSpans(double time) noexcept {
  for (Span& span : spans_) span.isShown = span.time.begin <= time && time < span.time.end;
}

/// Where all times of a file count from its begin, those inside of paragraphs are of songs: they
/// tell when each word is sung, not that the others are to be hidden.
void TtmlParagraphs::writeTimed(const TtmlInterval& time) {
  findBoundaries(time);
  const bool isSong = document_.timeline.isAbsolute();
  if (!isSong && boundaries_.size() <= kMostBoundaries && pieceBytesLeft_ > 0) {
    return writePieces();
  }
  if (!isSong) sink_.notes().add(ksImportProblem::kUnsupported, line_);
  writeCue(timeOfSpans(time));
  sink_.finish();
}

/// Once there is too much text in pieces, what is left of the paragraph is one.
void TtmlParagraphs::writePieces() {
  const std::size_t firstPiece = sink_.cues().size();
  bool isLast = false;
  for (std::size_t i = 0; !isLast; ++i) {
    const bool isRest = pieceBytesLeft_ == 0;
    isLast = isRest || i + 2 == boundaries_.size();
    showSpans(boundaries_[i]);
    if (isRest) std::for_each(spans_.begin(), spans_.end(), [](Span& s) { s.isShown = true; });
    writeCue({boundaries_[i], isRest ? boundaries_.back() : boundaries_[i + 1]});
    finishPiece(firstPiece);
  }
  if (sink_.cues().size() == firstPiece) {
    sink_.notes().add(ksImportProblem::kCueWithoutText, line_);
  }
}

/// A piece without text is none, and one with the text of the piece before is the rest of that.
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
      before.flags = piece.flags;
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
  cue.alignment = style_.alignment();
  span_ = 0;
  isBehindSpace_ = true;
  writeChildren(node_, style_.toStyle(), keepsSpace_);
}

void TtmlParagraphs::writeChildren(pugi::xml_node node, const Style& style, bool keepsSpace) {
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    const pugi::xml_node_type type = child.type();
    if (isText(type)) {
      sink_.text().setStyle(style);
      const bool hasReferences = type == pugi::node_pcdata;
      if (keepsSpace) {
        writeTextAsItIs(child.value(), hasReferences);
      } else {
        writeText(child.value(), hasReferences);
      }
    } else if (isInline(child, type)) {
      writeSpan(child);
    }
  }
}

void TtmlParagraphs::writeSpan(pugi::xml_node node) {
  const Span& span = spans_[span_];
  if (!span.isShown) {
    span_ = span.next;
    return;
  }
  ++span_;
  if (is(localName(node.name()), "br")) {
    sink_.text().endLine();
    isBehindSpace_ = true;
  }
  if (span.isFollowed) writeChildren(node, span.style, span.keepsSpace);
}

/// White space becomes one space each.
void TtmlParagraphs::writeText(std::string_view text, bool hasReferences) {
  while (!text.empty()) {
    if (isXmlSpace(text.front())) {
      writeSpace();
      text.remove_prefix(1);
    } else if (hasReferences && text.front() == '&') {
      takeHtmlEntity(text, sink_.text());
      isBehindSpace_ = false;
    } else {
      const std::size_t length = 1 + findAnyOrBlanks<'\n', '\t', '\r', '&'>(text.substr(1));
      sink_.text().append(text.substr(0, length));
      isBehindSpace_ = text[length - 1] == ' ';
      text.remove_prefix(length);
    }
  }
}

void TtmlParagraphs::writeSpace() {
  if (!isBehindSpace_) sink_.text().append(" ");
  isBehindSpace_ = true;
}

/// White space stays, and line feeds end lines.
void TtmlParagraphs::writeTextAsItIs(std::string_view text, bool hasReferences) {
  isBehindSpace_ = false;
  while (!text.empty()) {
    if (isLineEnd(text.front())) {
      sink_.text().endLine();
      text.remove_prefix(1);
    } else if (hasReferences && text.front() == '&') {
      takeHtmlEntity(text, sink_.text());
    } else {
      const std::size_t length = 1 + findAny<'\n', '\r', '&'>(text.substr(1));
      sink_.text().append(text.substr(0, length));
      text.remove_prefix(length);
    }
  }
}

}  // namespace kssubtitle::importing
