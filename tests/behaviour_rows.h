// Reads the tables of docs/behaviour.md.
#pragma once

#include <algorithm>
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

/// `text` without the spaces around it.
inline std::string_view trimmed(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

inline bool isSpan(std::string_view item) {
  return item.size() > 2 && item.find('`', 1) == item.size() - 1;
}

/// What is in a code span.
inline std::string_view inside(std::string_view span) {
  if (!isSpan(span)) throw Mistake("not in backticks: " + std::string(span));
  return span.substr(1, span.size() - 2);
}

/// What a code span or a plain word says.
inline std::string valueOf(std::string_view item) {
  if (item.starts_with('`')) return decoded(inside(item));
  return item == "empty" ? "" : std::string(item);
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
  std::string subject;  // the section's heading up to its colon
  std::string behaviour;
  Words given;  // for one object, in this order
  std::string ask;
  std::string answers[2];  // by width
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
    if (rows_.empty()) throw Mistake("no rows");
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

  /// A row that names no behaviour goes on with the one above, and with its Given if it has none.
  void addRow(const Words& cells) {
    if (cells.size() != 7 || !cells.front().empty() || !cells.back().empty()) {
      throw Mistake("not 5 cells");
    }
    const auto cell = [&cells](std::size_t i) { return std::string(trimmed(cells[i])); };
    const bool goesOn = cell(1).empty();
    if (goesOn && (rows_.empty() || rows_.back().line != line_ - 1)) throw Mistake("nothing said");
    Row row{line_, subject_, cell(1), {}, std::string(inside(cell(3))), {valueOf(cell(4)), ""}};
    row.answers[1] = cell(5).empty() ? row.answers[0] : valueOf(cell(5));
    if (cell(4).empty()) throw Mistake("no answer");
    if (goesOn) row.behaviour = rows_.back().behaviour;
    if (!cell(2).empty()) {
      for (const std::string& item : split(cell(2), " then ")) row.given.push_back(valueOf(item));
    } else if (goesOn) {
      row.given = rows_.back().given;
    }
    rows_.push_back(row);
  }

  int line_ = 0;
  std::string subject_;
  std::map<std::string, std::string> names_;
  std::vector<Row> rows_;
};

}  // namespace behaviour
