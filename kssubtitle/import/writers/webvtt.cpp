// Writes WebVTT.
#include <algorithm>
#include <set>

#include "kssubtitle/import/markup/html_output.h"
#include "kssubtitle/import/writers/clock.h"
#include "kssubtitle/import/writers/writers.h"

namespace kssubtitle::importing {
namespace {

constexpr ClockForm kClock{2, '.', 3};

/// The classes whose colours the WebVTT standard defines.
constexpr std::pair<int, std::string_view> kColourClasses[] = {
    {0xFFFFFF, "white"},  {0x00FF00, "lime"},    {0x00FFFF, "cyan"}, {0xFF0000, "red"},
    {0xFFFF00, "yellow"}, {0xFF00FF, "magenta"}, {0x0000FF, "blue"}, {0x000000, "black"}};

/// Empty if the standard defines none.
std::string_view standardClassOf(int colour) noexcept {
  for (const auto& [known, name] : kColourClasses) {
    if (known == colour) return name;
  }
  return {};
}

/// The squared distance of two colours.
int distance(int a, int b) noexcept {
  int sum = 0;
  for (const int shift : {0, 8, 16}) {
    const int difference = (a >> shift & 0xFF) - (b >> shift & 0xFF);
    sum += difference * difference;
  }
  return sum;
}

int nearestStandard(int colour) noexcept {
  return std::ranges::min_element(
             kColourClasses, {},
             [colour](const auto& entry) { return distance(entry.first, colour); })
      ->first;
}

std::string classOf(int colour, ksImportColors colors) {
  const bool isExact = colors == ksImportColors::kExactColors;
  const std::string_view standard = standardClassOf(isExact ? colour : nearestStandard(colour));
  return standard.empty() ? std::string("color").append(HtmlColour(colour)) : std::string(standard);
}

void appendText(std::string& out, const StyledText& text, ksImportColors colors) {
  const auto put = [&out](std::string_view piece) { out += piece; };
  forEachRun(text, [&](const Style& style, std::size_t begin, std::size_t end, bool endsLine) {
    Style tags = style;
    tags.strikeOut = false;
    tags.colour = Style::kNoColour;
    const bool isColoured = style.colour != Style::kNoColour;
    putOpeningTags(tags, put);
    if (isColoured) out += "<c." + classOf(style.colour, colors) + '>';
    putEscaped(std::string_view(text.characters).substr(begin, end - begin), put);
    if (isColoured) out += "</c>";
    putClosingTags(tags, put);
    if (endsLine) out += '\n';
  });
}

/// Each preceded by a space. Bottom and centre are the defaults of WebVTT.
std::string settingsOf(int alignment) {
  constexpr std::string_view kRows[] = {"", " line:50%", " line:0"};
  constexpr std::string_view kColumns[] = {" align:left", "", " align:right"};
  const auto key = static_cast<std::size_t>(alignment - 1);
  return std::string(kRows[key / 3]).append(kColumns[key % 3]);
}

/// Defines the colours of all other classes in use.
std::string styleBlocks(OutgoingCues cues) {
  std::set<int> colours;
  for (const OutgoingCue& cue : cues) {
    for (const StyledText::Run& run : cue.text.runs) colours.insert(run.style.colour);
  }
  std::string out;
  for (const int colour : colours) {
    if (colour == Style::kNoColour || !standardClassOf(colour).empty()) continue;
    out += "\nSTYLE\n::cue(." + classOf(colour, ksImportColors::kExactColors) + ") { color: #";
    out.append(HtmlColour(colour)) += "; }\n";
  }
  return out;
}

}  // namespace

std::string writeWebVtt(OutgoingCues cues, ksImportColors colors) {
  std::string out = "WEBVTT\n";
  if (colors == ksImportColors::kExactColors) out += styleBlocks(cues);
  std::size_t number = 0;
  for (const OutgoingCue& cue : cues) {
    out += '\n' + std::to_string(++number) + '\n';
    out += clockText(cue.start, kClock) + " --> " + clockText(cue.end, kClock);
    out += settingsOf(cue.alignment) + '\n';
    appendText(out, cue.text, colors);
    out += '\n';
  }
  return out;
}

}  // namespace kssubtitle::importing
