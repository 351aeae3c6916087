// SAMI: tags like those of HTML, of which SYNC says from when on the paragraphs behind it are
// shown.
#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "kssubtitle/import/formats/numbers.h"
#include "kssubtitle/import/formats/readers.h"
#include "kssubtitle/import/formats/sami_classes.h"
#include "kssubtitle/import/formats/times.h"
#include "kssubtitle/import/markup/loose_tags.h"
#include "kssubtitle/import/markup/sami_text.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

/// A time of a SYNC, in milliseconds; some write it as a clock shows it.
std::optional<long long> timeOf(const LooseTag& sync, std::string_view key) noexcept {
  std::string_view value = sync.attribute(key);
  if (const auto time = takeTime(value)) return time->milliseconds;
  return takeInteger(value);
}

struct Paragraph {
  long long start = 0;
  long long end = kNever;        // at first what the SYNC says, as few do
  SamiClass* ofClass = nullptr;  // null: it belongs to all
  std::string_view text;
  int sync = 0;  // behind which one it stands
  int line = 0;  // of the SYNC
};

/// Finds the paragraphs of a file, and the classes that its style sheets declare.
class Scanner {
 public:
  Scanner(const FormatInput& input, Notes& notes)
      : text_(input.text), notes_(notes), countedTo_(input.begin), line_(input.firstLine) {}

  void scan() {
    std::size_t seen = countedTo_;
    for (std::size_t at = seen; (at = text_.find('<', at)) != text_.npos;) {
      const LooseTag tag = tagAt(at);
      if (tag.length == 0) {
        ++at;
        continue;
      }
      passText(seen, at);
      takeTag(tag, at);
      at = seen = at + tag.length;
    }
    passText(seen, text_.size());
    finish(text_.size());
  }

  std::vector<Paragraph>& paragraphs() noexcept { return paragraphs_; }
  const SamiClasses& classes() const noexcept { return classes_; }

 private:
  enum class Place {
    kOutside,
    kSheet,
    kSync,       ///< Behind a SYNC, in front of its first paragraph.
    kParagraph,  ///< In a paragraph, or in text behind a SYNC that stands in none.
  };

  /// In a style sheet the signs of comments mean nothing.
  LooseTag tagAt(std::size_t at) noexcept {
    const std::string_view rest = text_.substr(at);
    const bool isComment = rest.starts_with("<!") || rest.starts_with("<-");
    return place_ == Place::kSheet && isComment ? LooseTag() : tags_.at(rest);
  }

  void passText(std::size_t begin, std::size_t end) noexcept {
    const bool isInFront = place_ == Place::kSync;
    if (isInFront && !std::all_of(text_.begin() + begin, text_.begin() + end, isHtmlSpace)) {
      place_ = Place::kParagraph;
    }
  }

  void takeTag(const LooseTag& tag, std::size_t begin) {
    const std::size_t end = begin + tag.length;
    if (place_ == Place::kSheet && !tag.name.empty()) finish(begin);
    if (tag.opens("style")) {
      finish(begin);
      place_ = Place::kSheet;
      begin_ = end;
    } else if (tag.opens("sync")) {
      finish(begin);
      beginSync(tag, begin, end);
    } else if (tag.opens("p")) {
      beginParagraph(tag, begin, end);
    } else if (tag.closes("body") || tag.closes("sami")) {
      finish(begin);
    }
  }

  void beginSync(const LooseTag& tag, std::size_t begin, std::size_t end) {
    line_ += countLines(text_.substr(countedTo_, begin - countedTo_));
    countedTo_ = begin;
    const auto start = timeOf(tag, "start");
    if (!start) return notes_.add(ksImportProblem::kTimeUnreadable, line_);
    place_ = Place::kSync;
    begin_ = end;
    const long long saidEnd = timeOf(tag, "end").value_or(kNever);
    next_ = {*start, saidEnd, nullptr, {}, next_.sync + 1, line_};
  }

  void beginParagraph(const LooseTag& tag, std::size_t begin, std::size_t end) {
    if (place_ == Place::kOutside) return;
    if (place_ == Place::kParagraph) finish(begin);
    next_.ofClass = classes_.use(tag.attribute("class"));
    place_ = Place::kParagraph;
    begin_ = end;
  }

  /// Ends what is open. A SYNC that nothing follows ends what is shown.
  void finish(std::size_t end) {
    const std::string_view text = text_.substr(begin_, end - begin_);
    if (place_ == Place::kSheet) classes_.declare(text);
    if (place_ == Place::kSync || place_ == Place::kParagraph) {
      next_.text = place_ == Place::kParagraph ? text : std::string_view();
      paragraphs_.push_back(next_);
    }
    place_ = Place::kOutside;
  }

  std::string_view text_;
  Notes& notes_;
  LooseTags tags_;
  SamiClasses classes_;
  std::vector<Paragraph> paragraphs_;
  Paragraph next_;
  Place place_ = Place::kOutside;
  std::size_t begin_ = 0;  // of the text of the place
  std::size_t countedTo_;
  int line_;  // there
};

/// Whether a paragraph of `ofClass` is none of `language`'s: undeclared classes are taken for
/// languages only if `language` is one of them.
bool isOther(const SamiClass& ofClass, const SamiClass& language) noexcept {
  using Kind = SamiClass::Kind;
  if (&ofClass == &language || ofClass.kind == Kind::kStyle) return false;
  return ofClass.kind == Kind::kLanguage || language.kind == Kind::kUndeclared;
}

/// Keeps the paragraphs of one language, and those of classes that are none, which then belong to
/// all as those without a class do.
void select(const SamiClass& language, std::vector<Paragraph>& paragraphs) {
  std::erase_if(paragraphs, [&language](const Paragraph& paragraph) {
    return paragraph.ofClass != nullptr && isOther(*paragraph.ofClass, language);
  });
  for (Paragraph& paragraph : paragraphs) paragraph.ofClass = nullptr;
}

/// A paragraph ends where its SYNC says or, if that is earlier, the next one of its class begins,
/// or one that belongs to all; if there is none, where any begins.
class Ends {
 public:
  /// Sets those of the paragraphs, which begin at one time. Requires: the later ones are done.
  void set(std::vector<Paragraph*>::iterator begin, std::vector<Paragraph*>::iterator end) {
    std::for_each(begin, end, [this](Paragraph* paragraph) {
      const SamiClass* const ofClass = paragraph->ofClass;
      const long long next = ofClass != nullptr ? std::min(ofClass->next, nextOfAll_) : nextOfAny_;
      paragraph->end = std::min(paragraph->end, next == kNever ? nextOfAny_ : next);
    });
    std::for_each(begin, end, [this](Paragraph* paragraph) {
      (paragraph->ofClass != nullptr ? paragraph->ofClass->next : nextOfAll_) = paragraph->start;
      nextOfAny_ = paragraph->start;
    });
  }

 private:
  long long nextOfAll_ = kNever;
  long long nextOfAny_ = kNever;
};

void setEnds(std::vector<Paragraph>& paragraphs) {
  std::vector<Paragraph*> byTime;
  byTime.reserve(paragraphs.size());
  for (Paragraph& paragraph : paragraphs) byTime.push_back(&paragraph);
  const auto isBefore = [](const Paragraph* a, const Paragraph* b) { return a->start < b->start; };
  if (!std::is_sorted(byTime.begin(), byTime.end(), isBefore)) {
    std::sort(byTime.begin(), byTime.end(), isBefore);
  }
  Ends ends;
  for (auto end = byTime.end(); end != byTime.begin();) {
    auto begin = end - 1;
    while (begin != byTime.begin() && (*(begin - 1))->start == (*begin)->start) --begin;
    ends.set(begin, end);
    end = begin;
  }
}

void writeCues(const std::vector<Paragraph>& paragraphs, CueSink& sink) {
  for (auto at = paragraphs.begin(); at != paragraphs.end();) {
    const Paragraph& first = *at;
    if (first.end == kNever) {
      sink.beginWithoutEnd(first.start, first.line);
    } else {
      sink.begin(first.start, first.end, first.line);
    }
    bool isClosed = true;
    for (; at != paragraphs.end() && at->sync == first.sync && at->end == first.end; ++at) {
      isClosed = writeSamiText(at->text, sink.text()) && isClosed;
    }
    if (!isClosed) sink.notes().add(ksImportProblem::kTagUnclosed, first.line);
    sink.finishOrMark();
  }
}

/// Whether a line is a time and an arrow, as other formats have them above texts of any kind.
bool isTimeLine(std::string_view line) noexcept {
  return takeTime(line) && withoutLeadingBlanks(line).starts_with("-->");
}

/// Whether `text` begins with the root element, behind comments and declarations.
bool hasRoot(std::string_view text) noexcept {
  LooseTags tags;
  while (!text.empty()) {
    const auto* const begin = std::find_if_not(text.begin(), text.end(), isHtmlSpace);
    text.remove_prefix(static_cast<std::size_t>(begin - text.begin()));
    if (!text.starts_with('<')) return false;
    const LooseTag tag = tags.at(text);
    if (!tag.name.empty() || tag.length == 0) return tag.opens("sami");
    text.remove_prefix(tag.length);
  }
  return false;
}

}  // namespace

Likelihood likelihoodOfSami(std::string_view text) {
  if (hasRoot(text)) return Likelihood::kCertain;
  Line line;
  for (Lines lines(text); lines.next(line);) {
    if (isTimeLine(line.text)) return Likelihood::kNone;
    const std::size_t sync = findNoCase(line.text, "<sync");
    if (sync == line.text.npos) continue;
    const LooseTag tag = LooseTags().at(text.substr(line.begin + sync));
    if (tag.opens("sync") && timeOf(tag, "start")) return Likelihood::kLikely;
  }
  return Likelihood::kNone;
}

void readSami(const FormatInput& input, CueSink& sink) {
  Scanner scanner(input, sink.notes());
  scanner.scan();
  for (const std::string_view language : scanner.classes().languages()) {
    input.languages.emplace_back(language);
  }
  std::vector<Paragraph>& paragraphs = scanner.paragraphs();
  const SamiClass* const language = scanner.classes().select(input.options.language);
  if (language != nullptr) select(*language, paragraphs);
  setEnds(paragraphs);
  writeCues(paragraphs, sink);
}

}  // namespace kssubtitle::importing
