// What the tests share.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "kssubtitle/kssubtitle.h"

using Widths = testing::Types<char, wchar_t>;

/// `bytes` as characters of one width, each byte one character.
template <typename Char>
std::basic_string<Char> wide(std::string_view bytes) {
  std::basic_string<Char> result;
  for (const char c : bytes) result += static_cast<Char>(static_cast<unsigned char>(c));
  return result;
}

/// The text, stale characters included, as bytes.
template <typename Char>
std::string narrow(const ksBasicString<Char>& text) {
  return {text.getData(), text.getData() + text.length()};
}

/// The part of the text that a reader of getData() sees.
template <typename Char>
std::string shown(const ksBasicString<Char>& text) {
  return narrow(text).c_str();
}

template <typename Char>
void PrintTo(const ksBasicString<Char>& text, std::ostream* out) {
  *out << testing::PrintToString(narrow(text));
}

/// The classes and the query of one width.
template <typename Char>
struct Width;

template <>
struct Width<char> {
  using Srt = ksSrtParser;
  using Ass = ksAssParser;
  static auto ask(auto& host, long long t) { return host.GetSubTitle(t); }
  static auto askOther(auto& host, long long t) { return host.GetSubTitleU(t); }
  static auto findChar(Ass& ass, const ksString& s, char c, int start) {
    return ass.FindChar(s, c, start, 0);
  }
  static auto removeTags(Ass& ass, const ksString& s) { return ass.RemoveSSATags(s, 0); }
  static std::string encode(std::string_view bytes) { return std::string(bytes); }
};

template <>
struct Width<wchar_t> {
  using Srt = ksSrtParserU;
  using Ass = ksAssParserU;
  static auto ask(auto& host, long long t) { return host.GetSubTitleU(t); }
  static auto askOther(auto& host, long long t) { return host.GetSubTitle(t); }
  static auto findChar(Ass& ass, const ksWString& s, char c, int start) {
    return ass.FindChar(s, c, start);
  }
  static auto removeTags(Ass& ass, const ksWString& s) { return ass.RemoveSSATags(s); }
  /// UTF-16LE after its BOM.
  static std::string encode(std::string_view bytes) {
    std::string result = "\xFF\xFE";
    for (const char c : bytes) result += {c, '\0'};
    return result;
  }
};

/// What a file holds. (g++ takes iterators on its buffer for null pointers.)
inline std::string contentOf(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

/// A directory of its own for each test.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kssubtitle-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir() { std::filesystem::remove_all(path_); }

  std::string path(std::string_view name) const { return (path_ / name).string(); }
  /// Writes a file and returns its path.
  std::string write(std::string_view name, std::string_view content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

 private:
  std::filesystem::path path_;
};

/// The same, and the working directory while it exists.
class WorkingDir : public TempDir {
 public:
  WorkingDir() { current_path(std::filesystem::path(path(""))); }
  ~WorkingDir() { current_path(before_); }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
};

/// The lines that ReadString() gives in turn, from byte `start` of a file on.
template <typename Char, typename Parser>
auto streamLines(const std::string& path, const std::string& content, std::size_t start) {
  Parser parser;
  parser.file = std::fopen(path.c_str(), "rb");
  const bool isUtf16 = content.substr(start, 256).find('\0') != content.npos;
  if (sizeof(Char) > 1 && !isUtf16) std::fwide(parser.file, 1);
  std::fseek(parser.file, static_cast<long>(start), SEEK_SET);
  for (bool more = true; more;) {
    ksBasicString<Char> line;
    more = parser.ReadString(line);
    if (!line.isEmpty()) parser.lines.push_back(line);
  }
  std::fclose(parser.file);
  return parser.lines;
}

/// What a command of the shell prints, and its exit status.
struct Outcome {
  explicit Outcome(const std::string& command) {
    const TempDir dir;
    std::FILE* const pipe = popen(("{ " + command + "; } 2>" + dir.path("err")).c_str(), "r");
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) out += static_cast<char>(c);
    status = WEXITSTATUS(pclose(pipe));
    std::getline(std::ifstream(dir.path("err")), err, '\0');
  }
  std::string out, err;
  int status;
};

inline std::ptrdiff_t countFiles(const std::string& directory) {
  return std::distance(std::filesystem::directory_iterator(directory), {});
}

/// How many descriptors the process has in use.
inline std::ptrdiff_t openDescriptors() { return countFiles("/proc/self/fd"); }

/// The descriptor that the next stream gets: the least one that is free.
inline int nextDescriptor() {
  const int next = dup(STDOUT_FILENO);
  close(next);
  return next;
}

/// "start-end text" of an answer or a SubRip cue; "nothing" for no answer.
template <typename Answer>
std::string describe(const Answer& answer) {
  if (answer.start == -1 && answer.end == -1 && answer.text.isEmpty()) return "nothing";
  return std::to_string(answer.start) + "-" + std::to_string(answer.end) + " " + shown(answer.text);
}

/// "KEY: RECORD" of every record, separated by "; ".
std::string joined(const auto& records, auto describeRecord) {
  std::string all;
  for (const auto& [key, record] : records) {
    all += (all.empty() ? "" : "; ") + std::to_string(key) + ": " + describeRecord(record);
  }
  return all;
}

/// All texts of up to `longest` characters from `alphabet`.
inline std::vector<std::string> allTexts(std::string_view alphabet, std::size_t longest) {
  std::vector<std::string> texts{""};
  for (std::size_t i = 0; i < texts.size() && texts[i].size() < longest; ++i) {
    for (const char c : alphabet) texts.push_back(texts[i] + c);
  }
  return texts;
}

/// A pack whose payload begins after `headerDataLength` bytes of PES header data.
inline std::string pack(int headerDataLength, char subStream, std::string_view payload) {
  using namespace std::string_literals;
  std::string bytes = "\0\0\1\xBA"s + std::string(10, 'h') + "\0\0\1\xBD"s + "ll\x81\x80"s;
  bytes += static_cast<char>(headerDataLength);
  bytes += std::string(static_cast<std::size_t>(headerDataLength), '\x21');
  (bytes += subStream) += payload;
  bytes.resize(2048, '\xFF');
  return bytes;
}
