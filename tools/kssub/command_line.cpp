// Arguments and options that several commands have.
#include "tools/kssub/command_line.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <optional>

#include "tools/kssub/code_pages.h"
#include "tools/kssub/times.h"

namespace kssub {

void addFile(CLI::App& app, FileRequest& request) {
  app.add_option("FILE", request.path, "A subtitle file; - for standard input")
      ->required()
      ->type_name("");
  CLI::Option* exact = app.add_flag("--exact", request.isExact,
                                    "Ask the fixed readers: .srt, .ass and .ssa files alone");
  for (CLI::Option* option : addReadingOptions(app, request.options)) option->excludes(exact);
  app.callback([&request] {
    if (request.isExact && request.path == "-") {
      throw CLI::ValidationError("--exact", "needs the name of a file, not -");
    }
  });
}

std::vector<CLI::Option*> addReadingOptions(CLI::App& app, ksImportOptions& options) {
  options.fallbackEncoding = codePageOfUser();
  const auto add = [&](const char* name, std::string& value, const char* description) {
    return app.add_option(name, value, description)->type_name("NAME");
  };
  return {
      add("--encoding", options.encoding, "The file's encoding, whatever it looks like"),
      add("--fallback", options.fallbackEncoding,
          "The encoding of text that cannot be told; else the one usual in the user's language"),
      add("--format", options.format, "The file's format, whatever it looks like"),
      add("--language", options.language, "Which of a file's languages"),
      app.add_option_function<double>("--fps", requirePositive("--fps", options.frameRate),
                                      "Frames in a second, where a file counts frames")
          ->type_name("NUMBER"),
  };
}

void explainTimes(CLI::App& app) {
  app.footer(
      "TIME is in milliseconds, or [hours:]minutes:seconds with up to three digits behind a point\n"
      "or comma: 1500, 0:01.5 and 0:00:01,500 are the same. A negative one begins with '-'.");
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

std::string quoted(const std::string& word) { return '"' + word + '"'; }

}  // namespace kssub
