// What the fuzz targets share: inputs as files, and the rules that hold for every parser.
#pragma once

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <utility>

#include "kssubtitle/parsers/session_table.h"
#include "tests/support.h"

/// Under this locale most wide text can be decoded, and some cannot.
inline const bool kIsUtf8 = std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr;

inline void check(bool holds, const char* rule) {
  if (holds) return;
  std::fprintf(stderr, "This does not hold: %s\n", rule);
  std::abort();
}

/// The first byte of an input says what the others are: '1' the text of a wide file, to be encoded
/// as UTF-16, '2' the bytes of a wide file after its BOM, anything else an 8-bit file.
struct Input {
  explicit Input(std::string_view input)
      : form(input.empty() ? 0 : input[0] & 3), text(input.substr(input.empty() ? 0 : 1)) {}
  Input(const std::uint8_t* data, std::size_t size)
      : Input(std::string_view(reinterpret_cast<const char*>(data), size)) {}

  bool isWide() const { return form == 1 || form == 2; }
  std::string file() const {
    if (form == 1) return Width<wchar_t>::encode(text);
    return (form == 2 ? "\xFF\xFE" : "") + std::string(text);
  }

  int form;
  std::string_view text;
};

template <typename Answer>
bool isSame(const Answer& a, const Answer& b) {
  return a.start == b.start && a.end == b.end && a.text == b.text;
}

template <typename Sessions>
bool areSame(const Sessions& a, const Sessions& b) {
  using namespace kssubtitle::internal;
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
    return x.first == y.first && startOf(x.second) == startOf(y.second) &&
           endOf(x.second) == endOf(y.second) && x.second.text == y.second.text;
  });
}

/// Times at which answers may change.
template <typename Sessions>
std::set<long long> boundaries(const Sessions& sessions) {
  using namespace kssubtitle::internal;
  constexpr std::size_t kEnough = 200;
  std::set<long long> times{LLONG_MIN, -1, 0, LLONG_MAX};
  for (const auto& [key, record] : sessions) {
    if (times.size() > kEnough) break;
    for (const long long t : {startOf(record), endOf(record)}) times.insert({t - 1, t, t + 1});
  }
  return times;
}

/// Compares every answer with what a look at all records gives.
template <typename Char, typename Parser>
void checkAnswers(Parser& parser) {
  using namespace kssubtitle::internal;
  for (const long long t : boundaries(parser.sessions)) {
    auto expected = Width<Char>::ask(parser, -1);
    for (const auto& [key, record] : parser.sessions) {
      const bool covers = t >= 0 && startOf(record) <= t && t <= endOf(record);
      if (covers) expected = {startOf(record), endOf(record), record.text};
    }
    check(isSame(Width<Char>::ask(parser, t), expected), "the last covering record is the answer");
    check(Width<Char>::askOther(parser, t).start == -1, "the other width has no answer");
  }
}

/// Compares the lines of a file with those that ReadString() gives, its records with those that
/// `convert` makes of these lines, and the answers with the records.
template <typename Char, typename Parser, typename Convert>
void checkParser(const Input& input, Convert convert) {
  static const TempDir dir;
  const std::string file = input.file();
  const std::string path = dir.write("file", file);
  Parser expected;
  expected.lines = streamLines<Char, Parser>(path, file, sizeof(Char) > 1 ? 2 : 0);
  check((expected.*convert)(), "every conversion succeeds");
  Parser parser;
  for (int i = 0; i < 2; ++i) {
    check(parser.Open(path.c_str()) == !file.empty(), "all files but the empty one are opened");
    if (file.empty()) std::fclose(parser.file);
    check(parser.lines == expected.lines, "Open() reads the lines that ReadString() gives");
    check(areSame(parser.sessions, expected.sessions), "Open() converts its lines");
  }
  checkAnswers<Char>(parser);
  if (parser.sessions.empty()) return;
  parser.sessions[parser.sessions.begin()->first];  // from here on every record is looked at
  checkAnswers<Char>(parser);
}
