// SAMI: tags like those of HTML, of which SYNC says when the paragraphs after it are shown.
#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "kssubtitle/import/formats/common/numbers.h"
#include "kssubtitle/import/formats/common/times.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/formats/sami/classes.h"
#include "kssubtitle/import/markup/loose_tags.h"
#include "kssubtitle/import/markup/sami_text.h"
#include "kssubtitle/import/text/lines.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

/// A time of a SYNC, in milliseconds; some are written as clock times.
std::optional<long long> timeOf(std::string_view value) noexcept {
  if (const auto time = consumeTime(value)) return time->milliseconds;
  return consumeInteger(value);
}

struct Paragraph {
  long long start = 0;
  long long end = kNever;        // initially what the SYNC says
  SamiClass* ofClass = nullptr;  // null: it belongs to all
  std::string_view text;
  std::size_t sync = 0;  // the position of the SYNC
};

/// Finds the paragraphs of a file, and the classes that its style sheets declare.
class Scanner {
 public:
  Scanner(const FormatInput& input, Notes& notes)
      : text_(input.text),
        begin_(input.begin),
        notes_(notes),
        lines_(input.text, input.begin, input.firstLine) {
    paragraphs_.reserve(text_.size() / sizeof(Paragraph));  // few are shorter in a file
  }

  void scan() {
    std::size_t seen = begin_;
    for (std::size_t at = seen; at < text_.size();) {
      at += findAny<'<'>(text_.substr(at));
      const std::size_t length = at < text_.size() ? readTag(seen, at) : 0;
      at += std::max<std::size_t>(length, 1);
      if (length > 0) seen = at;
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
    kSync,       ///< After a SYNC, before its first paragraph.
    kParagraph,  ///< In a paragraph, or in text after a SYNC outside of one.
  };

  void passText(std::size_t begin, std::size_t end) noexcept {
    const bool isBeforeParagraph = place_ == Place::kSync;
    if (isBeforeParagraph && !std::all_of(text_.begin() + begin, text_.begin() + end, isSpace)) {
      place_ = Place::kParagraph;
    }
  }

  /// Reads the tag at `begin`, and the text before it from `seen` on. Returns the length of the
  /// tag; 0 if it is text.
  std::size_t readTag(std::size_t seen, std::size_t begin) {
    const LooseTag tag = tagAt(begin);
    if (tag.length == 0) return 0;
    const std::size_t end = begin + tag.length;
    passText(seen, begin);
    if (place_ == Place::kSheet && !tag.name.empty()) finish(begin);
    if (tag.opens("p")) {
      if (beginParagraph(begin, end)) {
        paragraphs_.back().ofClass = classes_.use(tag.attribute("class"));
      }
    } else if (tag.opens("sync")) {
      const long long saidEnd = timeOf(tag.attribute("end")).value_or(kNever);
      beginSync(timeOf(tag.attribute("start")), saidEnd, begin, end);
    } else if (tag.opens("style")) {
      finish(begin);
      place_ = Place::kSheet;
      begin_ = end;
    } else if (tag.closes("body") || tag.closes("sami")) {
      finish(begin);
    }
    return tag.length;
  }

  /// Comment delimiters have no meaning in a style sheet.
  LooseTag tagAt(std::size_t at) noexcept {
    const std::string_view rest = text_.substr(at);
    const bool isComment = rest.starts_with("<!") || rest.starts_with("<-");
    return place_ == Place::kSheet && isComment ? LooseTag() : tags_.at(rest);
  }

  void beginSync(std::optional<long long> start, long long saidEnd, std::size_t begin,
                 std::size_t end) {
    finish(begin);
    if (!start) return notes_.add(ksImportProblem::kTimeUnreadable, lines_.of(begin));
    place_ = Place::kSync;
    begin_ = end;
    paragraphs_.push_back({*start, saidEnd, nullptr, {}, begin});
  }

  /// Returns false if no SYNC precedes it.
  bool beginParagraph(std::size_t begin, std::size_t end) {
    const bool isNext = place_ == Place::kParagraph;
    if (place_ != Place::kSync) finish(begin);
    if (place_ != Place::kSync && !isNext) return false;
    if (isNext) paragraphs_.push_back(paragraphs_.back());
    place_ = Place::kParagraph;
    begin_ = end;
    return true;
  }

  /// Ends what is open.
  void finish(std::size_t end) {
    const std::string_view text = text_.substr(begin_, end - begin_);
    if (place_ == Place::kSheet) classes_.declare(text);
    if (place_ == Place::kParagraph) paragraphs_.back().text = text;
    place_ = Place::kOutside;
  }

  std::string_view text_;
  std::size_t begin_;  // of the text of the place
  Notes& notes_;
  LineNumbers lines_;
  LooseTags tags_;
  SamiClasses classes_;
  std::vector<Paragraph> paragraphs_;
  Place place_ = Place::kOutside;
};

/// Whether paragraphs of `ofClass` are in another language: undeclared classes count as languages
/// only if `language` is one of them.
bool isOther(const SamiClass& ofClass, const SamiClass& language) noexcept {
  using Kind = SamiClass::Kind;
  if (&ofClass == &language || ofClass.kind == Kind::kStyle) return false;
  return ofClass.kind == Kind::kLanguage || language.kind == Kind::kUndeclared;
}

/// A paragraph ends where its SYNC says or, if that is earlier, where the next paragraph of its
/// class or of no class begins; if there is none, where any begins.
class Ends {
 public:
  /// If `haveClasses` is false, classes are ignored.
  explicit Ends(bool haveClasses) noexcept : haveClasses_(haveClasses) {}

  /// Requires: the paragraphs are sorted by start.
  void set(std::span<Paragraph* const> paragraphs) {
    while (!paragraphs.empty()) {
      const long long start = paragraphs.back()->start;
      const auto first = std::ranges::lower_bound(paragraphs, start, {}, &Paragraph::start);
      const std::span together(first, paragraphs.end());
      for (Paragraph* const paragraph : together) setEnd(*paragraph);
      for (const Paragraph* const paragraph : together) noteStart(*paragraph);
      paragraphs = paragraphs.first(paragraphs.size() - together.size());
    }
  }

 private:
  void setEnd(Paragraph& paragraph) const noexcept {
    const SamiClass* const ofClass = haveClasses_ ? paragraph.ofClass : nullptr;
    const long long next = ofClass != nullptr ? std::min(ofClass->next, nextOfAll_) : nextOfAny_;
    paragraph.end = std::min(paragraph.end, next == kNever ? nextOfAny_ : next);
  }

  void noteStart(const Paragraph& paragraph) noexcept {
    SamiClass* const ofClass = haveClasses_ ? paragraph.ofClass : nullptr;
    (ofClass != nullptr ? ofClass->next : nextOfAll_) = paragraph.start;
    nextOfAny_ = paragraph.start;
  }

  bool haveClasses_;
  long long nextOfAll_ = kNever;
  long long nextOfAny_ = kNever;
};

void setEnds(std::vector<Paragraph>& paragraphs, bool haveClasses) {
  std::vector<Paragraph*> byTime;
  byTime.reserve(paragraphs.size());
  for (Paragraph& paragraph : paragraphs) byTime.push_back(&paragraph);
  if (!std::ranges::is_sorted(byTime, {}, &Paragraph::start)) {
    std::ranges::sort(byTime, {}, &Paragraph::start);
  }
  Ends(haveClasses).set(byTime);
}

/// Drops the paragraphs of other languages.
void select(const SamiClass& language, std::vector<Paragraph>& paragraphs) {
  std::erase_if(paragraphs, [&language](const Paragraph& paragraph) {
    return paragraph.ofClass != nullptr && isOther(*paragraph.ofClass, language);
  });
}

/// Turns the paragraphs of each SYNC that are shown for the same time into a cue. Paragraphs
/// without text only end what is shown.
class CueWriter {
 public:
  CueWriter(const FormatInput& input, CueSink& sink)
      : sink_(sink), lines_(input.text, input.begin, input.firstLine) {}

  void write(const std::vector<Paragraph>& paragraphs) {
    for (auto at = paragraphs.begin(); at != paragraphs.end(); ++index_) {
      const Paragraph& first = *at;
      TextTraits all;
      for (; at != paragraphs.end() && at->sync == first.sync && at->end == first.end; ++at) {
        const TextTraits traits = writeSamiText(at->text, sink_.text());
        if (!all.alignment) all.alignment = traits.alignment;
        all.isUnclosed = all.isUnclosed || traits.isUnclosed;
      }
      if (all.isUnclosed) sink_.notes().add(ksImportProblem::kTagUnclosed, lines_.of(first.sync));
      const std::string_view text = sink_.text().finish();
      if (!text.empty()) add(first, text, all.alignment.value_or(2));
    }
  }

 private:
  void add(const Paragraph& paragraph, std::string_view text, int alignment) {
    const int line = lines_.of(paragraph.sync);
    ksImportCue& cue = paragraph.end == kNever ? sink_.beginWithoutEnd(paragraph.start, line)
                                               : sink_.begin(paragraph.start, paragraph.end, line);
    cue.text = text;
    cue.alignment = alignment;
    cue.index = index_;
  }

  CueSink& sink_;
  LineNumbers lines_;
  int index_ = 0;
};

/// Whether a line is a time and an arrow, as in formats whose texts may contain anything.
bool isTimeLine(std::string_view line) noexcept {
  return consumeTime(line) && withoutLeadingBlanks(line).starts_with("-->");
}

/// Whether `text` begins with the root element, after comments and declarations.
bool hasRoot(std::string_view text) noexcept {
  LooseTags tags;
  while (!text.empty()) {
    const auto* const begin = std::find_if_not(text.begin(), text.end(), isSpace);
    text.remove_prefix(static_cast<std::size_t>(begin - text.begin()));
    if (!text.starts_with('<')) return false;
    const LooseTag tag = tags.at(text);
    if (!tag.name.empty() || tag.length == 0) return tag.opens("sami");
    text.remove_prefix(tag.length);
  }
  return false;
}

Likelihood likelihoodOf(std::string_view text) noexcept {
  if (hasRoot(text)) return Likelihood::kCertain;
  for (const Line& line : Lines(text)) {
    if (isTimeLine(line.text)) return Likelihood::kNone;
    const std::size_t sync = findNoCase(line.text, "<sync");
    if (sync == line.text.npos) continue;
    const LooseTag tag = LooseTags().at(text.substr(line.begin + sync));
    if (tag.opens("sync") && timeOf(tag.attribute("start"))) return Likelihood::kLikely;
  }
  return Likelihood::kNone;
}

void read(const FormatInput& input, CueSink& sink) {
  Scanner scanner(input, sink.notes());
  scanner.scan();
  for (const std::string_view language : scanner.classes().languages()) {
    sink.languages().emplace_back(language);
  }
  const std::string& wanted = input.options.language;
  if (!wanted.empty() && !sink.languages().empty() && !scanner.classes().has(wanted)) {
    sink.missLanguage();
  }
  std::vector<Paragraph>& paragraphs = scanner.paragraphs();
  const SamiClass* const language = scanner.classes().select(wanted);
  if (language != nullptr) select(*language, paragraphs);
  setEnds(paragraphs, language == nullptr);
  CueWriter(input, sink).write(paragraphs);
}

}  // namespace

constinit const Format kSami = {
    .info = {.name = "sami", .extensions = "smi sami"},
    .likelihood = likelihoodOf,
    .read = read,
};

}  // namespace kssubtitle::importing
