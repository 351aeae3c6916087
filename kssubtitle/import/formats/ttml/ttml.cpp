// TTML, and its profiles and predecessors: DFXP, EBU-TT-D, IMSC (W3C TTML2, IMSC 1.1; EBU Tech
// 3380).
#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/import/formats/common/language_tag.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/formats/ttml/names.h"
#include "kssubtitle/import/formats/ttml/paragraph.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

/// White space between elements counts; references are decoded when texts are written. Text before
/// all children is the value of the parent instead of a node: most elements have only that.
constexpr unsigned kParseOptions =
    pugi::parse_ws_pcdata | pugi::parse_cdata | pugi::parse_embed_pcdata;

/// The name of the element at the '<' that `text` begins with; empty if there is none.
std::string_view elementAt(std::string_view text) noexcept {
  return localName(text.substr(1, text.find_first_of("< \t\r\n/>", 1) - 1));
}

/// Whether `text` begins with a comment, a processing instruction or a document type.
bool isBeforeRoot(std::string_view text) noexcept {
  return text.starts_with("<!") || text.starts_with("<?");
}

/// Where such a construct ends; npos if it does not. A document type may contain others.
std::size_t endOfDeclaration(std::string_view text, std::size_t at) noexcept {
  const std::string_view rest = text.substr(at);
  if (rest.starts_with("<!--")) return text.find("-->", at);
  if (rest.starts_with("<?")) return text.find("?>", at);
  const std::size_t sign = text.find_first_of("[>", at);
  if (sign == text.npos || text[sign] == '>') return sign;
  return text.find('>', text.find(']', sign));
}

/// Where the next paragraph or division begins; npos if none does.
std::size_t findElement(std::string_view text, std::size_t from) noexcept {
  for (std::size_t at = text.find('<', from); at != text.npos; at = text.find('<', at + 1)) {
    const std::string_view name = elementAt(text.substr(at));
    if (name == "p" || name == "div") return at;
  }
  return text.npos;
}

/// Whether `at` is in a closing tag other than a paragraph's: when reading resumes after an error,
/// elements that began before it are closed too.
bool endsOther(std::string_view text, std::size_t at) noexcept {
  const std::size_t tag = text.rfind('<', at);
  return tag != text.npos && text.substr(tag).starts_with("</") &&
         elementAt(text.substr(tag + 1)) != "p";
}

/// A text that the XML parser parses in place, from any point on.
class XmlText {
 public:
  /// One character longer, as the XML parser overwrites the last one.
  explicit XmlText(std::string_view text)
      : size_(text.size()), characters_(std::make_unique_for_overwrite<char[]>(size_ + 1)) {
    text.copy(characters_.get(), size_);
  }

  pugi::xml_parse_result parse(std::size_t from, pugi::xml_document& document) {
    characters_[size_] = ' ';
    const auto result = document.load_buffer_inplace(characters_.get() + from, size_ + 1 - from,
                                                     kParseOptions, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
    return result;
  }
  /// The position of an element's name in the text.
  std::size_t placeOf(pugi::xml_node element) const noexcept {
    return static_cast<std::size_t>(element.name() - characters_.get());
  }

 private:
  std::size_t size_;
  std::unique_ptr<char[]> characters_;
};

class TtmlReader {
 public:
  TtmlReader(const FormatInput& input, CueSink& sink, bool isAbsolute)
      : input_(input),
        sink_(sink),
        text_(input.text.substr(input.begin)),
        xml_(text_),
        document_{{}, {}, TtmlTimeline(isAbsolute)},
        paragraphs_(document_, sink, kMostPieceBytes * text_.size()),
        lines_(text_, 0, input.firstLine) {}

  void read();
  bool suggestsAbsolute() const noexcept { return document_.timeline.suggestsAbsolute(); }

 private:
  /// How many times as large as the file the text of pieces may be.
  static constexpr std::size_t kMostPieceBytes = 4;

  std::size_t readFrom(std::size_t from);
  void readRoot(pugi::xml_node root);
  pugi::xml_node nextIn(pugi::xml_node parent, pugi::xml_node child) const noexcept;
  double readChildren(pugi::xml_node parent, const TtmlContext& context, int depth);
  double readTimed(pugi::xml_node node, std::string_view name, const TtmlContext& outer,
                   double reference, int depth);
  void noteTimes(pugi::xml_node node, const TtmlElement& element, bool isParagraph);
  double readParagraph(pugi::xml_node node, TtmlContext& context, double outerEnd);
  void listLanguages();
  void dropOtherLanguages();
  int languageOf(std::string_view name);

  const FormatInput& input_;
  CueSink& sink_;
  std::string_view text_;
  XmlText xml_;
  bool isWellFormed_ = true;  // the part that is being read
  TtmlDocument document_;
  TtmlParagraphs paragraphs_;
  // What applied around the last readable elements, for those after an error.
  TtmlContext body_;
  TtmlContext division_;
  std::vector<std::string> names_;  // of the languages of elements
  std::vector<int> languages_;      // of the cues: indices into names_
  LineNumbers lines_;
};

/// Resumes with the next paragraph after an error.
void TtmlReader::read() {
  for (std::size_t at = 0; at != text_.npos;) at = readFrom(at);
  listLanguages();
  dropOtherLanguages();
}

/// Returns where to resume; npos at the end.
std::size_t TtmlReader::readFrom(std::size_t from) {
  pugi::xml_document document;
  const pugi::xml_parse_result result = xml_.parse(from, document);
  isWellFormed_ = result;
  if (from == 0) {
    readRoot(document.document_element());
  } else {
    const bool isDivision = elementAt(text_.substr(from)) == "div";
    readChildren(document.root(), isDivision ? body_ : division_, 0);
  }
  if (result || result.status == pugi::status_no_document_element) return text_.npos;
  const std::size_t error = from + static_cast<std::size_t>(result.offset);
  const std::size_t next = findElement(text_, std::max(error, from + 1));
  if (error >= text_.size() || from == 0 || !endsOther(text_, error)) {
    sink_.notes().add(ksImportProblem::kTagUnclosed, lines_.of(std::min(error, text_.size() - 1)));
  }
  return next;
}

void TtmlReader::readRoot(pugi::xml_node root) {
  document_.rates = ttmlRatesOf(root, input_.options.frameRate);
  const TtmlElement element = readTtmlElement(root, document_.rates);
  TtmlContext context;
  context.keepsSpace = element.keepsSpace;
  context.language = languageOf(element.language);
  body_ = division_ = context;
  readChildren(root, context, 0);
}

/// What is read after `child`. An unclosed paragraph contains those after it, which are read as its
/// siblings.
pugi::xml_node TtmlReader::nextIn(pugi::xml_node parent, pugi::xml_node child) const noexcept {
  const auto isParagraph = [](pugi::xml_node node) { return localName(node.name()) == "p"; };
  if (!isWellFormed_ && isParagraph(child)) {
    if (const pugi::xml_node inner = child.find_child(isParagraph)) return inner;
  }
  pugi::xml_node next = child.next_sibling();
  while (!next && child.parent() != parent) {
    child = child.parent();
    next = child.next_sibling();
  }
  return next;
}

/// Returns when the last of them ends.
double TtmlReader::readChildren(pugi::xml_node parent, const TtmlContext& context, int depth) {
  double reference = context.time.begin;
  double last = reference;
  for (pugi::xml_node child = parent.first_child(); child; child = nextIn(parent, child)) {
    if (child.type() != pugi::node_element) continue;
    const std::string_view name = localName(child.name());
    if (name == "head") document_.styles.readHead(child);
    if (name != "p" && name != "div" && name != "body") continue;
    if (depth == kMostTtmlDepth) {
      sink_.notes().add(ksImportProblem::kUnsupported, lines_.of(xml_.placeOf(child)));
      continue;
    }
    const double end = readTimed(child, name, context, reference, depth);
    if (context.isSequential) reference = end;
    last = std::max(last, end);
  }
  return last;
}

double TtmlReader::readTimed(pugi::xml_node node, std::string_view name, const TtmlContext& outer,
                             double reference, int depth) {
  TtmlElement element = readTtmlElement(node, document_.rates);
  const bool isParagraph = name == "p";
  noteTimes(node, element, isParagraph);
  const bool isUnbounded = !isParagraph && element.isOverAtOnce();
  if (isUnbounded) element.dropEnd();
  TtmlContext context = document_.enter(element, outer, reference);
  if (isUnbounded) context.writtenTime = outer.writtenTime;
  if (!element.language.empty()) context.language = languageOf(element.language);
  if (isParagraph && element.hasBadTime) return reference;
  double end = 0;
  if (isParagraph) {
    end = readParagraph(node, context, outer.time.end);
  } else {
    (name == "body" ? body_ : division_) = context;
    end = readChildren(node, context, depth + 1);
  }
  return element.hasEnd() ? context.time.end : std::min(end, context.time.end);
}

void TtmlReader::noteTimes(pugi::xml_node node, const TtmlElement& element, bool isParagraph) {
  using enum ksImportProblem;
  const auto note = [&](ksImportProblem problem) {
    sink_.notes().add(problem, lines_.of(xml_.placeOf(node)));
  };
  if (!isParagraph && element.isOverAtOnce()) note(kContainerWithoutTime);
  if (element.hasBadTime) {
    note(isParagraph ? kTimeUnreadable : kUnsupported);
  } else if (element.hasRepairedTime) {
    note(kTimeRepaired);
  }
}

double TtmlReader::readParagraph(pugi::xml_node node, TtmlContext& context, double outerEnd) {
  const int line = lines_.of(xml_.placeOf(node));
  if (context.time.begin >= outerEnd) {
    sink_.notes().add(ksImportProblem::kOutsideParent, line);
    return context.time.begin;
  }
  context.isInParagraph = true;
  const double end = paragraphs_.write(node, context, line);
  languages_.resize(sink_.cues().size(), context.language);
  return end;
}

/// Those of cues with text, in the order of the cues.
void TtmlReader::listLanguages() {
  std::vector<bool> isListed(names_.size());
  for (const ksImportCue& cue : sink_.cues()) {
    const int language = languages_[static_cast<std::size_t>(cue.index)];
    if (cue.text.empty() || language == TtmlContext::kNoLanguage) continue;
    const auto place = static_cast<std::size_t>(language);
    if (!isListed[place]) sink_.languages().push_back(names_[place]);
    isListed[place] = true;
  }
}

/// If the requested language is listed.
void TtmlReader::dropOtherLanguages() {
  const auto isWanted = [this](std::string_view name) {
    return isLanguage(name, input_.options.language);
  };
  const std::vector<std::string>& names = sink_.languages();
  if (std::none_of(names.begin(), names.end(), isWanted)) {
    if (!input_.options.language.empty() && !names.empty()) sink_.missLanguage();
    return;
  }
  std::erase_if(sink_.cues(), [&](const ksImportCue& cue) {
    const int language = languages_[static_cast<std::size_t>(cue.index)];
    return language == TtmlContext::kNoLanguage ||
           !isWanted(names_[static_cast<std::size_t>(language)]);
  });
}

/// Its index among the names, to which it is added while they are few.
int TtmlReader::languageOf(std::string_view name) {
  constexpr std::size_t kMostLanguages = 100;
  auto found = std::find(names_.begin(), names_.end(), name);
  if (name.empty() || (found == names_.end() && names_.size() == kMostLanguages)) {
    return TtmlContext::kNoLanguage;
  }
  if (found == names_.end()) found = names_.emplace(found, name);
  return static_cast<int>(found - names_.begin());
}

Likelihood likelihoodOf(std::string_view text) noexcept {
  const bool isFirst = withoutLeadingBlanks(text).starts_with('<');
  std::size_t at = text.find('<');
  while (at != text.npos && isBeforeRoot(text.substr(at))) {
    at = std::min(endOfDeclaration(text, at), text.size());
    at = text.find('<', at);
  }
  if (at == text.npos || elementAt(text.substr(at)) != "tt") return Likelihood::kNone;
  return isFirst ? Likelihood::kCertain : Likelihood::kPossible;
}

void read(const FormatInput& input, CueSink& sink) {
  const Notes notes = sink.notes();
  TtmlReader reader(input, sink, false);
  reader.read();
  if (!reader.suggestsAbsolute()) return;
  sink.cues().clear();
  sink.notes() = notes;
  sink.languages().clear();
  TtmlReader(input, sink, true).read();
}

}  // namespace

constinit const Format kTtml = {
    .info = {.name = "ttml", .extensions = "ttml dfxp itt xml", .isSequential = false},
    .likelihood = likelihoodOf,
    .read = read,
    .longestAssumed = kUpToTheNext,
};

}  // namespace kssubtitle::importing
