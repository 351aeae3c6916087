// ASS and SSA scripts: one walk over the lines, in which events become records and the script's
// state stays in the parser.
#include "kssubtitle/parsers/ass/ksAssParser.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "kssubtitle/parsers/ass/event_line.h"
#include "kssubtitle/parsers/ass/override_tags.h"
#include "kssubtitle/parsers/ass/style_line.h"
#include "kssubtitle/parsers/line_key.h"
#include "kssubtitle/parsers/reading/load_file.h"
#include "kssubtitle/parsers/session_table.h"

namespace {

using namespace kssubtitle::internal;

enum class Key {
  kPlayResX,
  kPlayResY,
  kScriptType,
  kCollisions,
  kSsaStyles,
  kAssStyles,
  kStyle,
  kDialogue,
  kOther
};

// The most frequent one first.
constexpr KeyName<Key> kKeyNames[] = {
    {"dialogue", Key::kDialogue},     {"style", Key::kStyle},
    {"playresx", Key::kPlayResX},     {"playresy", Key::kPlayResY},
    {"scripttype", Key::kScriptType}, {"collisions", Key::kCollisions},
    {"[v4 styles]", Key::kSsaStyles}, {"[v4+ styles]", Key::kAssStyles},
};

template <typename Char>
bool equals(std::basic_string_view<Char> text, std::string_view literal) noexcept {
  return std::equal(text.begin(), text.end(), literal.begin(), literal.end());
}

/// Whether `text` ends with `ending`, which holds no letters.
template <typename Char>
bool endsWith(std::basic_string_view<Char> text, std::string_view ending) noexcept {
  return text.size() >= ending.size() && equals(text.substr(text.size() - ending.size()), ending);
}

/// Walks the lines of one script. The script type decides how events are read, the script type and
/// the section headers how styles are.
template <typename Char, typename Parser>
class AssConverter {
 public:
  explicit AssConverter(Parser& parser) : parser_(parser) {}

  void convert() {
    for (const ksBasicString<Char>& line : parser_.lines) convertLine(line);
    SessionAccess::buildTable(parser_.sessions);
  }

 private:
  using String = std::basic_string<Char>;

  /// Blank lines and comments need no care: their keys are none.
  void convertLine(const ksBasicString<Char>& stored) {
    line_.assign(stored.getData(), static_cast<std::size_t>(stored.length()));
    ColumnReader<Char> reader(line_);
    reader.trimBothSides();
    const Key key = keyOf(reader.text(Char{':'}), kKeyNames, Key::kOther);
    convertValue(key, reader);
  }

  void convertValue(Key key, ColumnReader<Char>& value) {
    switch (key) {
      case Key::kPlayResX:
        parser_.playResX = value.integer();
        break;
      case Key::kPlayResY:
        parser_.playResY = value.integer();
        break;
      case Key::kScriptType:
        readScriptType(value.rest());
        break;
      case Key::kCollisions:
        readCollisions(String(value.text()));
        break;
      case Key::kSsaStyles:
        styleLevel_ = FormatLevel::kSsaV4;
        break;
      case Key::kAssStyles:
        styleLevel_ = FormatLevel::kAssV4Plus;
        break;
      case Key::kStyle:
        readStyleLine(value, styleLevel_, parser_);
        break;
      case Key::kDialogue:
        readEventLine(value, eventLevel_, tags_,
                      SessionAccess::record(parser_.sessions, nextKey_++));
        break;
      case Key::kOther:
        break;
    }
  }

  void readScriptType(std::basic_string_view<Char> value) noexcept {
    if (endsWith(value, "4.00")) eventLevel_ = styleLevel_ = FormatLevel::kSsaV4;
    if (endsWith(value, "4.00+")) eventLevel_ = styleLevel_ = FormatLevel::kAssV4Plus;
  }

  void readCollisions(ksBasicString<Char> value) {
    constexpr Char kReverse[] = {'r', 'e', 'v', 'e', 'r', 's', 'e', 0};
    constexpr Char kYes[] = {'1', 0};
    constexpr Char kNo[] = {'0', 0};
    parser_.collisions = value.MakeLower().find(kReverse, 0) >= 0 ? kYes : kNo;
  }

  Parser& parser_;
  String line_;
  OverrideTagRemover<Char> tags_;
  int nextKey_ = 1;
  FormatLevel eventLevel_ = FormatLevel::kUnknown;
  FormatLevel styleLevel_ = FormatLevel::kUnknown;
};

/// A narrow character as a signed one, on every processor.
wchar_t widened(char c) noexcept { return static_cast<wchar_t>(static_cast<signed char>(c)); }

/// Deliberate: adds a record if the key is missing, so that an empty map grows with every call.
template <typename Sessions>
long long lastEnd(Sessions& sessions) {
  const int key = static_cast<int>(sessions.size());
  const auto last = sessions.find(key);
  if (last != sessions.end()) return last->second.endTime;  // a look leaves the table
  return SessionAccess::record(sessions, key).endTime;
}

template <typename Char>
ksBasicString<Char> takeText(ksBasicString<Char>& s, Char separator) {
  return takeColumn(s, [separator](ColumnReader<Char>& reader) {
    return ksBasicString<Char>(std::basic_string<Char>(reader.text(separator)));
  });
}

template <typename Char>
int takeInteger(ksBasicString<Char>& s, Char separator) {
  return takeColumn(s,
                    [separator](ColumnReader<Char>& reader) { return reader.integer(separator); });
}

template <typename Char>
double takeReal(ksBasicString<Char>& s, Char separator) {
  return takeColumn(s, [separator](ColumnReader<Char>& reader) { return reader.real(separator); });
}

template <typename Char>
ksBasicString<Char> withoutTags(const ksBasicString<Char>& text) {
  const std::basic_string<Char> copy(viewOf(text));  // with a NUL after it, whatever setchar() did
  return std::basic_string<Char>(OverrideTagRemover<Char>().clean(copy));
}

}  // namespace

template class ksSessionMap<ASS_SESSION_ST>;
template class ksSessionMap<ASS_SESSION_ST_U>;

bool ksAssParser::Open(const char* path) {
  sessions.clear();
  return openAndConvert<kScriptFile<char>>(*this, path, &ksAssParser::ConvertBufToAssMap);
}

long long ksAssParser::DurationTime() { return lastEnd(sessions); }

SUBTITLE_ST ksAssParser::GetSubTitle(long long t) { return answerAt<SUBTITLE_ST>(sessions, t); }

SUBTITLE_ST_U ksAssParser::GetSubTitleU(long long) { return {}; }

bool ksAssParser::ReadString(ksString& out) { return readStreamLine<kScriptFile<char>>(file, out); }

bool ksAssParser::ConvertBufToAssMap() {
  AssConverter<char, ksAssParser>(*this).convert();
  return true;
}

ksString ksAssParser::GetStr(ksString& s, char sep) { return takeText(s, sep); }

int ksAssParser::GetInt(ksString& s, char sep) { return takeInteger(s, sep); }

double ksAssParser::GetFloat(ksString& s, char sep) { return takeReal(s, sep); }

int ksAssParser::FindChar(ksString s, char c, int start, int) {
  return s.find(c, std::max(start, 0));
}

ksString ksAssParser::RemoveSSATags(ksString s, int) { return withoutTags(s); }

bool ksAssParserU::Open(const char* path) {
  sessions.clear();
  return openAndConvert<kScriptFile<wchar_t>>(*this, path, &ksAssParserU::ConvertBufToAssMap);
}

long long ksAssParserU::DurationTime() { return lastEnd(sessions); }

SUBTITLE_ST ksAssParserU::GetSubTitle(long long) { return {}; }

SUBTITLE_ST_U ksAssParserU::GetSubTitleU(long long t) {
  return answerAt<SUBTITLE_ST_U>(sessions, t);
}

bool ksAssParserU::ReadString(ksWString& out) {
  return readStreamLine<kScriptFile<wchar_t>>(file, out);
}

bool ksAssParserU::ConvertBufToAssMap() {
  AssConverter<wchar_t, ksAssParserU>(*this).convert();
  return true;
}

ksWString ksAssParserU::GetStr(ksWString& s, wchar_t sep) { return takeText(s, sep); }

int ksAssParserU::GetInt(ksWString& s, wchar_t sep) { return takeInteger(s, sep); }

double ksAssParserU::GetFloat(ksWString& s, char sep) { return takeReal(s, widened(sep)); }

int ksAssParserU::FindChar(ksWString s, char c, int start) { return s.find(widened(c), start); }

ksWString ksAssParserU::RemoveSSATags(ksWString s) { return withoutTags(s); }
