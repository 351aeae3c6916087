// Lines such as "00:00:01,000 --> 00:00:02,000", at which the cues of SubRip begin.
#include "kssubtitle/import/formats/common/subrip_time_lines.h"

#include "kssubtitle/import/formats/common/times.h"
#include "kssubtitle/import/markup/white_space.h"
#include "kssubtitle/import/text/unicode.h"

namespace kssubtitle::importing {
namespace {

constexpr std::string_view kArrow = "-->";
// Other spellings of the arrow, the longest first.
constexpr std::string_view kOtherArrows[] = {"--&gt;", "-- >", "\xE2\x80\x94>", "\xE2\x80\x93>",
                                             "->"};

enum class Arrow { kNone, kUsual, kOther };

/// Consumes an arrow and the blanks before it.
Arrow consumeArrow(std::string_view& text) noexcept {
  const std::string_view rest = withoutLeadingBlanks(text);
  if (rest.starts_with(kArrow)) {
    text = rest.substr(kArrow.size());
    return Arrow::kUsual;
  }
  for (const std::string_view arrow : kOtherArrows) {
    if (rest.starts_with(arrow)) {
      text = rest.substr(arrow.size());
      return Arrow::kOther;
    }
  }
  return Arrow::kNone;
}

/// Most of these only set the direction of text, and some editors begin every line with them.
constexpr bool isInvisible(char32_t c) noexcept {
  return (c >= 0x200B && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2066 && c <= 0x2069);
}

/// Whether a line with an arrow has a time at its front or after the arrow.
bool isBrokenTimeLine(std::string_view text) noexcept {
  const std::size_t arrow = text.find(kArrow);
  if (arrow == text.npos) return false;
  std::string_view end = text.substr(arrow + kArrow.size());
  return consumeTime(text) || consumeTime(end);
}

/// Consumes everything up to the next arrow, and the arrow.
Arrow consumeUpToArrow(std::string_view& text) noexcept {
  const std::size_t arrow = text.find(kArrow);
  if (arrow == text.npos) return Arrow::kNone;
  text.remove_prefix(arrow + kArrow.size());
  return Arrow::kUsual;
}

/// Whether a time of two fields was meant to have a third.
bool isCutShort(const WrittenTime& time, std::string_view rest) noexcept {
  return time.fields == 2 && rest.starts_with(':');
}

/// Whether the fraction before `rest` has a fraction of its own, as programs write that count in
/// floating point.
bool hasSecondFraction(std::string_view rest) noexcept {
  return rest.size() > 1 && (rest[0] == '.' || rest[0] == ',') && isDigit(rest[1]);
}

}  // namespace

std::optional<SubRipTimeLine> subRipTimeLineOf(std::string_view text, Above above) noexcept {
  const std::string_view whole = text;
  const auto start = consumeTime(text);
  if (!start && above != Above::kNumber) return std::nullopt;
  bool isClean = true;
  Arrow arrow = consumeArrow(text);
  if (arrow == Arrow::kNone && start && start->fields == 3) {
    isClean = false;
    arrow = consumeUpToArrow(text);
  }
  if (arrow == Arrow::kNone) {
    return above == Above::kNumber && isBrokenTimeLine(whole) ? std::optional(SubRipTimeLine())
                                                              : std::nullopt;
  }
  auto end = consumeTime(text);
  if (end && isCutShort(*end, text)) end.reset();
  if (!start && !end) return std::nullopt;
  if (!(start && end)) {
    return above == Above::kNumber ? std::optional(SubRipTimeLine()) : std::nullopt;
  }
  const bool isStrict = arrow == Arrow::kUsual && start->fields == 3 && end->fields == 3;
  if (!isStrict && above == Above::kOther) return std::nullopt;
  isClean = isClean && !hasSecondFraction(text);
  const bool isUsual = isStrict && isClean && start->isUsual && end->isUsual;
  return SubRipTimeLine{start->milliseconds, end->milliseconds, true, isUsual};
}

std::string_view withoutLeadingInvisible(std::string_view text) noexcept {
  while (!text.empty() && static_cast<unsigned char>(text.front()) >= 0x80) {
    std::size_t length = leadingWhiteSpace(text);
    if (length == 0) {
      const std::size_t first = sequenceLength(text);
      if (first > 0 && isInvisible(codePointOf(text.substr(0, first)))) length = first;
    }
    if (length == 0) break;
    text.remove_prefix(length);
  }
  return text;
}

}  // namespace kssubtitle::importing
