// Writes SubRip.
#include <algorithm>

#include "kssubtitle/import/formats/common/subrip_time_lines.h"
#include "kssubtitle/import/markup/html_output.h"
#include "kssubtitle/import/markup/subrip_tags.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/writers/clock.h"
#include "kssubtitle/import/writers/writers.h"

namespace kssubtitle::importing {
namespace {

/// Both times have as many hour digits as the end needs: some players expect the separators of both
/// in the same columns.
std::string timesOf(const OutgoingCue& cue) {
  constexpr long long kHour = 3'600'000;
  const auto digits = static_cast<int>(std::to_string(cue.end / kHour).size());
  const ClockForm form{std::max(digits, 2), ',', 3};
  return clockText(cue.start, form) + " --> " + clockText(cue.end, form);
}

std::string_view escapeOf(char c) noexcept {
  switch (c) {
    case '<':
      return "&lt;";
    case '\\':
      return "&#92;";
    default:
      return "&amp;";
  }
}

/// Appends a brace so that it begins no override. Many players hide any text in braces, and some of
/// them turn tags into overrides: what they hide then ends with the first tag.
void appendBrace(std::string& out, const Style& style, bool isClosed) {
  out += '{';
  if (!isClosed) return;
  const auto* tag = std::ranges::find_if(
      kHtmlTags, [&style](const HtmlTag& known) { return !(style.*known.isSet); });
  if (tag == std::end(kHtmlTags)) tag = kHtmlTags;
  out.append(tag->opening).append(tag->closing);
}

/// Escapes only what could be read as markup, because few players know entities.
void appendCharacters(std::string& out, std::string_view all, std::size_t begin, std::size_t end,
                      const Style& style) {
  const std::size_t lastClosing = all.rfind('}');
  for (std::size_t i = begin; i < end; ++i) {
    if (all[i] == '{') {
      appendBrace(out, style, lastClosing != all.npos && i < lastClosing);
    } else if (mayBeSubRipMarkup(all.substr(i))) {
      out += escapeOf(all[i]);
    } else {
      out += all[i];
    }
  }
}

std::string taggedText(const OutgoingCue& cue) {
  std::string out;
  if (cue.alignment != 2) out = "{\\an" + std::to_string(cue.alignment) + '}';
  const auto put = [&out](std::string_view tag) { out += tag; };
  forEachRun(cue.text, [&](const Style& style, std::size_t begin, std::size_t end, bool endsLine) {
    putOpeningTags(style, put);
    appendCharacters(out, cue.text.characters, begin, end, style);
    putClosingTags(style, put);
    if (endsLine) out += '\n';
  });
  return out;
}

/// Escapes the heads of all arrows. The '>' that ends a tag follows other characters.
void appendWithoutArrows(std::string& out, std::string_view line) {
  constexpr std::string_view kBeforeArrowHead =
      "- \x93\x94";  // \u2013 and \u2014 end in these bytes
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool isArrowHead =
        line[i] == '>' && i > 0 && kBeforeArrowHead.find(line[i - 1]) != line.npos;
    if (isArrowHead) {
      out += "&#62;";
    } else {
      out += line[i];
    }
  }
}

/// A line of text that looks like the times of a cue would begin a cue.
void appendLines(std::string& out, std::string_view text) {
  Above above = Above::kOther;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    if (subRipTimeLineOf(fromFirstVisible(line), above)) {
      appendWithoutArrows(out, line);
    } else {
      out += line;
    }
    out += '\n';
    above = isNumber(withoutBlanks(line)) ? Above::kNumber : Above::kOther;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

}  // namespace

std::string writeSubRip(OutgoingCues cues) {
  std::string out;
  std::size_t number = 0;
  for (const OutgoingCue& cue : cues) {
    if (number > 0) out += '\n';
    out += std::to_string(++number) + '\n';
    out += timesOf(cue) + '\n';
    appendLines(out, taggedText(cue));
  }
  return out;
}

}  // namespace kssubtitle::importing
