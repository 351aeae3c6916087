// Puts every row of docs/behaviour.md to the library, in both widths: each is a test by the name of
// its line.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "behaviour_rows.h"
#include "support.h"

namespace {

using namespace behaviour;

// ---- What can be asked ----

using Answers = std::map<std::string, std::function<std::string()>>;

std::string answer(const Answers& answers, const Call& call) {
  const auto found = answers.find(call.text(0));
  if (found == answers.end()) throw Mistake("no such call: " + call.text(0));
  return found->second();
}

/// The text, stale characters included: those above FF by their numbers, all others as bytes.
template <typename Char>
std::string str(const ksBasicString<Char>& text) {
  std::ostringstream out;
  out << std::hex << std::uppercase;
  for (int i = 0; i < text.length(); ++i) {
    const unsigned long c = static_cast<std::make_unsigned_t<Char>>(text[i]);
    c > 0xFF ? out << "U+" << c : out << static_cast<char>(c);
  }
  return out.str();
}
std::string str(bool value) { return value ? "true" : "false"; }
template <std::integral Number>
std::string str(Number value) {
  return std::to_string(value);
}

template <typename Char>
class Texts {
 public:
  using Text = ksBasicString<Char>;

  void give(const std::string& content) { text_ = wide<Char>(content); }

  std::string ask(const Call& call) {
    Text& t = text_;
    const auto s = [&](std::size_t i) { return Text(wide<Char>(call.text(i))); };
    const auto n = [&](std::size_t i) { return static_cast<int>(call.number(i)); };
    const auto c = [&](std::size_t i) { return s(i)[0]; };
    const bool hasArgument = call.words.size() > 1;
    return answer(
        {
            {"setchar", [&] { return t.setchar(n(1), c(2)), str(t); }},
            {"copy", [&] { return str(t = Text(t)); }},
            {"fromInt", [&] { return str(t = Text(n(1))); }},
            {"fromPart", [&] { return str(t = Text(t.getData(), n(1))); }},
            {"addInt", [&] { return str(t = t + n(1) += n(1)); }},
            {"append", [&] { return str(t.append(s(1), n(2))); }},
            {"replace", [&] { return str(t.replace(n(1), n(2), s(3))); }},
            {"MakeLower", [&] { return str(t.MakeLower()); }},
            {"TrimLeft", [&] { return hasArgument ? t.TrimLeft(c(1)) : t.TrimLeft(), str(t); }},
            {"TrimRight", [&] { return hasArgument ? t.TrimRight(c(1)) : t.TrimRight(), str(t); }},
            {"removeSpaces", [&] { return t.removeSpaces(), str(t); }},
            {"clearSpaces", [&] { return t.clearSpaces(), str(t); }},
            {"removeQuo", [&] { return t.removeQuo(), str(t); }},
            {"removeLastChar", [&] { return t.removeLastChar(), str(t); }},
            {"deleteStr", [&] { return withoutPart(n(1), n(2)); }},
            {"replaceChars", [&] { return t.replaceChars(s(1), s(2)), str(t); }},
            {"inflate", [&] { return t.inflate(n(1), s(2), call.text(3) == "front"), str(t); }},
            {"shown", [&] { return str(Text(t.getData())); }},
            {"length", [&] { return str(t.length()); }},
            {"Left", [&] { return str(t.Left(n(1))); }},
            {"Right", [&] { return str(t.Right(n(1))); }},
            {"substr", [&] { return str(t.substr(n(1), n(2))); }},
            {"getChar",
             [&] { return str(static_cast<std::make_signed_t<Char>>(t.getChar(n(1)))); }},
            {"find", [&] { return str(t.find(s(1), n(2))); }},
            {"findChar", [&] { return str(t.find(c(1), n(2))); }},
            {"findNoCase", [&] { return str(t.findNoCase(s(1), n(2))); }},
            {"findlast", [&] { return str(t.findlast(s(1), n(2))); }},
            {"findlastNoCase", [&] { return str(t.findlastNoCase(s(1), n(2))); }},
            {"CompareNoCase",
             [&] { return str(std::clamp(t.CompareNoCase(s(1).getData()), -1, 1)); }},
            {"compareNoCase", [&] { return str(Text::compareNoCase(t, s(1), n(2))); }},
            {"isEqualNoCase", [&] { return str(Text::isEqualNoCase(t, s(1))); }},
            {"isLess", [&] { return str(t < s(1)); }},
            {"isNumeric", [&] { return str(t.isNumeric()); }},
            {"int", [&] { return str(static_cast<int>(t)); }},
            {"match",
             [&] { return matched(s(1), call.words.size() > 2, s(call.words.size() - 1)); }},
            {"matchIntoItself", [&] { return intoItself(s(1), s(2)); }},
            {"split", [&] { return bracketed(t.split(s(1))); }},
        },
        call);
  }

 private:
  static std::string bracketed(const std::map<int, Text>& pieces) {
    std::string all;
    for (const auto& [key, piece] : pieces) all += str(key) + "[" + str(piece) + "]";
    return all;
  }

  std::string withoutPart(int start, int count) {
    EXPECT_EQ(text_.deleteStr(start, count), text_.length());
    return str(text_);
  }

  std::string intoItself(const Text& pattern, const Text& replacement) {
    const int result = text_.match(pattern, &text_, true, replacement);
    return str(result) + " " + str(text_);
  }

  std::string matched(const Text& pattern, bool cut, const Text& replacement) {
    Text before = wide<Char>("old");
    Text alone = text_;
    const int result = text_.match(pattern, &before, cut, replacement);
    EXPECT_EQ(alone.match(pattern, nullptr, cut, replacement), result);
    EXPECT_EQ(alone, text_);
    return str(result) + " [" + str(before) + "][" + str(text_) + "]";
  }

  Text text_;
};

// ---- Files ----

template <typename... Values>
std::string spaced(const Values&... values) {
  std::ostringstream out;
  const char* gap = "";
  ((out << gap << values, gap = " "), ...);
  return out.str();
}

std::string hexOfEach(const auto& values) {
  std::ostringstream out;
  const char* gap = "";
  for (const std::uint64_t value : values) out << std::exchange(gap, " ") << std::hex << value;
  return out.str();
}

void writeFile(const std::string& name, std::string_view content) {
  std::ofstream(name, std::ios::binary) << content;
}

template <typename Record>
std::string recordOf(const Record& r) {
  if constexpr (requires { r.filePos; }) {
    return str(r.startTime) + " at " + str(r.filePos);
  } else if constexpr (requires { r.layer; }) {
    return str(r.layer) + " " + str(r.startTime) + "-" + str(r.endTime) + " [" + str(r.style) +
           "][" + str(r.name) + "][" + str(r.effect) + "]" + shown(r.text);
  } else {
    return describe(r);
  }
}

/// What becomes of the conversion of this line alone.
template <typename Parser, typename Text>
std::string conversionOf(const Text& line) {
  const pid_t child = fork();
  if (child == 0) {
    ualarm(300000, 0);
    Parser parser;
    parser.lines.emplace_back(line);
    _exit(parser.ConvertBufToIdxMap() ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (status == 0) return "returns";
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM ? "never returns" : "fails";
}

/// What the subtitle parsers and the manager are asked alike.
template <typename Char>
Answers hostAnswers(auto& host, const Call& call) {
  return {
      {"IsOpen", [&] { return str(host.IsOpen()); }},
      {"DurationTime", [&] { return str(host.DurationTime()); }},
      {"at", [&] { return describe(Width<Char>::ask(host, call.number(1))); }},
      {"other", [&] { return describe(Width<Char>::askOther(host, call.number(1))); }},
  };
}

/// One parser, and the file that it was given last, encoded for its width or byte by byte.
template <typename Char, typename Parser, bool kIsEncoded = true>
class File {
 public:
  void give(const std::string& content) {
    const std::size_t mark = kIsIndex ? Width<Char>::encode("").size() : 0;
    const std::string bytes = kIsEncoded ? Width<Char>::encode(content).substr(mark) : content;
    writeFile("f", bytes);
    content_ = bytes;
    hasOpened_ = open();
  }

  std::string ask(const Call& call) {
    Answers all = fileAnswers();
    if constexpr (kIsIndex) {
      all.merge(indexAnswers(call));
    } else {
      all.merge(hostAnswers<Char>(parser_, call));
    }
    if constexpr (!kIsSubRip) all.merge(fieldAnswers(call));
    if constexpr (!kIsSubRip && !kIsIndex) all.merge(scriptAnswers(call));
    return answer(all, call);
  }

 protected:
  Parser parser_;

 private:
  using Text = ksBasicString<Char>;
  static constexpr bool kIsNarrow = std::is_same_v<Char, char>;
  static constexpr bool kIsSubRip = std::is_same_v<Parser, typename Width<Char>::Srt>;
  static constexpr bool kIsIndex = requires(Parser parser) { parser.subFilePath; };

  bool open(const char* path = "f") {
    if constexpr (kIsIndex && !kIsNarrow) {
      std::wstring widePath = wide<wchar_t>(path);
      return parser_.Open(widePath.data());
    } else {
      return parser_.Open(path);
    }
  }

  Answers fileAnswers() {
    return {
        {"Open", [this] { return str(hasOpened_); }},
        {"again", [this] { return str(open()); }},
        {"opened", [this] { return str(parser_.opened); }},
        {"lines", [this] { return lines(); }},
        {"sessions",
         [this] { return joined(parser_.sessions, [](const auto& r) { return recordOf(r); }); }},
        {"count", [this] { return str(parser_.sessions.size()); }},
        {"newRecord", [this] { return recordOf(parser_.sessions[0]); }},
        {"streams", [this] { return str(openDescriptors() - openBefore_); }},
    };
  }

  Answers fieldAnswers(const Call& call) {
    return {
        {"text", [&] { return str(text_ = wide<Char>(call.text(1)).c_str()); }},
        {"rest", [this] { return str(text_); }},
        {"GetStr", [&] { return str(parser_.GetStr(text_, static_cast<Char>(call.text(1)[0]))); }},
        {"GetInt", [&] { return str(parser_.GetInt(text_, static_cast<Char>(call.text(1)[0]))); }},
    };
  }

  Answers scriptAnswers(const Call& call) {
    return {
        {"GetFloat", [&] { return spaced(parser_.GetFloat(text_, call.text(1)[0])); }},
        {"FindChar",
         [&] {
           return str(Width<Char>::findChar(parser_, text_, call.text(1)[0],
                                            static_cast<int>(call.number(2))));
         }},
        {"RemoveSSATags",
         [&] { return str(Width<Char>::removeTags(parser_, wide<Char>(call.text(1)))); }},
        {"addLine", [&] { return parser_.lines.emplace_back(wide<Char>(call.text(1))), ""; }},
        {"convertAgain", [this] { return str(parser_.ConvertBufToAssMap()); }},
        {"script",
         [this] { return spaced(parser_.playResX, parser_.playResY, str(parser_.collisions)); }},
        {"style", [this] { return style(); }},
        {"colour", [&] { return setColour(call); }},
        {"colours",
         [this] { return hexOfEach(parser_.colours) + "; " + hexOfEach(parser_.alphas); }},
    };
  }

  Answers indexAnswers(const Call& call) {
    using Time = std::conditional_t<kIsNarrow, long long, int>;
    const auto time = [&call] { return static_cast<Time>(call.number(1)); };
    return {
        {"entry", [&] { return setEntry(call); }},
        {"GetFilePos", [&, time] { return str(parser_.GetFilePos(time())); }},
        {"GetPacket", [&, time] { return packet(time()); }},
        {"palette", [this] { return hexOfEach(parser_.palette); }},
        {"colours",
         [this] {
           return spaced(str(parser_.useCustomColors), parser_.trIdx,
                         hexOfEach(parser_.customColors));
         }},
        {"OpenPath", [&] { return str(open(call.text(1).c_str())); }},
        {"subFilePath", [this] { return str(parser_.subFilePath); }},
        {"convert", [&] { return conversionOf<Parser>(wide<Char>(call.text(1))); }},
    };
  }

  std::string setColour(const Call& call) {
    const auto index = static_cast<std::size_t>(call.number(1)) % std::size(parser_.colours);
    parser_.colours[index] = static_cast<std::uint64_t>(numberOf(call.text(2), 16));
    return "";
  }

  std::string setEntry(const Call& call) {
    parser_.sessions[static_cast<int>(call.number(1))] = {call.number(2), call.number(3)};
    return "";
  }

  static std::string bracketed(const std::vector<Text>& lines) {
    std::string all;
    for (const Text& line : lines) all += "[" + str(line) + "]";
    return all;
  }

  /// The lines, which ReadString() must find as well.
  std::string lines() {
    const std::size_t start = kIsNarrow || kIsIndex ? 0 : 2;
    if (!std::filesystem::exists("f")) throw Mistake("no file given");
    EXPECT_EQ((streamLines<Char, Parser>("f", content_, start)), parser_.lines);
    return bracketed(parser_.lines);
  }

  std::string style() const {
    return spaced(str(parser_.fontName), parser_.fontSize, parser_.bold, parser_.italic,
                  parser_.fontScaleX, parser_.fontScaleY, parser_.fontSpacing, parser_.fontAngle,
                  parser_.borderStyle, parser_.outlineWidth, parser_.shadowDepth, parser_.alignment,
                  parser_.marginLeft, parser_.marginRight, parser_.marginTop, parser_.marginBottom,
                  parser_.charset);
  }

  std::string packet(auto time) {
    int size = -1;
    int ctrlOffset = -1;
    const std::unique_ptr<unsigned char[]> bytes(parser_.GetPacket(time, size, ctrlOffset));
    if (bytes) return str(ctrlOffset) + ": " + std::string(bytes.get(), bytes.get() + size);
    return size + ctrlOffset == -2 ? "null" : "null with a size";
  }

  Text text_;
  std::ptrdiff_t openBefore_ = openDescriptors();
  std::string content_;
  bool hasOpened_ = false;
};

/// Packs of a ".sub" file, each "HEADER-DATA-LENGTH SUB-STREAM PAYLOAD", and an index of one entry.
template <typename Char, typename Parser>
class Packs : public File<Char, Parser> {
 public:
  void give(const std::string& description) {
    const Words parts = split(description, " ");
    const std::size_t fields = parts.at(0).size() + parts.at(1).size() + 2;
    stream_ += pack(static_cast<int>(numberOf(parts[0])), static_cast<char>(numberOf(parts[1], 16)),
                    std::string_view(description).substr(fields));
    writeFile("film.sub", stream_);
    this->parser_.subFilePath = wide<Char>("film.sub");
    this->parser_.sessions[0] = {1000, 0};
  }

 private:
  std::string stream_;
};

/// Files, each "NAME CONTENT", or "NAME/" for a directory.
template <typename Char>
class Manager {
 public:
  void give(const std::string& file) {
    const std::size_t nameEnd = file.find(' ');
    if (file.ends_with('/')) {
      std::filesystem::create_directory(file);
    } else {
      writeFile(file.substr(0, nameEnd), Width<Char>::encode(file.substr(nameEnd + 1)));
    }
  }

  std::string ask(const Call& call) {
    Answers all = hostAnswers<Char>(manager_, call);
    all["Open"] = [&] {
      const std::string& path = call.text(1);
      return str(manager_.Open(path == "null" ? nullptr : path.c_str()));
    };
    return answer(all, call);
  }

 private:
  ksSubtitleManager manager_;
};

// ---- The rows ----

/// The answer of a new object to the last of the calls that `row` asks.
template <typename Object>
std::string put(const Row& row) try {
  const WorkingDir dir;
  Object object;
  std::string last;
  for (const std::string& content : row.given) object.give(content);
  for (const std::string& call : split(row.ask, "; ")) last = object.ask(Call(call));
  return last;
} catch (const std::out_of_range&) {
  return "throws out_of_range";
} catch (const std::length_error&) {
  return "throws length_error";
} catch (int value) {
  return "throws int " + str(value);
} catch (const Mistake& mistake) {
  return std::string("a mistake in the row: ") + mistake.what();
}

using Put = std::string (*)(const Row&);

/// A table of one section is put to both widths, or to the wide one alone.
const std::map<std::string, std::array<Put, 2>> kSubjects = {
    {"Texts", {put<Texts<char>>, put<Texts<wchar_t>>}},
    {"SubRip", {put<File<char, ksSrtParser>>, put<File<wchar_t, ksSrtParserU>>}},
    {"ASS and SSA", {put<File<char, ksAssParser>>, put<File<wchar_t, ksAssParserU>>}},
    {"Bytes of wide files", {nullptr, put<File<wchar_t, ksSrtParserU, false>>}},
    {"Bytes of wide indexes", {nullptr, put<File<wchar_t, ksIdxParserU, false>>}},
    {"VobSub indexes", {put<File<char, ksIdxParser>>, put<File<wchar_t, ksIdxParserU>>}},
    {"VobSub units", {put<Packs<char, ksIdxParser>>, put<Packs<wchar_t, ksIdxParserU>>}},
    {"Manager", {put<Manager<char>>, put<Manager<wchar_t>>}},
};

class TestOf : public testing::Test {
 public:
  explicit TestOf(std::function<void()> body) : body_(std::move(body)) {}
  void TestBody() override { body_(); }

 private:
  std::function<void()> body_;
};

void addTest(const std::string& subject, const std::string& name, int line,
             const std::function<void()>& body) {
  std::string suite = "Behaviour." + subject;
  std::ranges::replace(suite, ' ', '_');
  testing::RegisterTest(suite.c_str(), name.c_str(), nullptr, nullptr, BEHAVIOUR_TABLES, line,
                        [body]() -> testing::Test* { return new TestOf(body); });
}

/// Makes a test of each row and width, such as Behaviour.SubRip.line_301_wide.
bool addTests() try {
  for (const Row& row : RowReader().read()) {
    for (const bool isWide : {false, true}) {
      const Put ask = kSubjects.at(row.subject)[isWide];
      if (ask == nullptr) continue;
      const std::string name = "line_" + str(row.line) + (isWide ? "_wide" : "_narrow");
      addTest(row.subject, name, row.line, [=] {
        EXPECT_EQ(ask(row), row.answers[isWide]) << row.behaviour << ": " << row.ask;
      });
    }
  }
  return true;
} catch (const std::exception& mistake) {
  addTest("Table", "isRead", 1, [what = std::string(mistake.what())] { FAIL() << what; });
  return false;
}

[[maybe_unused]] const bool kAdded = addTests();

}  // namespace
