// Output for other programs: records of named values as JSON or TSV.
#include "tools/kssub/json_tsv.h"

#include <CLI/CLI.hpp>
#include <ostream>
#include <string_view>

#include "tools/kssub/json.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

/// A number or flag, which is the same in both forms; `otherwise` for anything else.
std::string plainValue(const Field& field, const char* otherwise) {
  if (const auto* number = std::get_if<long long>(&field.value)) return std::to_string(*number);
  if (const auto* flag = std::get_if<bool>(&field.value)) return *flag ? "true" : "false";
  return otherwise;
}

std::string jsonValue(const Field& field) {
  const auto* text = std::get_if<std::string>(&field.value);
  return text != nullptr ? jsonString(*text) : plainValue(field, "null");
}

std::string escaped(std::string_view text) {
  constexpr std::string_view kSpecial = "\t\n\r\\";
  constexpr std::string_view kLetters = "tnr\\";
  std::string out;
  for (const char c : text) {
    const std::size_t place = kSpecial.find(c);
    if (place == kSpecial.npos) {
      out += c;
    } else {
      (out += '\\') += kLetters[place];
    }
  }
  return terminalText(out);
}

std::string tsvValue(const Field& field) {
  const auto* text = std::get_if<std::string>(&field.value);
  return text != nullptr ? escaped(*text) : plainValue(field, "");
}

/// The results of `print` for each field, joined by `separator`.
template <typename Print>
std::string joined(const std::vector<Field>& record, char separator, Print print) {
  std::string out;
  for (const Field& field : record) {
    if (&field != &record.front()) out += separator;
    out += print(field);
  }
  return out;
}

}  // namespace

void addOutput(CLI::App& app, Output& output) {
  const auto add = [&](const char* name, Output value, const char* description) {
    return app.add_flag_callback(
        name, [&output, value] { output = value; }, description);
  };
  CLI::Option* json = add("--json", Output::kJson, "Print JSON objects, one per line");
  add("--tsv", Output::kTsv, "Print lines of tab-separated values")->excludes(json);
}

void RecordWriter::write(const std::vector<Field>& record) {
  if (output_ == Output::kJson) return writeObject(record);
  writeRow(record);
}

void RecordWriter::writeObject(const std::vector<Field>& record) {
  out_ << '{' << joined(record, ',', [](const Field& field) {
    return jsonString(field.name) + ':' + jsonValue(field);
  }) << "}\n";
}

void RecordWriter::writeRow(const std::vector<Field>& record) {
  if (!hasNames_) {
    out_ << joined(record, '\t', [](const Field& field) { return field.name; }) << '\n';
    hasNames_ = true;
  }
  out_ << joined(record, '\t', tsvValue) << '\n';
}

}  // namespace kssub
