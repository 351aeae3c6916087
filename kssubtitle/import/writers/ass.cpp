// Writes ASS.
#include <algorithm>

#include "kssubtitle/import/markup/html_output.h"
#include "kssubtitle/import/writers/clock.h"
#include "kssubtitle/import/writers/writers.h"

namespace kssubtitle::importing {
namespace {

constexpr std::string_view kHead =
    "[Script Info]\n"
    "ScriptType: v4.00+\n"
    "PlayResX: 1920\n"
    "PlayResY: 1080\n"
    "ScaledBorderAndShadow: yes\n"
    "WrapStyle: 0\n"
    "\n"
    "[V4+ Styles]\n"
    "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, "
    "Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, "
    "Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\n"
    "Style: Default,Arial,72,&H00FFFFFF,&H000000FF,&H00000000,&H80000000,0,0,0,0,100,100,0,0,1,3,1,"
    "2,60,60,50,1\n"
    "\n"
    "[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n";

constexpr ClockForm kClock{1, '.', 2};

constexpr std::string_view kWordJoiner = "\xE2\x81\xA0";

/// "&HBBGGRR&"; empty, which restores the colour of the style, for no colour.
std::string colourValue(int colour) {
  if (colour == Style::kNoColour) return {};
  const int blueGreenRed = (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
  return std::string("&H").append(HtmlColour(blueGreenRed)) + '&';
}

/// The override tags that change one style into another.
std::string overridesFor(const Style& from, const Style& to) {
  constexpr std::pair<bool Style::*, char> kSwitches[] = {{&Style::italic, 'i'},
                                                          {&Style::bold, 'b'},
                                                          {&Style::underline, 'u'},
                                                          {&Style::strikeOut, 's'}};
  std::string tags;
  for (const auto& [member, name] : kSwitches) {
    if (from.*member == to.*member) continue;
    tags += {'\\', name, to.*member ? '1' : '0'};
  }
  if (from.colour != to.colour) tags += "\\c" + colourValue(to.colour);
  return tags;
}

/// Text in braces would not be shown, and a backslash before some characters is a code. `rest` is
/// the text after `characters`; a block of overrides precedes it unless it begins with a line feed.
void appendCharacters(std::string& out, std::string_view characters, std::string_view rest) {
  const char after = rest.empty() || rest.front() == '\n' ? '\0' : '{';
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const char next = i + 1 < characters.size() ? characters[i + 1] : after;
    switch (characters[i]) {
      case '\n':
        out += "\\N";
        break;
      case '{':
        out += '(';
        break;
      case '}':
        out += ')';
        break;
      case '\\':
        out += '\\';
        if (std::string_view("Nnh{").find(next) != std::string_view::npos) out += kWordJoiner;
        break;
      default:
        out += characters[i];
    }
  }
}

void appendText(std::string& out, const OutgoingCue& cue) {
  std::string overrides;
  if (cue.alignment != 2) overrides = "\\an" + std::to_string(cue.alignment);
  Style current;
  forEachRun(cue.text, [&](const Style& style, std::size_t begin, std::size_t end, bool endsLine) {
    overrides += overridesFor(current, style);
    current = style;
    if (!overrides.empty()) out += '{' + overrides + '}';
    overrides.clear();
    const std::string_view characters = cue.text.characters;
    appendCharacters(out, characters.substr(begin, end - begin), characters.substr(end));
    if (endsLine) out += "\\N";
  });
}

/// Milliseconds, rounded to hundredths of a second.
long long rounded(long long milliseconds) noexcept { return (milliseconds + 5) / 10 * 10; }

}  // namespace

std::string writeAss(OutgoingCues cues) {
  std::string out(kHead);
  for (const OutgoingCue& cue : cues) {
    const long long start = rounded(cue.start);
    const long long end = std::max(rounded(cue.end), start + 10);
    out += "Dialogue: 0," + clockText(start, kClock) + ',' + clockText(end, kClock) +
           ",Default,,0,0,0,,";
    appendText(out, cue);
    out += '\n';
  }
  return out;
}

}  // namespace kssubtitle::importing
