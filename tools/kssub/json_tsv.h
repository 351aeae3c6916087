// Answers for other programs: records of named values.
#pragma once

#include <iosfwd>
#include <string>
#include <variant>
#include <vector>

namespace CLI {
class App;
}

namespace kssub {

/// How a command answers.
enum class Output {
  kTable,  ///< For people.
  kJson,
  kTsv,
};

/// Adds --json and --tsv, of which one can be given.
void addOutput(CLI::App& app, Output& output);

struct Field {
  const char* name;
  /// Nothing, or one of these, text as UTF-8.
  std::variant<std::monostate, bool, long long, std::string> value;
};

/// Writes records of the same fields, one a line: each as a JSON object, in which nothing is null,
/// or below a line of the names as values with tabs between them. There nothing is the empty text,
/// and a tab, line feed, carriage return or backslash in a text is `\t`, `\n`, `\r` or `\\`.
class RecordWriter {
 public:
  /// `output` is not kTable.
  RecordWriter(std::ostream& out, Output output) : out_(out), output_(output) {}

  void write(const std::vector<Field>& record);

 private:
  void writeObject(const std::vector<Field>& record);
  void writeRow(const std::vector<Field>& record);

  std::ostream& out_;
  Output output_;
  bool hasNames_ = false;
};

}  // namespace kssub
