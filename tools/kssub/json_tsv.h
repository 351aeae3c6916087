// Output for other programs: records of named values as JSON or TSV.
#pragma once

#include <iosfwd>
#include <string>
#include <variant>
#include <vector>

namespace CLI {
class App;
}

namespace kssub {

/// The form of a command's output.
enum class Output {
  kTable,  ///< For people.
  kJson,
  kTsv,
};

/// Adds --json and --tsv, which exclude each other.
void addOutput(CLI::App& app, Output& output);

struct Field {
  const char* name;
  /// Text is UTF-8; std::monostate is no value.
  std::variant<std::monostate, bool, long long, std::string> value;
};

/// Writes records with the same fields, one per line. In JSON (RFC 8259) each is an object, and no
/// value is null. In TSV the first line has the names, values are separated by tabs, no value is
/// the empty text, and a tab, line feed, carriage return or backslash is `\t`, `\n`, `\r` or `\\`.
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
