// Reads the tables of docs/behaviour.md.
#pragma once

#include <charconv>
#include <fstream>
#include <map>
#include <regex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace behaviour {

using Words = std::vector<std::string>;

/// A mistake in the document.
struct Mistake : std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline Words split(std::string_view text, std::string_view separator) {
  Words parts;
  for (std::size_t end; (end = text.find(separator)) != text.npos;) {
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end + separator.size());
  }
  parts.emplace_back(text);
  return parts;
}

/// The number that all of `text` is.
template <typename Number>
Number numberOf(std::string_view text, int base = 10) {
  Number value = 0;
  const char* const end = text.data() + text.size();
  if (const auto [rest, error] = std::from_chars(text.data(), end, value, base);
      text.empty() || rest != end || error != std::errc()) {
    throw Mistake("no number: " + std::string(text));
  }
  return value;
}

/// Takes one character, however it is written, off the front of `span`.
inline char takeCharacter(std::string_view& span) {
  const auto take = [&span](std::size_t count) {
    const std::string_view front = span.substr(0, count);
    span.remove_prefix(front.size());
    return std::string(front);
  };
  constexpr std::string_view kSpace = "·";
  if (span.starts_with(kSpace)) return take(kSpace.size()), ' ';
  const char c = take(1)[0];
  if (c != '\\') return c;
  const std::string name = take(1);
  if (name == "x") return static_cast<char>(numberOf<unsigned char>(take(2), 16));
  constexpr std::string_view kNames = "nrt0\\";
  const std::size_t known = name.empty() ? kNames.npos : kNames.find(name);
  if (known == kNames.npos) throw Mistake("unknown escape");
  return "\n\r\t\0\\"[known];
}

inline std::string decoded(std::string_view span) {
  constexpr std::string_view kTimes = "×";
  std::string text;
  while (!span.empty()) {
    const char c = takeCharacter(span);
    std::size_t count = 1;
    if (span.starts_with(kTimes)) {
      span.remove_prefix(kTimes.size());
      const std::string_view digits = span.substr(0, span.find_first_not_of("0123456789"));
      span.remove_prefix(digits.size());
      count = numberOf<std::size_t>(digits);
    }
    text.append(count, c);
  }
  return text;
}

/// The code spans, in their backticks, and the plain words of a cell.
inline Words itemsOf(const std::string& cell) {
  static const std::regex item("`[^`]+`|then|[^`,\\s][^`,]*[^`,\\s]|[^`,\\s]");
  return {std::sregex_token_iterator(cell.begin(), cell.end(), item), std::sregex_token_iterator()};
}

inline bool isSpan(const std::string& item) { return item.front() == '`'; }

inline std::string_view inside(std::string_view span) { return span.substr(1, span.size() - 2); }

inline std::string valueOf(const std::string& item) {
  if (isSpan(item)) return decoded(inside(item));
  return item == "empty" ? "" : item;
}

inline Words valuesOf(const std::string& cell) {
  Words values;
  for (const std::string& item : itemsOf(cell)) values.push_back(valueOf(item));
  return values;
}

/// A name and its arguments.
struct Call {
  explicit Call(const std::string& written) {
    for (const std::string& word : split(written, " ")) {
      words.push_back(word == "\"\"" ? "" : decoded(word));
    }
  }
  const std::string& text(std::size_t i) const {
    if (i >= words.size()) throw Mistake("no argument " + std::to_string(i));
    return words[i];
  }
  long long number(std::size_t i) const { return numberOf<long long>(text(i)); }

  Words words;
};

struct Row {
  int line;
  std::string subject;        // the section's heading up to its colon
  std::vector<Words> givens;  // each for an object of its own, given in this order
  Words asks;
  Words answers[2];  // by width
};

class RowReader {
 public:
  std::vector<Row> read() {
    std::ifstream file(BEHAVIOUR_TABLES);
    bool more = true;
    while (more) {
      std::string text;
      more = static_cast<bool>(std::getline(file, text));
      ++line_;
      try {
        readLine(text);
      } catch (const std::exception& mistake) {
        throw Mistake("line " + std::to_string(line_) + ": " + mistake.what());
      }
    }
    return std::move(rows_);
  }

 private:
  void readLine(std::string text) {
    static const std::regex definition("- `([A-Z]+)` is `([^`]+)`.*");
    if (text.starts_with("## ")) subject_ = text.substr(3, text.find(':') - 3);
    if (std::smatch name; std::regex_match(text, name, definition)) names_[name[1]] = name[2];
    if (text.find('|') != text.npos) return readTableLine(text);
    if (linesOfTable_ == 1 || linesOfTable_ == 2) throw Mistake("a table without rows");
    linesOfTable_ = 0;
  }

  void readTableLine(std::string text) {
    switch (linesOfTable_++) {
      case 0:
        if (text != "| Behaviour | Given | Ask | Answer | Wide |") throw Mistake("another head");
        break;
      case 1:
        if (text != "| --- | --- | --- | --- | --- |") throw Mistake("no rule");
        break;
      default:
        for (const auto& [name, content] : names_) {
          for (std::size_t at = 0; (at = text.find(name, at)) != text.npos; at += content.size()) {
            text.replace(at, name.size(), content);
          }
        }
        addRow(split(text, "|"));
    }
  }

  void addRow(const Words& cells) {
    if (cells.size() != 7 || !cells.front().empty() || !cells.back().empty())
      throw Mistake("not 5 cells");
    if (cells[1].find_first_not_of(' ') == std::string::npos) throw Mistake("nothing said");
    Row row{line_, subject_, {}, itemsOf(cells[3]), {valuesOf(cells[4]), valuesOf(cells[5])}};
    if (row.answers[1].empty()) row.answers[1] = row.answers[0];
    bool then = false;
    for (const std::string& item : itemsOf(cells[2])) {
      if (item == "then") {
        then = true;
      } else {
        if (!then) row.givens.emplace_back();
        row.givens.back().push_back(valueOf(item));
        then = false;
      }
    }
    if (row.givens.empty()) row.givens.emplace_back();
    rows_.push_back(row);
  }

  int line_ = 0;
  int linesOfTable_ = 0;
  std::string subject_;
  std::map<std::string, std::string> names_;
  std::vector<Row> rows_;
};

}  // namespace behaviour
