// Generates the subtitle files that are measured.
#include "benchmarks/inputs.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <string_view>

namespace bench {
namespace {

using Words = std::vector<std::string>;

const Words kWords = {"a",  "and",  "before", "children", "for",   "harbour",
                      "he", "lamp", "light",  "never",    "night", "nobody",
                      "of", "said", "she",    "ship",     "the",   "where"};
const Words kRussianWords = {"дети", "и",     "корабль", "лампа", "на",  "никогда", "никто", "ночь",
                             "она",  "перед", "сказал",  "свет",  "там", "тихо",    "что",   "это"};

constexpr std::string_view kScriptHead =
    "[Script Info]\nScriptType: v4.00+\nPlayResX: 1920\nPlayResY: 1080\n\n[V4+ Styles]\n"
    "Style: Default,Sans,48,&H00FFFFFF,&H000000FF,&H00000000,&H80000000,0,0,0,0,100,100,0,0,1,2,1,"
    "2,10,10,30,1\n\n[Events]\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n";

std::string padded(int value, std::size_t digits) {
  const std::string text = std::to_string(value);
  return std::string(digits - text.size(), '0') + text;
}

std::string wholeSeconds(int t) {
  return padded(t / 3600000, 1) + ":" + padded(t / 60000 % 60, 2) + ":" + padded(t / 1000 % 60, 2);
}

std::string subRipTime(int t) { return "0" + wholeSeconds(t) + "," + padded(t % 1000, 3); }
std::string scriptTime(int t) { return wholeSeconds(t) + "." + padded(t / 10 % 100, 2); }

std::string eventLine(int start, int end, const std::string& text) {
  return "Dialogue: 0," + scriptTime(start) + "," + scriptTime(end) + ",Default,,0,0,0,," + text +
         "\n";
}

std::string subRipCue(int number, int start, int end, const std::string& text) {
  return std::to_string(number) + "\n" + subRipTime(start) + " --> " + subRipTime(end) + "\n" +
         text + "\n\n";
}

struct Range {
  int least;
  int most;
};

/// How the cues of a file follow each other, in milliseconds.
struct Pace {
  Range gap;  ///< Negative where cues overlap.
  Range length;
};

constexpr Pace kSpeech{{50, 2500}, {1000, 5000}};
constexpr Pace kOverlappingSpeech{{-500, 2500}, {1000, 5000}};
constexpr Pace kSong{{-2000, -1500}, {2000, 2500}};  // four or five lines at once

class Writer {
 public:
  explicit Writer(const Words& words) : words_(words) {}

  std::string words(int length) {
    std::string text;
    while (text.size() < static_cast<std::size_t>(length)) (text += word()) += ' ';
    text.resize(static_cast<std::size_t>(length));
    text.back() = '.';
    return text;
  }

  /// What a cue says; every seventh in two lines.
  std::string speech(std::string_view lineBreak) {
    std::string text = words(in({25, 51}));
    if (++speeches_ % 7 == 0) (text += lineBreak) += words(in({25, 51}));
    return text;
  }

  std::string styledSpeech() {
    const std::string text = speech("\\N");
    return in({0, 4}) == 0 ? "{\\i1}" + text + "{\\i0}" : text;
  }

  /// Syllables as typesetters and karaoke templates place them: a block of 50 to 200 characters
  /// before each.
  std::string typesetting() {
    std::string text;
    for (int count = in({3, 11}); count > 0; --count) ((text += block()) += word()) += ' ';
    return text + ".";
  }

  template <typename Text>
  std::string subRip(int cues, Text text) {
    std::string file;
    for (int cue = 1, end = 0; cue <= cues; ++cue) {
      const int start = end + in(kSpeech.gap);
      end = start + in(kSpeech.length);
      file += subRipCue(cue, start, end, text());
    }
    return file;
  }

  template <typename Text>
  std::string script(int events, const Pace& pace, Text text) {
    std::string file(kScriptHead);
    for (int event = 0, end = 2000; event < events; ++event) {
      const int start = end + in(pace.gap);
      end = start + in(pace.length);
      file += eventLine(start, end, text());
    }
    return file;
  }

 private:
  /// Not by a standard distribution: each standard library has its own.
  int in(Range range) {
    return range.least +
           static_cast<int>(random_() % static_cast<unsigned>(range.most - range.least + 1));
  }
  std::string block() {
    constexpr std::string_view kTags[] = {"\\bord3",
                                          "\\shad0",
                                          "\\1c&HBBEB50&",
                                          "\\3c&H000000&",
                                          "\\frz17",
                                          "\\blur0.4",
                                          "\\fscx120",
                                          "\\alpha&H40&",
                                          "\\fad(120,240)",
                                          "\\t(252,299,\\fscx139)",
                                          "\\clip(0,0,640,480)"};
    std::string block = "{\\an5\\pos(" + std::to_string(in({10, 640})) + ",61)";
    for (const auto length = static_cast<std::size_t>(in({50, 180})); block.size() < length;) {
      block += kTags[random_() % std::size(kTags)];
    }
    return block + "\\k" + std::to_string(in({10, 60})) + "}";
  }
  const std::string& word() { return words_[random_() % words_.size()]; }

  const Words& words_;
  std::mt19937 random_{1};
  int speeches_ = 0;
};

std::string utf16(std::string_view text) {
  std::string result = "\xFF\xFE";
  for (const char c : text) result += {c, '\0'};
  return result;
}

std::string withCrLf(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '\n') result += '\r';
    result += c;
  }
  return result;
}

/// Letters of Russian and ASCII in windows-1251.
std::string windows1251(std::string_view utf8) {
  std::string result;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    result += lead < 0x80 ? utf8[i] : static_cast<char>((lead << 6 & 0x40) + utf8[++i] + 0x30);
  }
  return result;
}

std::string writeFile(const std::string& name, std::string_view content) {
  std::filesystem::create_directories(INPUT_DIRECTORY);
  const std::string path = INPUT_DIRECTORY "/" + name;
  std::ofstream file(path, std::ios::binary);
  file.exceptions(std::ios::failbit | std::ios::badbit);
  file << content << std::flush;
  return path;
}

Input write(const std::string& name, const std::string& title, const std::string& text) {
  return {name, title + ", " + std::to_string((text.size() + 500) / 1000) + " KB",
          writeFile(name, text), writeFile("crlf-" + name, withCrLf(text)),
          writeFile("wide-" + name, utf16(text))};
}

}  // namespace

std::vector<Input> writeInputs() {
  Writer writer(kWords);
  const auto speech = [&] { return writer.speech("\n"); };
  const auto styledSpeech = [&] { return writer.styledSpeech(); };
  const auto typesetting = [&] { return writer.typesetting(); };
  const auto longLine = [&] { return writer.words(1'000'000); };
  return {
      write("film.srt", "SubRip, 1,400 cues", writer.subRip(1400, speech)),
      write("cap.srt", "SubRip, 4,826 cues", writer.subRip(4826, speech)),
      write("film.ass", "ASS, 1,500 events", writer.script(1500, kOverlappingSpeech, styledSpeech)),
      write("typesetting.ass", "ASS, 4,000 events of typesetting",
            writer.script(4000, kSong, typesetting)),
      write("lines.srt", "SubRip, five long lines", writer.subRip(5, longLine)),
      write("lines.ass", "ASS, five long lines", writer.script(5, kSpeech, longLine))};
}

Input writeCodePageInput() {
  Words words;
  for (const std::string& word : kRussianWords) words.push_back(windows1251(word));
  Writer writer(words);
  return write("russian.srt", "SubRip, windows-1251, 4,826 cues",
               writer.subRip(4826, [&] { return writer.speech("\n"); }));
}

Input writeStack(int cues, int atOnce) {
  constexpr int kStep = 100;
  std::string file = subRipCue(1, 0, (cues + atOnce) * kStep, "All.");
  for (int i = 1; i < cues; ++i) {
    file += subRipCue(i + 1, i * kStep, (i + atOnce) * kStep, "Cue " + std::to_string(i) + ".");
  }
  const std::string name = std::to_string(cues) + "-" + std::to_string(atOnce);
  return write(name + ".srt", name, file);
}

Input writeEvent(const std::string& name, const std::string& text) {
  return write(name + ".ass", name, std::string(kScriptHead) + eventLine(0, 1000, text));
}

}  // namespace bench
