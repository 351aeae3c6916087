// The command `check`: what files are, what is wrong with them, and what a viewer would notice.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "kssubtitle/import/ksFixedReaders.h"
#include "tools/kssub/check_limits.h"
#include "tools/kssub/commands.h"
#include "tools/kssub/common_options.h"
#include "tools/kssub/directory_walk.h"
#include "tools/kssub/json.h"
#include "tools/kssub/open_parser.h"
#include "tools/kssub/progress.h"
#include "tools/kssub/report_text.h"
#include "tools/kssub/terminal_colours.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

constexpr int kProblems = 1;
constexpr int kUnreadable = 3;

// How many remarks of a kind are printed.
constexpr std::size_t kUsually = 10;
constexpr std::size_t kAll = std::string::npos;

/// A problem at a line, from the report or from check_limits.h.
struct Remark {
  int kind;
  int line;
  std::string sentence;
};
using Remarks = std::vector<Remark>;

/// The format of a file that was read.
const ksImportFormat& formatOf(const ksImportReport& report) {
  return **std::ranges::find(ksImportFormats(), report.format(), &ksImportFormat::name);
}

/// Whether the problem is normal in files of the format.
bool isUsual(const ksImportFormat& format, ksImportProblem problem) {
  switch (problem) {
    case ksImportProblem::kOverlap:
      return !format.isSequential;
    case ksImportProblem::kDuplicate:
      return format.repeatsCues;
    case ksImportProblem::kEndAssumed:
      return !format.hasEnds;
    default:
      return false;
  }
}

/// By line; those on the whole file first.
Remarks remarksOn(const ksImportParser& parser, const CheckLimits& limits) {
  Remarks remarks;
  if (parser.cues().empty()) remarks.push_back({-1, 0, "The file has no cue that can be shown."});
  const ksImportFormat& format = formatOf(parser.report());
  for (const ksImportNote& note : parser.report().notes()) {
    if (isUsual(format, note.problem)) continue;
    remarks.push_back(
        {static_cast<int>(note.problem), note.line, std::string(ksImportSentence(note.problem))});
  }
  for (const Finding& finding : findingsIn(parser.cues(), limits)) {
    const int kind = static_cast<int>(ksImportProblems().size()) + static_cast<int>(finding.flaw);
    remarks.push_back({kind, finding.line, finding.sentence});
  }
  std::ranges::stable_sort(remarks, {}, &Remark::line);
  return remarks;
}

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string all;
  for (const std::string& part : parts) {
    if (!all.empty()) all += separator;
    all += part;
  }
  return all;
}

/// One line of what is printed as text: where, and what.
void printLine(const std::string& place, const std::string& sentence) {
  std::cout << terminalText(place) << ": " << terminalText(sentence) << '\n';
}

using Conditions = std::vector<ksImportCondition>;

/// Why the fixed readers differ; nothing about standard input, which they cannot read.
std::optional<Conditions> whyFixedReadersDiffer(const FileRequest& request) {
  if (request.path == "-") return std::nullopt;
  return ksWhyFixedReadersDiffer(request.path.c_str(), request.options);
}

/// How the fixed readers answer a file. A single reason is given in full, unless all follow.
std::string answerOfFixedReaders(const Conditions& unmet, bool showsAll) {
  if (unmet.empty()) return "The fixed readers answer the file as it is meant.";
  const std::string otherwise = "The fixed readers may answer it differently";
  if (unmet.size() == 1 && !showsAll) return otherwise + ": " + std::string(unmet.front().sentence);
  std::vector<std::string> names;
  names.reserve(unmet.size());
  for (const ksImportCondition& condition : unmet) names.emplace_back(condition.name);
  return otherwise + " (" + joined(names, ", ") + (showsAll ? ")." : "; --all explains).");
}

class TextReport {
 public:
  TextReport(std::string name, std::size_t mostOfAKind)
      : name_(std::move(name)), mostOfAKind_(mostOfAKind) {}

  void print(ksImportParser& parser, const Remarks& remarks,
             const std::optional<Conditions>& unmet) {
    printForm(parser);
    for (const Remark& remark : remarks) printRemark(remark);
    countOmitted(parser.report());
    for (const auto& [number, kind] : kinds_) printRest(kind);
    if (unmet) printFixedReaders(*unmet);
  }

 private:
  struct Kind {
    std::size_t count = 0;
    std::size_t printed = 0;
    std::string example;
  };

  void printForm(ksImportParser& parser) const {
    const ksImportReport& report = parser.report();
    std::vector<std::string> parts = {
        std::string(report.format()),
        std::string(report.encoding()) + " (" + std::string(nameOf(report.encodingSource())) + ")",
        std::string(nameOf(report.lineEnds())), counted(parser.cues().size(), "cue"),
        formatTime(parser.DurationTime())};
    const auto languages = report.languages();
    if (!languages.empty()) {
      parts.push_back("languages: " +
                      joined(std::vector<std::string>(languages.begin(), languages.end()), " "));
    }
    std::cout << coloured(terminalText(name_ + ": " + joined(parts, ", ")), Colour::kBold,
                          STDOUT_FILENO)
              << '\n';
  }

  void printRemark(const Remark& remark) {
    Kind& kind = kinds_[remark.kind];
    if (kind.count++ >= mostOfAKind_) return;
    ++kind.printed;
    kind.example = remark.sentence;
    const std::string place = remark.line > 0 ? ':' + std::to_string(remark.line) : "";
    printLine(name_ + place, remark.sentence);
  }

  void countOmitted(const ksImportReport& report) {
    for (const ksImportProblem problem : ksImportProblems()) {
      if (report.count(problem) == 0 || isUsual(formatOf(report), problem)) continue;
      Kind& kind = kinds_[static_cast<int>(problem)];
      kind.count = report.count(problem);
      kind.example = ksImportSentence(problem);
    }
  }

  void printRest(const Kind& kind) const {
    if (kind.count == kind.printed) return;
    printLine(name_,
              std::to_string(kind.count - kind.printed) + " more like this: " + kind.example);
  }

  void printFixedReaders(const Conditions& unmet) const {
    const bool showsAll = mostOfAKind_ == kAll;
    printLine(name_, answerOfFixedReaders(unmet, showsAll));
    if (!showsAll) return;
    for (const ksImportCondition& condition : unmet) {
      printLine(name_, std::string(condition.name) + ": " + std::string(condition.sentence));
    }
  }

  std::string name_;
  std::size_t mostOfAKind_;
  std::map<int, Kind> kinds_;
};

std::string jsonList(const std::vector<std::string>& texts) {
  std::vector<std::string> parts;
  parts.reserve(texts.size());
  for (const std::string& text : texts) parts.push_back(jsonString(text));
  return '[' + joined(parts, ",") + ']';
}

std::string jsonRemarks(const Remarks& remarks) {
  std::vector<std::string> parts;
  parts.reserve(remarks.size());
  for (const Remark& remark : remarks) {
    parts.push_back("{\"line\":" + std::to_string(remark.line) +
                    ",\"text\":" + jsonString(remark.sentence) + '}');
  }
  return '[' + joined(parts, ",") + ']';
}

std::string jsonFixedReaders(const Conditions& unmet) {
  std::vector<std::string> names;
  for (const ksImportCondition& condition : unmet) names.emplace_back(condition.name);
  return std::string(",\"fixedReadersAgree\":") + (unmet.empty() ? "true" : "false") +
         ",\"unmet\":" + jsonList(names);
}

void printObject(const std::string& name, ksImportParser& parser, const Remarks& remarks,
                 const std::optional<Conditions>& unmet) {
  const ksImportReport& report = parser.report();
  std::cout << "{\"file\":" << jsonString(name) << ",\"format\":" << jsonString(report.format())
            << ",\"encoding\":" << jsonString(report.encoding())
            << ",\"found\":" << jsonString(nameOf(report.encodingSource()))
            << ",\"lineEnds\":" << jsonString(nameOf(report.lineEnds()))
            << ",\"size\":" << report.size() << ",\"cues\":" << parser.cues().size()
            << ",\"duration\":" << parser.DurationTime()
            << ",\"languages\":" << jsonList({report.languages().begin(), report.languages().end()})
            << ",\"notes\":" << jsonRemarks(remarks)
            << ",\"notesNotKept\":" << countNotes(report) - report.notes().size()
            << (unmet ? jsonFixedReaders(*unmet) : "") << "}\n";
}

class Check : public Command {
 public:
  Introduction introduction() const override {
    return {"check", "Report what is wrong with subtitle files",
            "kssub check film.srt\n"
            "kssub check --max-speed 20 --max-line 0 subtitles/\n"
            "kssub check --json films/ | jq -r 'select(.encoding != \"UTF-8\").file'\n"};
  }

  void addOptions(CLI::App& app) override {
    app.add_option("FILE", arguments_,
                   "Subtitle files, directories of them, or - for standard input")
        ->required()
        ->type_name("");
    app.add_flag("--json", asJson_, "Print one JSON object per file, each on one line");
    app.add_flag("--all", showsAll_,
                 "Print every problem, not just the first ten of a kind, and what the fixed "
                 "readers need");
    addLimits(app);
    addReadingOptions(app, request_.options);
    app.footer(
        "Exit status: 0 if nothing is wrong or there is no subtitle file, 1 if something is "
        "wrong,\n"
        "2 for a wrong command line, 3 if a file cannot be read.");
  }

  int run() override {
    if (!isGapSet_ && request_.options.frameRate > 0) {
      limits_.leastGap = std::llround(2000 / request_.options.frameRate);
    }
    const std::vector<FoundFile> files = filesOf(arguments_);
    Progress progress(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
      progress.show(i);
      checkFile(files[i], progress);
    }
    if (!hasSubtitles_) {
      progress.hide();
      std::cerr << terminalText(joined(arguments_, ", ")) << ": no subtitle files\n";
    }
    return status_;
  }

 private:
  void addLimits(CLI::App& app) {
    const auto addTime = [&](const char* name, auto set, const char* description) {
      app.add_option_function<std::string>(
             name, [set](const std::string& text) { set(requireTime(text)); }, description)
          ->type_name("TIME");
    };
    addTime(
        "--min-duration", [this](long long time) { limits_.leastDuration = time; },
        "Report cues that are shown for less time (500); 0 turns this off");
    addTime(
        "--min-gap",
        [this](long long time) {
          limits_.leastGap = time;
          isGapSet_ = true;
        },
        "Report cues that follow another one sooner (two frames, or 80); 0 turns this off");
    app.add_option("--max-speed", limits_.mostSpeed,
                   "Report cues with more characters per second (25); 0 turns this off")
        ->type_name("NUMBER");
    app.add_option("--max-line", limits_.mostCharacters,
                   "Report cues with more characters in a line (42); 0 turns this off")
        ->type_name("NUMBER");
  }

  void checkFile(const FoundFile& file, Progress& progress) {
    request_.path = file.path;
    ksImportParser parser;
    if (!readSubtitles(parser, request_)) {
      if (!file.mayBeOther) reportRefusal(parser, progress);
      return;
    }
    hasSubtitles_ = true;
    CheckLimits limits = limits_;
    limits.ordersCount = formatOf(parser.report()).isSequential;
    const Remarks remarks = remarksOn(parser, limits);
    if (!remarks.empty()) status_ = std::max(status_, kProblems);
    const std::optional<Conditions> unmet = whyFixedReadersDiffer(request_);
    progress.hide();
    if (asJson_) {
      printObject(nameOf(request_), parser, remarks, unmet);
    } else {
      TextReport(nameOf(request_), showsAll_ ? kAll : kUsually).print(parser, remarks, unmet);
    }
  }

  void reportRefusal(const ksImportParser& parser, Progress& progress) {
    status_ = kUnreadable;
    hasSubtitles_ = true;
    progress.hide();
    if (asJson_) {
      std::cout << "{\"file\":" << jsonString(nameOf(request_))
                << ",\"refusal\":" << jsonString(refusalOf(parser.report())) << "}\n";
    } else {
      std::cerr << terminalText(nameOf(request_)) << ": " << refusalOf(parser.report()) << '\n';
    }
  }

  std::vector<std::string> arguments_;
  FileRequest request_;
  CheckLimits limits_;
  bool isGapSet_ = false;
  bool asJson_ = false;
  bool showsAll_ = false;
  bool hasSubtitles_ = false;  // or files that claim to be subtitles
  int status_ = kSuccess;
};

}  // namespace

std::unique_ptr<Command> makeCheck() { return std::make_unique<Check>(); }

}  // namespace kssub
