// Override tags in the texts of ASS and SSA events.
#include "kssubtitle/import/markup/ass_overrides.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "kssubtitle/import/markup/colours.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

std::string_view withoutAsterisks(std::string_view name) noexcept {
  name = withoutBlanks(name);
  while (name.starts_with('*')) name.remove_prefix(1);
  return name;
}

/// What a tag sets.
enum class Tag {
  kDrawing,
  kAlignment,
  kOldAlignment,
  kColour,
  kReset,
  kItalic,
  kBold,
  kUnderline,
  kStrikeOut,
};

struct TagName {
  std::string_view name;
  Tag tag;
  bool concernsStyleAlone = true;
};

// The tags that are read; all others are ignored.
constexpr TagName kTagNames[] = {
    {"p", Tag::kDrawing, false},
    {"an", Tag::kAlignment, false},
    {"a", Tag::kOldAlignment, false},
    {"1c", Tag::kColour},
    {"c", Tag::kColour},
    {"r", Tag::kReset},
    {"i", Tag::kItalic},
    {"b", Tag::kBold},
    {"u", Tag::kUnderline},
    {"s", Tag::kStrikeOut},
};

// nextTagOrEnd() looks for them.
static_assert(std::ranges::all_of(kTagNames, [](const TagName& tag) {
  return tag.concernsStyleAlone || tag.name.front() == 'p' || tag.name.front() == 'a';
}));

/// A tag with what follows its name.
struct ReadTag {
  Tag tag;
  std::string_view value;
};

/// Whether the name continues: a letter or a parenthesis follows.
constexpr bool goesOn(std::string_view value) noexcept {
  return !value.empty() && (isLetter(value.front()) || value.front() == '(');
}

/// The tag that `text` begins with; nothing if it does not matter in the markup.
std::optional<ReadTag> tagAtFront(std::string_view text, bool isHtml) noexcept {
  for (const auto& [name, tag, concernsStyleAlone] : kTagNames) {
    if ((concernsStyleAlone && !isHtml) || text.front() != name.front()) continue;
    if (!text.starts_with(name)) continue;
    const std::string_view value = withoutLeadingBlanks(text.substr(name.size()));
    if (tag == Tag::kReset || !goesOn(value)) return ReadTag{tag, value};
  }
  return std::nullopt;
}

/// Where the next backslash that a relevant tag may follow is, from `at` on, or the '}' that ends
/// the block. Few tags matter in plain text, and two common ones, `\pos` and `\alpha`, begin like
/// them: skipping all others at once opens a script of typesetting in half the time. Requires: a
/// '}' follows.
std::size_t nextTagOrEnd(std::string_view text, std::size_t at, bool isHtml) noexcept {
  const std::string_view rest = text.substr(at);
  if (isHtml) return at + findAny<'\\', '}'>(rest);
  const std::size_t looked = std::max<std::size_t>(rest.size(), 2) - 2;
  const std::size_t found = findMarked(rest.substr(0, looked), [](auto load) -> Block {
    const Block first = load(0);
    const Block second = load(1);
    const Block third = load(2);
    const Block matters = (equalBytes(second, 'p') & ~equalBytes(third, 'o')) |
                          (equalBytes(second, 'a') & ~equalBytes(third, 'l')) |
                          equalBytes(second, ' ') | equalBytes(second, '\t');
    return (equalBytes(first, '\\') & matters) | equalBytes(first, '}');
  });
  return found < looked ? at + found : text.find('}', at + found);
}

/// How deeply a block is nested in parentheses. Tags in parentheses say what the text becomes over
/// time, and are not read, except that `\p` begins a drawing there too.
class Depth {
 public:
  explicit Depth(std::string_view block) noexcept : block_(block) {}

  /// Requires: there is a backslash at `place`, which is not before the last one asked for.
  bool isOutsideAt(std::size_t place) noexcept {
    if (at_ == 0) at_ = block_.find('\\');  // what precedes the first tag does not count
    for (; at_ < place; ++at_) {
      if (block_[at_] == '(') ++depth_;
      if (block_[at_] == ')' && depth_ > 0) --depth_;
    }
    return depth_ == 0;
  }

 private:
  std::string_view block_;
  std::size_t at_ = 0;
  std::size_t depth_ = 0;
};

/// Reads the override blocks of a text in order, and keeps the resulting state.
class Overrides {
 public:
  Overrides(const AssStyle& base, const AssStyles& styles, bool isHtml) noexcept
      : event_(base), base_(base.style), style_(base.style), styles_(styles), isHtml_(isHtml) {}

  /// Consumes the block that `text` begins with. Requires: it ends.
  void consumeBlock(std::string_view& text) {
    Depth depth(text);
    std::size_t at = nextTagOrEnd(text, 1, isHtml_);
    for (; text[at] != '}'; at = nextTagOrEnd(text, at + 1, isHtml_)) {
      const auto tag = tagAtFront(withoutLeadingBlanks(text.substr(at + 1)), isHtml_);
      if (tag && (tag->tag == Tag::kDrawing || depth.isOutsideAt(at))) apply(*tag);
    }
    text.remove_prefix(at + 1);
  }

  const Style& style() const noexcept { return style_; }
  bool isDrawing() const noexcept { return isDrawing_; }
  std::optional<int> alignment() const noexcept { return alignment_; }

 private:
  void apply(const ReadTag& tag) noexcept {
    switch (tag.tag) {
      case Tag::kDrawing:
        isDrawing_ = integerOfAss(tag.value).value_or(0) > 0;
        break;
      case Tag::kAlignment:
      case Tag::kOldAlignment:
        if (!alignment_) alignment_ = alignmentOf(tag);
        break;
      case Tag::kColour:
        style_.colour = colourOfAss(tag.value).value_or(base_.colour);
        break;
      case Tag::kReset:
        reset(withoutTrailingBlanks(tag.value.substr(0, tag.value.find_first_of("\\}"))));
        break;
      case Tag::kItalic:
        set(&Style::italic, tag.value);
        break;
      case Tag::kBold: {
        const auto weight = integerOfAss(tag.value);
        style_.bold = weight ? isBoldWeight(*weight) : base_.bold;
        break;
      }
      case Tag::kUnderline:
        set(&Style::underline, tag.value);
        break;
      case Tag::kStrikeOut:
        set(&Style::strikeOut, tag.value);
        break;
    }
  }

  static std::optional<int> alignmentOf(const ReadTag& tag) noexcept {
    const auto number = integerOfAss(tag.value);
    if (!number) return std::nullopt;
    if (tag.tag == Tag::kOldAlignment) return alignmentOfSsa(*number);
    return *number >= 1 && *number <= 9 ? number : std::nullopt;
  }

  void set(bool Style::*member, std::string_view value) noexcept {
    const auto number = integerOfAss(value);
    style_.*member = number ? *number != 0 : base_.*member;
  }

  /// To the style of that name, or to the event's own.
  void reset(std::string_view name) noexcept {
    const AssStyle* const named = name.empty() ? nullptr : styles_.named(name);
    base_ = named == nullptr ? event_.style : named->style;
    style_ = base_;
  }

  const AssStyle& event_;
  Style base_;  // what tags without a value restore
  Style style_;
  const AssStyles& styles_;
  bool isHtml_;
  bool isDrawing_ = false;
  std::optional<int> alignment_;  // the first one wins
};

/// Writes the pieces of an event's text.
class Writer {
 public:
  Writer(std::string_view text, const AssStyle& base, const AssStyles& styles, CueText& out)
      : rest_(text), out_(out), overrides_(base, styles, out.isHtml()) {
    out_.setStyle(overrides_.style());
  }

  AssTextTraits write() {
    while (!rest_.empty()) {
      appendText(findAny<'{', '\\'>(rest_));
      if (rest_.empty()) break;
      if (rest_.front() == '{') {
        readBlock();
      } else {
        readBackslash();
      }
    }
    traits_.alignment = overrides_.alignment();
    return traits_;
  }

 private:
  void appendText(std::size_t length) {
    if (length > 0 && !overrides_.isDrawing()) out_.append(rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  bool isBlockClosed() noexcept {
    if (!lengthAfterBlocks_) lengthAfterBlocks_ = rest_.size() - (rest_.rfind('}') + 1);
    return rest_.size() > *lengthAfterBlocks_;
  }

  /// A block that is not closed is text.
  void readBlock() {
    if (!isBlockClosed()) {
      traits_.isUnclosed = true;
      return appendText(1);
    }
    overrides_.consumeBlock(rest_);
    out_.setStyle(overrides_.style());
    traits_.hasDrawing = traits_.hasDrawing || overrides_.isDrawing();
  }

  void readBackslash() {
    const char c = rest_.size() > 1 ? rest_[1] : '\0';
    if (c != 'N' && c != 'n' && c != 'h') return readLoneBackslash();
    if (!overrides_.isDrawing()) out_.append(c == 'h' ? U' ' : U'\n');
    rest_.remove_prefix(2);
  }

  /// An invisible word joiner keeps it from being read as an escape.
  void readLoneBackslash() {
    constexpr std::string_view kWordJoiner = "\xE2\x81\xA0";
    appendText(1);
    if (rest_.starts_with(kWordJoiner)) rest_.remove_prefix(kWordJoiner.size());
  }

  std::string_view rest_;
  std::optional<std::size_t> lengthAfterBlocks_;  // how many characters follow the last '}'
  CueText& out_;
  Overrides overrides_;
  AssTextTraits traits_;
};

}  // namespace

void AssStyles::add(std::string_view name, const AssStyle& style) {
  styles_.insert_or_assign(withoutAsterisks(name), style);
}

const AssStyle* AssStyles::named(std::string_view name) const noexcept {
  const auto found = styles_.find(withoutAsterisks(name));
  return found == styles_.end() ? nullptr : &found->second;
}

AssTextTraits writeAssText(std::string_view text, const AssStyle& base, const AssStyles& styles,
                           CueText& out) {
  return Writer(text, base, styles, out).write();
}

std::optional<int> alignmentOfSsa(int alignment) noexcept {
  const int column = alignment & 3;
  if (alignment < 1 || alignment > 11 || column == 0) return std::nullopt;
  if ((alignment & 4) != 0) return column + 6;
  return (alignment & 8) != 0 ? column + 3 : column;
}

std::optional<int> colourOfAss(std::string_view text) noexcept {
  constexpr std::int64_t kWhite = 0xFFFFFF;
  text = withoutBlanks(text);
  const bool isHexadecimal = startsWithNoCase(text, "&H");
  if (isHexadecimal) text.remove_prefix(2);
  std::int64_t value = 0;
  const auto read =
      std::from_chars(text.data(), text.data() + text.size(), value, isHexadecimal ? 16 : 10);
  if (read.ec != std::errc()) return std::nullopt;
  const std::int64_t blueGreenRed = value & kWhite;
  if (blueGreenRed == kWhite) return Style::kNoColour;
  return swappedRedAndBlue(static_cast<int>(blueGreenRed));
}

std::optional<int> integerOfAss(std::string_view text) noexcept {
  text = withoutLeadingBlanks(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  int value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  return read.ec == std::errc() ? std::optional(value) : std::nullopt;
}

bool isBoldWeight(int weight) noexcept {
  constexpr int kSemiBold = 600;
  return weight == 1 || weight == -1 || weight >= kSemiBold;
}

}  // namespace kssubtitle::importing
