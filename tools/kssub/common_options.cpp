// Arguments and options that several commands share.
#include "tools/kssub/common_options.h"

#include <iconv.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <optional>

#include "tools/kssub/formats.h"
#include "tools/kssub/times.h"
#include "tools/kssub/user_code_page.h"

namespace kssub {
namespace {

/// The format that `word` names, or whose extension it is. Throws CLI::ValidationError if there is
/// none or several have the extension.
std::string formatOf(const std::string& word) {
  std::vector<std::string> names;
  for (const ksImportFormat* const format : ksImportFormats()) {
    if (format->name == word) return word;
    if (hasExtension(*format, word)) names.emplace_back(format->name);
  }
  if (names.size() > 1) {
    throw CLI::ValidationError("--format", quoted(word) + " may be " + enumerated(names, " or "));
  }
  if (names.empty()) throw CLI::ValidationError("--format", "there is no format " + quoted(word));
  return names.front();
}

/// Throws CLI::ValidationError unless `name` is one that the library can convert from.
void requireEncoding(const char* option, const std::string& name) {
  const iconv_t conversion = iconv_open("UTF-8", name.c_str());
  if (conversion == reinterpret_cast<iconv_t>(-1)) {  // NOLINT: what iconv returns
    throw CLI::ValidationError(option, "there is no encoding " + quoted(name));
  }
  iconv_close(conversion);
}

}  // namespace

void addFile(CLI::App& app, FileRequest& request) {
  app.add_option("FILE", request.path, "A subtitle file; - for standard input")
      ->required()
      ->type_name("");
  CLI::Option* exact = app.add_flag("--exact", request.isExact,
                                    "Use the fixed readers, for .srt, .ass and .ssa files only");
  for (CLI::Option* option : addReadingOptions(app, request.options)) option->excludes(exact);
  app.callback([&request] {
    if (request.isExact && request.path == "-") {
      throw CLI::ValidationError("--exact", "needs the name of a file, not -");
    }
  });
}

std::vector<CLI::Option*> addReadingOptions(CLI::App& app, ksImportOptions& options) {
  options.fallbackEncoding = userCodePage();
  const auto addEncoding = [&](const char* option, std::string& value, const char* description) {
    const auto set = [option, &value](const std::string& name) {
      requireEncoding(option, name);
      value = name;
    };
    return app.add_option_function<std::string>(option, set, description)->type_name("NAME");
  };
  const auto setFormat = [&options](const std::string& word) { options.format = formatOf(word); };
  const auto setRate = [&options](const std::string& text) {
    options.frameRate = requireRate("--fps", text);
  };
  return {
      addEncoding("--encoding", options.encoding,
                  "Read the file in this encoding instead of detecting it"),
      addEncoding("--fallback", options.fallbackEncoding,
                  "The encoding if it cannot be detected (the usual one in your language)"),
      app.add_option_function<std::string>(
             "--format", setFormat,
             "Read the file as this format instead of detecting it; a "
             "name or an extension: " +
                 enumerated(formatNames(), ", "))
          ->type_name("NAME"),
      app.add_option("--language", options.language, "The language to read, if a file has several")
          ->type_name("NAME"),
      app.add_option_function<std::string>(
             "--fps", setRate, "Frames per second, if the file counts frames and does not say")
          ->type_name("NUMBER"),
  };
}

void explainTimes(CLI::App& app) {
  app.footer(
      "TIME is in milliseconds, or [hours:]minutes:seconds with up to three digits after a point "
      "or\n"
      "comma: 1500, 0:01.5 and 0:00:01,500 are the same. Negative times begin with '-'.");
}

long long requireTime(const std::string& text) {
  const std::optional<long long> time = parseTime(text);
  if (!time) {
    throw CLI::ValidationError(quoted(text) +
                               " is not a time: write 1:02:03.456, 0:01.5 or 1500 (milliseconds)");
  }
  return *time;
}

std::function<void(const double&)> requirePositive(const char* option, double& value) {
  return [option, &value](const double& number) {
    if (!std::isfinite(number) || number <= 0) {
      throw CLI::ValidationError(option, "must be a number above 0");
    }
    value = number;
  };
}

double requireRate(const char* option, const std::string& text) {
  double rate = 0;
  if (!CLI::detail::lexical_cast(text, rate) || !std::isfinite(rate) || rate <= 0) {
    throw CLI::ValidationError(option, "not a frame rate: " + text);
  }
  return rate;
}

std::string quoted(const std::string& word) { return '"' + word + '"'; }

std::string enumerated(const std::vector<std::string>& words, const std::string& last) {
  std::string out;
  for (const std::string& word : words) {
    if (&word != &words.front()) out += &word == &words.back() ? last : ", ";
    out += word;
  }
  return out;
}

}  // namespace kssub
