// Reads the tables of docs/behaviour.md.
#pragma once

#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <stdexcept>
#include <string>
#include <string_view>
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
inline long long numberOf(const std::string& text, int base = 10) {
  char* end = nullptr;
  const long long value = std::strtoll(text.c_str(), &end, base);
  if (text.empty() || *end != '\0') throw Mistake("no number: " + text);
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
  if (name == "x") return static_cast<char>(numberOf(take(2), 16));
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
      const std::string digits(span.substr(0, span.find_first_not_of("0123456789")));
      span.remove_prefix(digits.size());
      count = static_cast<std::size_t>(numberOf(digits));
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
  long long number(std::size_t i) const { return numberOf(text(i)); }

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
    for (std::string text; std::getline(file, text);) {
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
  void readLine(const std::string& text) {
    static const std::regex definition("- `([A-Z]+)` is `([^`]+)`.*");
    if (text.starts_with("## ")) subject_ = text.substr(3, text.find(':') - 3);
    if (std::smatch name; std::regex_match(text, name, definition)) {
      names_[name[1]] = expanded(name[2]);
    }
    const bool isHead = text == "| Behaviour | Given | Ask | Answer | Wide |" ||
                        text == "| --- | --- | --- | --- | --- |";
    if (!isHead && text.find('|') != text.npos) addRow(split(expanded(text), "|"));
  }

  /// `text` with the names that are defined so far written out.
  std::string expanded(std::string text) const {
    for (const auto& [name, content] : names_) {
      for (std::size_t at = 0; (at = text.find(name, at)) != text.npos; at += content.size()) {
        text.replace(at, name.size(), content);
      }
    }
    return text;
  }

  void addRow(const Words& cells) {
    if (cells.size() != 7 || !cells.front().empty() || !cells.back().empty())
      throw Mistake("not 5 cells");
    if (cells[1].find_first_not_of(' ') == std::string::npos) throw Mistake("nothing said");
    Row row{line_, subject_, {}, itemsOf(cells[3]), {valuesOf(cells[4]), valuesOf(cells[5])}};
    if (row.answers[1].empty()) row.answers[1] = row.answers[0];
    std::string before;
    for (const std::string& item : itemsOf(cells[2])) {
      if (item != "then" && before != "then") row.givens.emplace_back();
      if (item != "then") row.givens.at(row.givens.size() - 1).push_back(valueOf(item));
      before = item;
    }
    if (row.givens.empty()) row.givens.emplace_back();
    rows_.push_back(row);
  }

  int line_ = 0;
  std::string subject_;
  std::map<std::string, std::string> names_;
  std::vector<Row> rows_;
};

}  // namespace behaviour
