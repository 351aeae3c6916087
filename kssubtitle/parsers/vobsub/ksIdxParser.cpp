// VobSub indexes. The two widths share every step here but for the rules in IdxRules.
#include "kssubtitle/parsers/vobsub/ksIdxParser.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <cwchar>
#include <memory>
#include <span>
#include <string>

#include "kssubtitle/parsers/column_reader.h"
#include "kssubtitle/parsers/line_key.h"
#include "kssubtitle/parsers/reading/load_file.h"
#include "kssubtitle/parsers/times.h"
#include "kssubtitle/parsers/vobsub/program_stream_pack.h"
#include "kssubtitle/strings/view.h"

namespace {

using namespace kssubtitle::internal;

enum class Key { kTimestamp, kPalette, kCustomColors, kOther };

constexpr KeyName<Key> kKeyNames[] = {
    {"timestamp", Key::kTimestamp},
    {"palette", Key::kPalette},
    {"custom colors", Key::kCustomColors},
};

/// What differs between the two widths, on purpose.
template <typename Char>
struct IdxRules;

template <>
struct IdxRules<char> {
  /// Keeps the extension, and loses what precedes it.
  static ksString subFilePath(const ksString& path) {
    return path.substr(path.find('.', 0), path.length()) + "sub";
  }
  /// The key of the entry on line `index`, the `count`th one of the conversion.
  static int key(int index, int /*count*/) noexcept { return index; }
  static constexpr int kFilePosLength = 8;  // of "filepos:"
  static constexpr unsigned long long kWindow = 499;
  /// How many keys a lookup visits: the entries that it adds count.
  static std::size_t keysToVisit(std::size_t /*atStart*/, std::size_t now) noexcept { return now; }
  static constexpr char kTokenFormat[] = "%79s";
  /// What an entry holds whose position does not scan.
  static long long initialFilePos(long long before) noexcept { return before; }
};

template <>
struct IdxRules<wchar_t> {
  static ksWString subFilePath(const ksWString& path) {
    return path.Left(path.find(L'.', 0) + 1) + L"sub";
  }
  static int key(int /*index*/, int count) noexcept { return count; }
  static constexpr int kFilePosLength = 7;  // leaves the colon, on which every number ends
  static constexpr unsigned long long kWindow = 999;
  static std::size_t keysToVisit(std::size_t atStart, std::size_t /*now*/) noexcept {
    return atStart;
  }
  static constexpr char kTokenFormat[] = "%79ls";
  static long long initialFilePos(long long /*before*/) noexcept { return 0; }
};

/// Text of one width from a literal.
template <typename Char>
ksBasicString<Char> literal(const char* text) {
  return std::basic_string<Char>(text, text + std::strlen(text));
}

// ---- Scanning, with the 8-bit format for both widths ----
//
// Numbers of 32 bits are read as longer ones and cut, as a C library does whose `long` has 64 bits;
// others cut a number that is too large in another way.

/// How many fields were found, or EOF.
[[gnu::format(scanf, 2, 3)]] int scan(const ksString& text, const char* format, ...) {
  std::va_list fields;
  va_start(fields, format);
  const int count = std::vsscanf(text.getData(), format, fields);
  va_end(fields);
  return count;
}

[[gnu::format(scanf, 2, 3)]] int scan(const ksWString& text, const char* format, ...) {
  const ksWString wideFormat = literal<wchar_t>(format);
  std::va_list fields;
  va_start(fields, format);
  const int count = std::vswscanf(text.getData(), wideFormat.getData(), fields);
  va_end(fields);
  return count;
}

/// Stores the first `count` numbers; what was not found stays.
void store(const unsigned long long* numbers, int count, std::uint32_t* to) noexcept {
  for (int i = 0; i < count; ++i) to[i] = static_cast<std::uint32_t>(numbers[i]);
}

/// Deliberate: what glibc finds with "%I64x" where `long` has 64 bits, whatever the C library. Of a
/// position at most 64 characters are read, and of the number only the low 32 bits are stored.
template <typename Char>
long long scanFilePos(const ksBasicString<Char>& text, long long initial) {
  constexpr long long kLow32 = 0xFFFFFFFF;
  unsigned long long number = 0;
  if (scan(text, "%64llx", &number) != 1) return initial;
  return (initial & ~kLow32) | (static_cast<long long>(number) & kLow32);
}

/// Four digits, each 0 or 1, as a mask: the first digit is bit 0.
std::uint32_t foldDigits(std::uint32_t v) noexcept {
  return ((v >> 12) & 1) | ((v >> 7) & 2) | ((v >> 2) & 4) | ((v & 1) * 8);
}

/// Never returns. A loop with a volatile access is one that no optimiser may leave out.
// GCOVR_EXCL_START: a process that gets here does not live to write its counters
[[noreturn]] void repeatEndlessly() noexcept {
  volatile bool again = true;
  for (;;) again = !again;
}
// GCOVR_EXCL_STOP

/// What follows `key` in `value`, or what would follow it if it began at -1.
template <typename Char>
ksBasicString<Char> behind(const ksBasicString<Char>& value, const char* key, int keyLength) {
  return value.substr(value.find(literal<Char>(key), 0) + keyLength, value.length());
}

/// Turns the lines of an index into entries and colours.
template <typename Char, typename Parser>
class IdxConverter {
 public:
  explicit IdxConverter(Parser& parser) : parser_(parser) {}

  void convert() {
    const int count = static_cast<int>(parser_.lines.size());
    for (int i = 0; i < count; ++i) convertLine(i);
  }

 private:
  using String = ksBasicString<Char>;

  void convertLine(int index) {
    const String& stored = parser_.lines[static_cast<std::size_t>(index)];
    line_.assign(stored.getData(), static_cast<std::size_t>(stored.length()));
    ColumnReader<Char> reader(line_);
    reader.trimBothSides();
    // Deliberate: such a line is taken up again and again.
    if (reader.rest().empty() || reader.rest().front() == ';') repeatEndlessly();
    const Key key = keyOf(reader.text(Char{':'}), kKeyNames, Key::kOther);
    convertValue(key, reader.rest(), index);
  }

  void convertValue(Key key, std::basic_string_view<Char> value, int index) {
    using Text = std::basic_string<Char>;
    switch (key) {
      case Key::kTimestamp:
        readTimestamp(Text(value), index);
        break;
      case Key::kPalette:
        readPalette(Text(value));
        break;
      case Key::kCustomColors:
        readCustomColors(Text(value));
        break;
      case Key::kOther:
        break;
    }
  }

  void readPalette(const String& value) {
    unsigned long long n[16];
    const int count = scan(value,
                           "%llx,%llx,%llx,%llx,%llx,%llx,%llx,%llx,"
                           "%llx,%llx,%llx,%llx,%llx,%llx,%llx,%llx",
                           n, n + 1, n + 2, n + 3, n + 4, n + 5, n + 6, n + 7, n + 8, n + 9, n + 10,
                           n + 11, n + 12, n + 13, n + 14, n + 15);
    store(n, count, parser_.palette);
  }

  void readCustomColors(const String& value) {
    readSwitch(value);
    const String mask = behind(value, "tridx:", 6);
    unsigned long long n[4];
    store(n, scan(mask, "%llx", n), &parser_.trIdx);
    parser_.trIdx = foldDigits(parser_.trIdx);
    const int count =
        scan(behind(mask, "colors:", 7), "%llx,%llx,%llx,%llx", n, n + 1, n + 2, n + 3);
    store(n, count, parser_.customColors);
  }

  void readSwitch(const String& value) {
    constexpr std::size_t kTokenSize = 80;
    Char buffer[kTokenSize] = {};
    scan(value, IdxRules<Char>::kTokenFormat, buffer);
    const String token = buffer;
    if (token.Left(2) == literal<Char>("ON") || token.getChar(0) == '1') {
      parser_.useCustomColors = true;
    } else if (token.getChar(0) == '0' || token.Left(3) == literal<Char>("OFF")) {
      parser_.useCustomColors = false;
    }
  }

  void readTimestamp(const String& value, int index) {
    long long fields[4] = {};
    scan(value, "%lld:%lld:%lld:%lld", fields, fields + 1, fields + 2, fields + 3);
    auto& entry = parser_.sessions[IdxRules<Char>::key(index, entries_)];
    // Deliberate: hours and minutes alone wrap at 32 bits.
    entry.startTime =
        milliseconds32(static_cast<int>(fields[0]), static_cast<int>(fields[1]), 0, 0) +
        static_cast<int>(fields[2]) * 1000LL + static_cast<int>(fields[3]);
    const String position = behind(value, "filepos:", IdxRules<Char>::kFilePosLength);
    entry.filePos = scanFilePos(position, IdxRules<Char>::initialFilePos(entry.filePos));
    ++entries_;
  }

  Parser& parser_;
  std::basic_string<Char> line_;
  int entries_ = 0;
};

template <typename Char>
ksBasicString<Char> takeTextOrThrow(ksBasicString<Char>& s, Char separator) {
  s.TrimLeft();
  if (s.isEmpty()) throw 1;
  return takeColumn(s, [separator](ColumnReader<Char>& reader) {
    return ksBasicString<Char>(std::basic_string<Char>(reader.upTo(separator)));
  });
}

template <typename Char>
int takeIntegerOrThrow(ksBasicString<Char>& s, Char separator) {
  const ksBasicString<Char> token = takeTextOrThrow(s, separator);
  return integerOf(viewOf(token));
}

unsigned long long distance(long long a, long long b) noexcept {
  const auto [least, greatest] = std::minmax(a, b);
  return static_cast<unsigned long long>(greatest) - static_cast<unsigned long long>(least);
}

/// Deliberate: operator[] adds an empty entry for each key that is missing, which may then be the
/// one that is found.
template <typename Char, typename Sessions>
long long filePosAt(Sessions& sessions, long long t) {
  if (t < 1) return 0;
  const std::size_t atStart = sessions.size();
  for (std::size_t k = 0; k < IdxRules<Char>::keysToVisit(atStart, sessions.size()); ++k) {
    const auto& entry = sessions[static_cast<int>(k)];
    if (distance(entry.startTime, t) <= IdxRules<Char>::kWindow) return entry.filePos;
  }
  return 0;
}

/// Copies the unit of `size` bytes that begins in `pack`. Deliberate: once the file has ended, the
/// last pack's payload is copied again until the unit is full.
std::unique_ptr<unsigned char[]> readUnit(ProgramStreamPack& pack, std::FILE* stream, int size) {
  auto unit = std::make_unique<unsigned char[]>(static_cast<std::size_t>(size));
  for (std::span<unsigned char> rest(unit.get(), static_cast<std::size_t>(size)); !rest.empty();) {
    const auto payload = pack.payload();
    const std::size_t count = std::min(rest.size(), payload.size());
    std::copy_n(payload.begin(), count, rest.begin());
    rest = rest.subspan(count);
    while (!rest.empty() && pack.read(stream) && !pack.isFirstSubStream()) continue;
  }
  return unit;
}

}  // namespace

ksIdxParser::~ksIdxParser() = default;

bool ksIdxParser::Open(const char* path) {
  subFilePath = IdxRules<char>::subFilePath(path);
  return openAndConvert<kIndexFile>(*this, path, &ksIdxParser::ConvertBufToIdxMap);
}

bool ksIdxParser::ReadString(ksString& out) { return readStreamLine<kIndexFile>(file, out); }

bool ksIdxParser::ConvertBufToIdxMap() {
  IdxConverter<char, ksIdxParser>(*this).convert();
  return true;
}

ksString ksIdxParser::GetStr(ksString& s, char sep) { return takeTextOrThrow(s, sep); }

int ksIdxParser::GetInt(ksString& s, char sep) { return takeIntegerOrThrow(s, sep); }

long long ksIdxParser::GetFilePos(long long t) { return filePosAt<char>(sessions, t); }

unsigned char* ksIdxParser::GetPacket(long long t, int& size, int& ctrlOffset) {
  const long long position = GetFilePos(t);
  // Deliberate: this stream is never closed.
  std::FILE* const stream = sub_fopen(subFilePath.getData(), "rb");
  if (stream == nullptr) return nullptr;
  fseeko(stream, position, SEEK_SET);
  ProgramStreamPack pack;
  pack.read(stream);
  if (!pack.beginsUnit()) return nullptr;
  size = pack.unitSize();
  ctrlOffset = pack.controlOffset();
  return readUnit(pack, stream, size).release();
}

ksIdxParserU::~ksIdxParserU() = default;

// Deliberate: the path's storage as it is, whose first NUL ends the name.
bool ksIdxParserU::Open(wchar_t* path) {
  subFilePath = IdxRules<wchar_t>::subFilePath(path);
  return openAndConvert<kIndexFile>(*this, reinterpret_cast<const char*>(path),
                                    &ksIdxParserU::ConvertBufToIdxMap);
}

bool ksIdxParserU::ReadString(ksWString& out) { return readStreamLine<kIndexFile>(file, out); }

bool ksIdxParserU::ConvertBufToIdxMap() {
  IdxConverter<wchar_t, ksIdxParserU>(*this).convert();
  return true;
}

ksWString ksIdxParserU::GetStr(ksWString& s, wchar_t sep) { return takeTextOrThrow(s, sep); }

int ksIdxParserU::GetInt(ksWString& s, wchar_t sep) { return takeIntegerOrThrow(s, sep); }

long long ksIdxParserU::GetFilePos(int t) { return filePosAt<wchar_t>(sessions, t); }

// Deliberate: opens the empty path, not subFilePath; no C library that conforms finds a file there.
unsigned char* ksIdxParserU::GetPacket(int t, int& /*size*/, int& /*ctrlOffset*/) {
  GetFilePos(t);
  sub_fopen("", "rb");
  return nullptr;
}
