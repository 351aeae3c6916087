// Compares a number for all answers of the library to a fixed set of questions with the one that is
// kept. It is the same on every platform.
#include <bit>
#include <clocale>
#include <concepts>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <utility>

#include "tests/kept_answers.h"

namespace {

using namespace std::string_literals;

/// FNV-1a over everything that is added, in the same form on every platform.
class Digest {
 public:
  template <typename... Values>
  void add(const Values&... values) {
    (addOne(values), ...);
  }
  std::uint64_t value() const { return value_; }

 private:
  void addOne(std::integral auto number) {
    using Signed = std::make_signed_t<
        std::conditional_t<std::same_as<decltype(number), bool>, char, decltype(number)>>;
    auto bits = static_cast<std::uint64_t>(std::int64_t{static_cast<Signed>(number)});
    for (int i = 0; i < 8; ++i, bits >>= 8) value_ = (value_ ^ (bits & 0xFF)) * 0x100000001B3;
  }
  void addOne(double number) { addOne(std::bit_cast<std::int64_t>(number)); }
  template <typename Char>
  void addOne(const ksBasicString<Char>& text) {
    addOne(text.length());
    for (int i = 0; i <= text.length(); ++i) addOne(text[i]);
  }
  template <typename Element, std::size_t kSize>
  void addOne(const Element (&array)[kSize]) {
    for (const Element& element : array) addOne(element);
  }
  template <typename Element>
  void addOne(const std::vector<Element>& elements) {
    for (const Element& element : elements) addOne(element);
  }
  void addOne(const auto& record) requires requires { record.start; }
  { add(record.start, record.end, record.text); }
  void addOne(const auto& record) requires requires { record.filePos; }
  { add(record.startTime, record.filePos); }
  void addOne(const auto& event) requires requires { event.layer; }
  {
    add(event.layer, event.startTime, event.endTime, event.text, event.style, event.name,
        event.effect);
  }

  std::uint64_t value_ = 0xCBF29CE484222325;
};

Digest digest;
std::mt19937 generator(20261123);

int below(std::size_t count) { return static_cast<int>(generator() % count); }

const auto& anyOf(const auto& choices) {
  return choices[static_cast<std::size_t>(below(std::size(choices)))];
}

// ---- Texts ----

template <typename Char>
std::basic_string<Char> anyText(int longest) {
  constexpr std::uint32_t kWide[] = {0x130,   0x131,   0x3C3,      0x212A,   0xFFFD,
                                     0x10400, 0x1F600, 0x7FFFFFFF, 1U << 31, 0xFFFFFFFF};
  constexpr std::string_view kBytes = " \"*abAB0129-\r\n\t\0\x7F\x80\xC4\xE4\xFF";
  std::basic_string<Char> text;
  for (int i = below(static_cast<std::size_t>(longest) + 1); i > 0; --i) {
    const bool isByte = sizeof(Char) == 1 || below(3) > 0;
    text += static_cast<Char>(isByte ? static_cast<unsigned char>(anyOf(kBytes)) : anyOf(kWide));
  }
  return text;
}

template <typename Char>
struct Arguments {
  ksBasicString<Char> first = anyText<Char>(3);
  ksBasicString<Char> second = anyText<Char>(3);
  int at = below(14) - 2;
  int count = below(14) - 2;
  Char c = anyText<Char>(3)[0];

  bool neverEnds() const { return second.find(first, 0) == 0; }
};

template <typename Char>
using Change = void (*)(ksBasicString<Char>&, const Arguments<Char>&);

template <typename Char>
constexpr Change<Char> kChanges[] = {
    [](auto& t, auto& a) { t = t.substr(a.at, a.count); },
    [](auto& t, auto& a) { t = t.Left(a.at) + a.count + t.Right(a.count); },
    [](auto& t, auto& a) { t.replace(a.at, a.count, a.first); },
    [](auto& t, auto& a) { t.setchar(a.at, a.c); },
    [](auto& t, auto& a) { t.setchar(t.length(), a.c); },
    [](auto& t, auto& a) { t.setchar(t.length(), a.c), t.removeLastChar(); },
    [](auto& t, auto&) { t.MakeLower(); },
    [](auto& t, auto& a) { (t += a.first).TrimLeft(a.c); },
    [](auto& t, auto& a) { (t += a.c).TrimRight(a.c); },
    [](auto& t, auto&) { t.removeSpaces(); },
    [](auto& t, auto&) { t.clearSpaces(); },
    [](auto& t, auto&) { t.removeQuo(); },
    [](auto& t, auto&) { t.removeLastChar(); },
    [](auto& t, auto& a) { t.deleteStr(a.at, a.count); },
    [](auto& t, auto& a) { a.neverEnds() ? t.clear() : t.replaceChars(a.first, a.second); },
    [](auto& t, auto& a) { digest.add(t.match(a.first, &t, a.count > 4, a.second)); },
    [](auto& t, auto& a) { a.first.isEmpty() ? t.erase() : t.inflate(a.at * 2, a.first, true); },
};

template <typename Char>
void askText(const ksBasicString<Char>& t, const Arguments<Char>& a) {
  using Text = ksBasicString<Char>;
  digest.add(static_cast<int>(t), t.getChar(a.at), t.find(a.c, a.at), t.find(a.first, a.at),
             t.findNoCase(a.first, a.at), t.findlast(a.first, a.at),
             t.findlastNoCase(a.first, a.at), t.isNumeric(), t<a.first, t> a.first,
             t.CompareNoCase(a.first), Text::isEqualNoCase(t, a.first));
  digest.add(Text::compareNoCase(t, a.first, std::min(t.length(), a.first.length())));
  if (a.first.isEmpty()) return;
  for (const auto& [key, piece] : t.split(a.first)) digest.add(key, piece);
}

template <typename Char>
void askTexts() {
  constexpr int kLongest = 12;
  for (int i = 0; i < 4000; ++i) {
    ksBasicString<Char> text = anyText<Char>(kLongest);
    for (int steps = 0; steps < 10; ++steps) {
      const Arguments<Char> arguments;
      askText(text, arguments);
      try {
        anyOf(kChanges<Char>)(text, arguments);
      } catch (const std::out_of_range&) {
        digest.add(-1);
      }
      digest.add(text);
    }
  }
  for (const std::string number : {"2147483648", " -2147483649", "9223372036854775808x",
                                   "-99999999999999999999", "+4294967297",
                                   "11111111111111111111111"
                                   "1111111111111",
                                   "zzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzzz"}) {
    digest.add(static_cast<int>(ksBasicString<Char>(wide<Char>(number))));
  }
}

// ---- Files ----

const std::string kSrt =
    "1\n00:00:01,000 --> 00:00:04,000\nHello\nworld\nagain\n\n"
    "4294967298\n00:00:03,500 --> 99999999999999999999:00:05,000\n\xE9t\xC3\xA9 \x80\xFF \xE4\n"
    "99999999999999999999\n596:31:23,648 --> 2147483648:4294967297:9223372036854775808,1\nlate\n"
    "18446744073709551617\n  0:0:2.5 -->0:0:7,99999999999\n x y\n"
    "5\n00:00:06,000 --> 00:00:09,000\n<i>{\\b1}tags</i>\nlast";
const std::string kAss =
    "ScriptType: v4.00+\nPlayResX: 4294967936\nPlayResY:99999999999999999999\nCollisions: reverse\n"
    "[V4+ Styles]\nStyle: *N,Arial \xE9,20.5,-1,0,90.25,1e400,nan,0x1p3,3,1e-50,-.5,7,10,"
    "9223372036854775808,-4294967297,204,9\n"
    "Style: N,Arial,20,&H00FFFFFF,&H000000FF,&H0,&H0,-1,0,0,0,100,100,0,0,1,2,2,2,10,10,10,1\n"
    "Dialogue: 3,0:00:01.50,1:02:03.04,*default,Bob,1,2,3,Fx,Hello, {\\k20}wor{\\k30}ld\\N\\Nbye\n"
    "Dialogue: 4294967299,0:00:02.00,596523:14:08.99999999999,*D\xE9,\xE4,0,0,0,,<i>{a}{ x}>y\n"
    "Dialogue: 0,0:00:01.00,0:00:09.00,Default,,0,0,0,kar,{\\k10}k{\\kf99999999999}a{\\ko}r\n";
const std::string kIdx =
    "# VobSub index\npalette: 1,ffffffffff,123456789,100000000,-1,0xAB, fffffffffffffffff,7\n"
    "custom colors: ON, tridx: 100001000, colors: 1ffffffff, 80, 99999999999999999999, 0\n"
    "timestamp: 00:00:01:000, filepos: 000000a00\ntimestamp: 00:00:02:000, filepos: 123456789\n"
    "timestamp: 4294967296:2147483648:99999999999999999999:4294967297, filepos: fffffffff0\n"
    "timestamp: -1:0:9223372036854775808:5, filepos: -1\nlangidx: \xE9\n"
    "timestamp: 00:00:03:000, filepos: 99999999999999999999999\n";

std::string damaged(std::string file) {
  const std::string pieces[] = {"",    "\n",   "\r\n", "99999999999", "4294967296", ":", ",",
                                "-->", " ",    "*",    "{",           "}",          "-", "<>",
                                "\\N", "\x80", "A",    "\xD8\x3D",    "\0"s,        "0x"};
  for (int changes = 1 + below(5); changes > 0; --changes) {
    const auto at = static_cast<std::size_t>(below(file.size()));
    const auto count = static_cast<std::size_t>(below(4));
    file.replace(at, count, anyOf(pieces));
  }
  return file;
}

std::string withLineEnds(const std::string& file) {
  std::string result;
  for (const char c : file) result += c == '\n' ? "\r\n" : std::string(1, c);
  return result;
}

/// UTF-16LE after its BOM, with surrogates for two of the letters.
std::string utf16(const std::string& file) {
  std::string result = Width<wchar_t>::encode(file);
  for (std::size_t i = 2; i < result.size(); i += 2) {
    if (result[i] == '\xE9') result.replace(i, 2, "\x3D\xD8\0\xDE"s);  // U+1F600
    if (result[i] == '\xE4') result.replace(i, 2, "\0\xDC"s);
  }
  return result;
}

template <typename Char, typename Parser>
void askParser(const std::string& path) {
  Parser parser;
  digest.add(parser.Open(path.c_str()));
  digest.add(parser.DurationTime(), parser.lines);
  for (const auto& [key, record] : std::as_const(parser.sessions)) digest.add(key, record);
  if constexpr (requires { parser.playResX; }) {
    digest.add(parser.collisions, parser.playResX, parser.playResY, parser.marginLeft,
               parser.marginTop, parser.marginRight, parser.marginBottom, parser.colours,
               parser.alphas, parser.fontName, parser.charset, parser.alignment, parser.borderStyle,
               parser.fontSize, parser.fontScaleX, parser.fontScaleY, parser.fontSpacing,
               parser.fontAngle, parser.outlineWidth, parser.shadowDepth, parser.bold,
               parser.italic);
  }
}

void askManager(const std::string& path) {
  ksSubtitleManager manager;
  digest.add(manager.Open(path.c_str()));
  digest.add(manager.IsOpen(), manager.DurationTime());
  for (long long t = -500; t < 12000; t += 500) {
    digest.add(manager.GetSubTitle(t), manager.GetSubTitleU(t));
  }
}

/// Whether docs/limits.md says that the conversion of these lines does not return.
template <typename Char, typename Parser>
bool neverReturns(const std::string& path) {
  Parser parser;
  parser.file = sub_fopen(path.c_str(), "rb");
  ksBasicString<Char> line;
  bool found = false;
  while (!found && parser.ReadString(line)) {
    ksBasicString<Char> text = line;
    text.removeSpaces();
    found = !line.isEmpty() && (text.isEmpty() || text[0] == ';' || text[0] == 0);
  }
  std::fclose(parser.file);
  return found;
}

template <typename Char, typename Parser>
void askIndex(std::basic_string<Char> path) {
  if (neverReturns<Char, Parser>(std::string(path.begin(), path.end()))) return;
  Parser parser;
  try {
    digest.add(parser.Open(path.data()));
  } catch (const std::out_of_range&) {
    digest.add(-1);
  }
  digest.add(parser.lines, parser.palette, parser.customColors, parser.trIdx,
             parser.useCustomColors, parser.subFilePath);
  for (int t = -500; t < 4000; t += 300) digest.add(parser.GetFilePos(t));
  for (const auto& [key, entry] : std::as_const(parser.sessions)) digest.add(key, entry);
}

void askFiles(const TempDir& dir, const std::string& srt, const std::string& ass,
              const std::string& idx) {
  for (const auto& encode : {+[](const std::string& file) { return file; }, utf16,
                             +[](const std::string& file) { return "\xFF\xFE" + file; }}) {
    const std::string srtPath = dir.write("film.srt", encode(srt));
    const std::string assPath = dir.write("film.ass", encode(ass));
    askParser<char, ksSrtParser>(srtPath);
    askParser<wchar_t, ksSrtParserU>(srtPath);
    askParser<char, ksAssParser>(assPath);
    askParser<wchar_t, ksAssParserU>(assPath);
    askManager(srtPath);
    askManager(assPath);
    dir.write("i", encode(idx));  // one character, which is all of a name that the wide class takes
    askIndex<char, ksIdxParser>("i");
    askIndex<wchar_t, ksIdxParserU>(L"i");
  }
}

/// The size of a file counts modulo 4 GiB, and positions reach that far.
void askLargeFiles(const TempDir& dir) {
  const std::string srt = dir.write("film.srt", kSrt);
  for (const std::uintmax_t size : {0x7FFFFFFFULL, 0x80000000ULL, 0x100000000ULL, 0x100001000ULL}) {
    std::filesystem::resize_file(srt, size);
    askManager(srt);
  }
  std::string unit = "\0\x06\0\x04"s + "ab";
  constexpr std::uintmax_t kFar = 0xC0000000;
  const std::string sub = dir.write("film.sub", "");
  std::filesystem::resize_file(sub, kFar);
  std::ofstream(sub, std::ios::binary | std::ios::app) << pack(5, ' ', unit);
  ksIdxParser parser;
  parser.Open(dir.write("film.idx", "timestamp: 00:00:01:000, filepos: c0000000\n").c_str());
  parser.subFilePath = sub.c_str();
  int size = 0;
  int control = 0;
  const std::unique_ptr<unsigned char[]> packet(parser.GetPacket(1000, size, control));
  digest.add(packet != nullptr, size, control);
  for (int i = 0; packet && i < size; ++i) digest.add(packet[static_cast<std::size_t>(i)]);
}

}  // namespace

int main(int, char** arguments) {
  if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) return 1;
  askTexts<char>();
  askTexts<wchar_t>();
  const std::string kept = std::filesystem::absolute(arguments[1]);
  const WorkingDir dir;
  askFiles(dir, kSrt, kAss, kIdx);
  askFiles(dir, withLineEnds(kSrt), withLineEnds(kAss), withLineEnds(kIdx));
  for (int i = 0; i < 300; ++i) {
    const std::string srt = damaged(kSrt);
    const std::string ass = damaged(kAss);
    askFiles(dir, srt, ass, damaged(kIdx));
  }
  askLargeFiles(dir);
  std::ostringstream answers;
  answers << "all " << std::hex << digest.value() << '\n';
  return compareWithKept(answers.str(), kept.c_str());
}
