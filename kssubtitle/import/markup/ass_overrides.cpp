// Overrides in the texts of ASS and SSA events.
#include "kssubtitle/import/markup/ass_overrides.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/scan.h"

namespace kssubtitle::importing {
namespace {

std::string_view withoutAsterisks(std::string_view name) noexcept {
  name = withoutBlanks(name);
  while (name.starts_with('*')) name.remove_prefix(1);
  return name;
}

/// The value of a tag of that name; nothing if `tag` is another one, of which the name goes on.
std::optional<std::string_view> valueOf(std::string_view tag, std::string_view name) noexcept {
  if (!tag.starts_with(name)) return std::nullopt;
  const std::string_view value = withoutBlanks(tag.substr(name.size()));
  if (!value.empty() && (isLetter(value.front()) || value.front() == '(')) return std::nullopt;
  return value;
}

/// The length of the tag behind a backslash: up to the next one, but for those in parentheses,
/// which say what the text becomes in time. Requires: a '}' follows, which ends it at the latest.
std::size_t tagLength(std::string_view text) noexcept {
  std::size_t length = 0;
  for (std::size_t depth = 0; text[length] != '}'; ++length) {
    if (text[length] == '\\' && depth == 0) break;
    if (text[length] == '(') ++depth;
    if (text[length] == ')' && depth > 0) --depth;
  }
  return length;
}

/// Whether a tag that begins with `c` may be one of those that are read; most are not.
constexpr bool mayMatter(char c) noexcept {
  switch (c) {
    case 'p':
    case '1':
    case 'c':
    case 'r':
    case 'i':
    case 'b':
    case 'u':
    case 's':
    case 'a':
      return true;
    default:
      return false;
  }
}

/// Takes the overrides of a text one after the other and keeps the state that they leave.
class Overrides {
 public:
  Overrides(const AssStyle& base, const AssStyles& styles) noexcept
      : event_(base), base_(base.style), style_(base.style), styles_(styles) {}

  /// Takes the block off that `text` begins with. Requires: it ends.
  void take(std::string_view& text) {
    text.remove_prefix(1);
    while (text.front() != '\\' && text.front() != '}') text.remove_prefix(1);
    while (text.front() == '\\') {
      text = withoutLeadingBlanks(text.substr(1));
      const std::size_t length = tagLength(text);
      if (mayMatter(text.front())) takeTag(withoutTrailingBlanks(text.substr(0, length)));
      text.remove_prefix(length);
    }
    text.remove_prefix(1);
  }

  const Style& style() const noexcept { return style_; }
  bool isDrawing() const noexcept { return isDrawing_; }
  std::optional<int> alignment() const noexcept { return alignment_; }

 private:
  void takeTag(std::string_view tag) {
    if (const auto value = valueOf(tag, "p")) {
      isDrawing_ = integerOfAss(*value).value_or(0) > 0;
    } else if (const auto colour = colourValue(tag)) {
      style_.colour = colourOfAss(*colour).value_or(base_.colour);
    } else if (tag.front() == 'r') {
      reset(tag.substr(1));
    } else if (!takeSwitch(tag)) {
      takeAlignment(tag);
    }
  }

  static std::optional<std::string_view> colourValue(std::string_view tag) noexcept {
    const auto value = valueOf(tag, "1c");
    return value ? value : valueOf(tag, "c");
  }

  bool takeSwitch(std::string_view tag) noexcept {
    constexpr std::pair<std::string_view, bool Style::*> kSwitches[] = {{"i", &Style::italic},
                                                                        {"b", &Style::bold},
                                                                        {"u", &Style::underline},
                                                                        {"s", &Style::strikeOut}};
    for (const auto& [name, member] : kSwitches) {
      const auto value = valueOf(tag, name);
      if (!value) continue;
      const auto number = integerOfAss(*value);
      style_.*member = !number                  ? base_.*member
                       : member == &Style::bold ? isBoldWeight(*number)
                                                : *number != 0;
      return true;
    }
    return false;
  }

  /// The first alignment counts.
  void takeAlignment(std::string_view tag) noexcept {
    if (alignment_) return;
    if (const auto value = valueOf(tag, "an")) {
      const auto number = integerOfAss(*value);
      if (number && *number >= 1 && *number <= 9) alignment_ = number;
    } else if (const auto old = valueOf(tag, "a")) {
      if (const auto number = integerOfAss(*old)) alignment_ = alignmentOfSsa(*number);
    }
  }

  /// To the style of that name, or to the event's own.
  void reset(std::string_view name) noexcept {
    const AssStyle* const named = name.empty() ? nullptr : styles_.named(name);
    base_ = named == nullptr ? event_.style : named->style;
    style_ = base_;
  }

  const AssStyle& event_;
  Style base_;  // what tags without a value go back to
  Style style_;
  const AssStyles& styles_;
  bool isDrawing_ = false;
  std::optional<int> alignment_;
};

/// Walks over an event's text and hands its pieces on.
class Writer {
 public:
  Writer(std::string_view text, const AssStyle& base, const AssStyles& styles, CueText& out)
      : rest_(text), out_(out), overrides_(base, styles) {
    out_.setStyle(overrides_.style());
  }

  AssTextTraits write() {
    while (!rest_.empty()) {
      takeText(findAny<'{', '\\'>(rest_));
      if (rest_.empty()) break;
      if (rest_.front() == '{') {
        takeBlock();
      } else {
        takeBackslash();
      }
    }
    traits_.alignment = overrides_.alignment();
    return traits_;
  }

 private:
  void takeText(std::size_t length) {
    if (length > 0 && !overrides_.isDrawing()) out_.append(rest_.substr(0, length));
    rest_.remove_prefix(length);
  }

  bool isBlockClosed() noexcept {
    if (!behindBlocks_) behindBlocks_ = rest_.size() - (rest_.rfind('}') + 1);
    return rest_.size() > *behindBlocks_;
  }

  /// A block that does not end is text.
  void takeBlock() {
    if (!isBlockClosed()) {
      traits_.isUnclosed = true;
      return takeText(1);
    }
    overrides_.take(rest_);
    out_.setStyle(overrides_.style());
  }

  void takeBackslash() {
    const char c = rest_.size() > 1 ? rest_[1] : '\0';
    if (c != 'N' && c != 'n' && c != 'h') return takeLoneBackslash();
    if (!overrides_.isDrawing()) out_.append(c == 'h' ? U' ' : U'\n');
    rest_.remove_prefix(2);
  }

  /// A word joiner, which is not seen, parts it from what would make it a code.
  void takeLoneBackslash() {
    constexpr std::string_view kWordJoiner = "\xE2\x81\xA0";
    takeText(1);
    if (rest_.starts_with(kWordJoiner)) rest_.remove_prefix(kWordJoiner.size());
  }

  std::string_view rest_;
  std::optional<std::size_t> behindBlocks_;  // how many characters follow the last '}'
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
  return static_cast<int>((blueGreenRed & 0xFF) << 16 | (blueGreenRed & 0xFF00) |
                          blueGreenRed >> 16);
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
