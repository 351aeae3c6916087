// The import library beside the fixed readers: which files both answer alike, and why not.
#include <set>
#include <sstream>

#include "tests/import_support.h"

namespace {

using namespace std::string_literals;

/// A file that the fixed readers answer as it is meant.
struct PlainFile {
  PlainFile(Random& random, bool isAss) {
    if (isAss) {
      text =
          "[Script Info]\nScriptType: v4.00+\n\n[V4+ Styles]\nFormat: Name, Fontname\n"
          "Style: Default,Arial\n\n[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, "
          "MarginR, MarginV, Effect, Text\n";
    }
    const unsigned step = isAss ? 10 : 1;
    unsigned time = random() % 2 * step * (random() % 9000000);
    for (unsigned i = 1 + random() % 6, number = 1; i > 0; --i, ++number) {
      const unsigned start = time + random() % 3 * step * (random() % 500);
      time = start + step * (1 + random() % 500);
      const std::string first = line(random);
      const std::string second = random() % 2 == 0 ? "" : (isAss ? "\\N" : "\n") + line(random);
      text += isAss ? "Dialogue: 0," + timeText(start, true) + "," + timeText(time, true) +
                          ",Default,,0,0,0,," + first + second + "\n"
                    : std::to_string(number) + "\n" + timeText(start, false) + " --> " +
                          timeText(time, false) + "\n" + first + second + "\n\n";
    }
  }

  static std::string line(Random& random) {
    constexpr const char* kCharacters[] = {
        "a",  "b", "Z", "7", "0",  ",",  ".",        ":",        "-",           "!",
        "\"", "'", "#", "*", "/",  "(",  ")",        ";",        "=",           "?",
        "[",  "]", "%", " ", "  ", "\t", "\xC3\xA9", "\xD0\x96", "\xE4\xB8\xAD"};
    std::string line = random() % 2 == 0 ? "x" : "\xC3\x89";
    for (unsigned i = random() % 30; i > 0; --i)
      line += kCharacters[random() % std::size(kCharacters)];
    return line + "1";
  }

  static std::string timeText(unsigned ms, bool isAss) {
    char text[32];
    const unsigned fraction = ms % 1000;
    std::snprintf(text, sizeof text, isAss ? "%u:%02u:%02u.%02u" : "%02u:%02u:%02u,%03u",
                  ms / 3600000, ms / 60000 % 60, ms / 1000 % 60, isAss ? fraction / 10 : fraction);
    return text;
  }

  std::string text;
};

/// UTF-16LE after its BOM, of code points of at most three bytes.
std::string utf16(std::string_view utf8) {
  std::string bytes = "\xFF\xFE";
  for (std::size_t i = 0; i < utf8.size();) {
    const auto at = [&](std::size_t n) { return static_cast<unsigned char>(utf8[i + n]); };
    const unsigned length = at(0) < 0x80 ? 1 : at(0) < 0xE0 ? 2 : 3;
    const unsigned c = length == 1 ? at(0)
                       : length == 2
                           ? (at(0) & 0x1FU) << 6 | (at(1) & 0x3FU)
                           : (at(0) & 0xFU) << 12 | (at(1) & 0x3FU) << 6 | (at(2) & 0x3FU);
    bytes += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
    i += length;
  }
  return bytes;
}

template <typename Answer>
bool areEqual(const Answer& a, const Answer& b) {
  return a.start == b.start && a.end == b.end && a.text == b.text;
}

/// Compares what a parser and the manager answer at every boundary.
template <typename Char>
void expectSameAnswers(const std::string& path) {
  ksImportParser parser;
  ASSERT_TRUE(parser.Open(path.c_str()));
  ksSubtitleManager manager;
  ASSERT_TRUE(manager.Open(path.c_str()));
  std::set<long long> times{0, parser.DurationTime(), manager.DurationTime()};
  for (const ksImportCue& cue : parser.cues()) times.insert({cue.start, cue.end});
  for (const long long boundary : times) {
    for (const long long t : {boundary - 1, boundary, boundary + 1}) {
      ASSERT_TRUE(areEqual(Width<Char>::ask(parser, t), Width<Char>::ask(manager, t))) << t;
    }
  }
}

/// Names the conditions that a file fails; where there are none, both must answer alike.
template <typename Char>
std::string unmetBy(const TempDir& dir, const std::string& name, const std::string& bytes) {
  const std::string path = dir.write(name, bytes);
  std::string names;
  for (const ksImportCondition& condition : ksWhyFixedReadersDiffer(path.c_str())) {
    names += (names.empty() ? "" : ", ") + std::string(condition.name);
    EXPECT_TRUE(condition.sentence.ends_with('.'));
  }
  if (names.empty()) expectSameAnswers<Char>(path);
  return names;
}

/// One of the pieces that tildes part in `list`.
std::string anyOf(const std::string& list, Random& random) {
  std::vector<std::string> pieces;
  std::istringstream rest(list);
  for (std::string piece; std::getline(rest, piece, '~');) pieces.push_back(piece);
  return pieces[random() % pieces.size()];
}

/// Puts in a line or a piece of text that most conditions have something against, or drops a
/// character.
void mutate(std::string& text, Random& random) {
  std::size_t at = random() % (text.size() + 1);
  if (random() % 3 == 0) {
    const std::size_t front = text.rfind('\n', at) + 1;  // of a line, or of the text
    text.insert(front, anyOf("2\n~x\n~--> ~; x\n~[Fonts]\n~Dialogue\n~ScriptType: v4.00\n~"
                             "Format: Text, Start, End\n~1\n00:00:01,000 --> 00:00:02,000\nA\n\n~"
                             "Comment: 0,0:00:01.00,0:00:02.00,,,0,0,0,,A\n",
                             random));
    return;
  }
  while (at < text.size() && (text[at] & 0xC0) == 0x80) ++at;
  if (random() % 4 > 0) {
    text.insert(at, anyOf("\n~ ~\t~\r~7~<~>~{~}~&~\\N~\\~:~,~\v~=~\xC2\xA0~\xC4\xB0~\xE2\x80\x8F~"
                          "\xE2\x80\xA8~\xE2\x81\xA0~\xEF\xBB\xBF~\x1A",
                          random));
  } else if (at < text.size() && text[at] > 0) {
    text.erase(at, 1);
  }
}

TEST(ImportAgreement, filesThatAreSaidToBeAnsweredAlike_are) {
  const TempDir dir;
  Random random(2);
  int agreeing = 0;
  constexpr int kFiles = 10000;
  for (int i = 0; i < kFiles; ++i) {
    const bool isAss = i % 2 == 1;
    std::string text = PlainFile(random, isAss).text;
    const bool isPlain = i % 3 == 0;
    if (!isPlain) mutate(text, random);
    const std::string name = isAss ? "film.ass" : "film.srt";
    const std::string unmet = unmetBy<char>(dir, name, text);
    const std::string unmetWide = unmetBy<wchar_t>(dir, "wide" + name, utf16(text));
    if (unmet.empty()) ++agreeing;
    ASSERT_FALSE(HasFailure() || (isPlain && unmet + unmetWide != "")) << unmet << '\n' << text;
  }
  EXPECT_GT(agreeing, kFiles / 3 + kFiles / 8);  // many a change changes nothing
}

constexpr char kSubRip[] =
    "1\n00:00:01,000 --> 00:00:02,000\nA\n\n2\n00:00:03,000 --> 00:00:04,000\nB\nC\n\n";
constexpr char kScript[] =
    "[Script Info]\nScriptType: v4.00+\n\n[Events]\nFormat: Layer, Start, End, Style, Name, "
    "MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,A\n"
    "Dialogue: 0,0:00:03.00,0:00:04.00,Default,,0,0,0,,B\\NC\n";

TEST(ImportAgreement, eachCondition_isNamedWhereItFails) {
  struct Change {
    std::string from, to;  // nothing: at the end
    const char* unmet;
    const char* name = "film.srt";
  };
  const Change subRip[] = {
      {"", "", ""},
      {"\n\n", "\n\n\n", ""},
      {"00:00:02", "00:00:03", ""},
      {"B", "b=\xC3\xA9 [1]", ""},
      {"", "", "extension", "film.SRT"},
      {kSubRip, "A letter.\n", "readable"},
      {kSubRip, "WEBVTT\n", "format", "film.vtt"},
      {kSubRip, "\xEF\xBB\xBF"s + kSubRip, "encoding"},
      {"B", "\xE9", "encoding"},
      {"B", "B"s + '\0', ""},
      {"A\n", "A\r\n", "line ends"},
      {"C\n\n", "C", ""},
      {"", std::string(19991, '\n'), ""},
      {"", std::string(19992, '\n'), "line count"},
      {"1\n", "\n1\n", ""},
      {"1\n", "Content-Type: x\n\n1\n", "cues alone"},
      {"A", "", ""},
      {"", "\x1A", "cues alone"},
      {"", "3\n", ""},
      {kSubRip, "1\n00:00:01,000 --> x\nA\n", "cues alone, times"},
      {"2\n", "3\n", ""},
      {"2\n", "2 \n", ""},
      {"2\n", "2\n\n", ""},
      {"2\n", "", "numbers"},
      {"00:00:03,000", "0:00:03,000", ""},
      {"00:00:03,000", "00:00:03,00 ", ""},
      {"4,000", "4.000", "times"},
      {"4,000", "4,000 X1:1", ""},
      {"00:00:03", " 00:00:03", ""},
      {"00:00:03", "00:00:01", "order"},
      {"00:00:03", "00:00:04", "order"},
      {"B", " B", ""},
      {"B", "B\t", "verbatim"},
      {"B", "B\n", ""},
      {"B", "<i>B</i>", "verbatim"},
      {"B", "&#66;", "verbatim"},
      {"C\n", "C\n \n", "verbatim"},
      {"C", "C\nD", "two lines"},
      {"B", "a > b", ""},
      {"B", "\\B", ""},
      {"B", "a\xC2\xA0z", ""},
      {"B", "7", "digits"},
  };
  const Change script[] = {
      {"", "", "", "film.ass"},
      {"", "Comment: 0,\n; x\n", "", "film.ssa"},
      {"", "", "extension"},
      {"v4.00+", "v4.00", "", "film.ass"},
      {"ScriptType", "scriptType", "", "film.ass"},
      {"Dialogue", "dialogue", "", "film.ass"},
      {"Style, Name", "Style", "script", "film.ass"},
      {"Text", "Text, X", "cues alone, script", "film.ass"},
      {"Start, End", "End, Start", "script, order", "film.ass"},
      {"", "Dialogue\n", "", "film.ass"},
      {"",
       "D\xC4\xB0"
       "alogue: 0,0:00:01.00,0:00:02.00,,,0,0,0,,A\n",
       "", "film.ass"},
      {"", "[Fonts]\nDialogue: 0,0:00:01.00,0:00:02.00,,,0,0,0,,A\n", "", "film.ass"},
      {"0:00:03.00", "0:00:03.000", "", "film.ass"},
      {"0:00:03.00", " 0:00:03.00", "", "film.ass"},
      {"\\N", "\\n", "verbatim", "film.ass"},
      {"\\N", "\\h", "verbatim", "film.ass"},
      {"B", "{\\i1}B", "verbatim", "film.ass"},
      {"C", "C\\ND", "verbatim, two lines", "film.ass"},
      {"B", "<i>", "signs", "film.ass"},
  };
  const TempDir dir;
  std::set<std::string> named;
  const auto expectUnmet = [&](std::string text, const Change& change) {
    const std::size_t at = change.from.empty() ? text.size() : text.find(change.from);
    text.replace(at, change.from.size(), change.to);
    EXPECT_EQ(unmetBy<char>(dir, change.name, text), change.unmet) << text;
    named.insert(change.unmet);
  };
  for (const Change& change : subRip) expectUnmet(kSubRip, change);
  for (const Change& change : script) expectUnmet(kScript, change);
  EXPECT_EQ(unmetBy<wchar_t>(dir, "film.srt", utf16(kSubRip)), "");
  EXPECT_EQ(unmetBy<wchar_t>(dir, "film.srt", utf16(kSubRip).substr(2)), "encoding");
  EXPECT_EQ(named.size(), 20U);  // each of them, none at all, and five pairs
}

}  // namespace
