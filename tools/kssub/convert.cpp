// The command `convert`: writes a subtitle file in another format, or edited.
#include <CLI/CLI.hpp>
#include <array>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "tools/kssub/commands.h"
#include "tools/kssub/common_options.h"
#include "tools/kssub/convert_edits.h"
#include "tools/kssub/formats.h"
#include "tools/kssub/open_parser.h"
#include "tools/kssub/output_file.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

namespace fs = std::filesystem;

std::string targets() { return enumerated(writtenExtensions(), " or "); }

std::string_view extensionOf(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  return dot == path.npos || path.find('/', dot) != path.npos ? "" : path.substr(dot + 1);
}

/// The two parts of "FIRST<sign>SECOND". Throws CLI::ValidationError.
std::array<std::string, 2> halves(const char* option, const std::string& text, char sign) {
  const std::size_t at = text.find(sign);
  if (at == text.npos) {
    throw CLI::ValidationError(option, quoted(text) + " has no " + quoted({sign}));
  }
  return {text.substr(0, at), text.substr(at + 1)};
}

/// A frame rate in millionths of a frame per second. Throws CLI::ValidationError.
long long requireMillionths(const char* option, const std::string& text) {
  constexpr double kMost = 1e6;
  const double rate = requireRate(option, text);
  const long long millionths = rate <= kMost ? std::llround(rate * 1e6) : 0;
  if (millionths == 0) throw CLI::ValidationError(option, "not a frame rate: " + text);
  return millionths;
}

/// What is to be done with the cues.
struct Edits {
  std::optional<long long> from;
  std::optional<long long> until;
  TimeChange change;
  std::vector<TimePair> pairs;
  bool hasNoSounds = false;
  std::size_t width = 0;  // 0: lines stay as they are
  long long least = 0;    // 0: ends stay as they are
  bool hasNoOverlaps = false;
};

EditedCues withNewTimes(EditedCues cues, const Edits& edits) {
  if (edits.from || edits.until) {
    constexpr long long kEnd = std::numeric_limits<long long>::max();
    cues = within(std::move(cues), edits.from.value_or(0), edits.until.value_or(kEnd));
  }
  return retimed(std::move(cues), edits.pairs.empty() ? edits.change : changeThrough(edits.pairs));
}

EditedCues edited(EditedCues cues, const Edits& edits) {
  if (edits.hasNoSounds) cues = withoutSounds(std::move(cues));
  if (edits.width > 0) cues = wrapped(std::move(cues), edits.width);  // before cues are merged
  if (edits.hasNoOverlaps) cues = withoutOverlaps(std::move(cues));
  if (edits.least > 0) cues = lasting(std::move(cues), edits.least);
  return cues;
}

EditedCues cuesIn(const ksImportParser& parser) {
  EditedCues cues;
  for (const ksImportCue& cue : parser.cues()) {
    if (cue.isDuplicate) continue;
    cues.push_back({cue.start, cue.end, cue.alignment, std::string(cue.text)});
  }
  return cues;
}

std::string written(const EditedCues& cues, ksImportTarget target, ksImportColors colors) {
  std::vector<ksImportCue> views;
  for (const EditedCue& cue : cues) {
    ksImportCue& view = views.emplace_back();
    view.start = cue.start;
    view.end = cue.end;
    view.alignment = cue.alignment;
    view.text = cue.text;
  }
  return ksImportWrite(views, target, ksImportMarkup::kHtml, colors);
}

/// The first unused name of PATH.bak, PATH.bak2 ...
std::string backupName(const std::string& path) {
  std::string name = path + ".bak";
  for (int i = 2; fs::exists(fs::symlink_status(name)); ++i)
    name = path + ".bak" + std::to_string(i);
  return name;
}

class Convert : public Command {
 public:
  Introduction introduction() const override {
    return {"convert", "Write a subtitle file in another format, or corrected",
            "kssub convert film.ass film.srt\n"
            "kssub convert film.srt later.srt --shift 1500\n"
            "kssub convert film.srt fitting.srt --sync 1:02.5=1:04 --sync 1:30:10=1:34:02\n"
            "kssub convert film.srt pal.srt --scale 23.976:25\n"
            "kssub convert --in-place film.srt --no-sounds --wrap 42\n"};
  }

  void addOptions(CLI::App& app) override {
    app.add_option("IN", request_.path, "A subtitle file; - for standard input")
        ->required()
        ->type_name("");
    app.add_option("OUT", output_, "The file to write or replace; - for standard output")
        ->type_name("");
    app.add_flag("--in-place", isInPlace_,
                 "Replace IN, and keep it as IN.bak; only text, its style and place are kept");
    app.add_option("--to", to_,
                   "The format: " + targets() + "; otherwise the extension of OUT decides")
        ->type_name("FORMAT");
    app.add_flag_callback(
        "--exact-colours", [this] { colors_ = ksImportColors::kExactColors; },
        "In WebVTT, keep colours exactly; many players then show nothing");
    addTimingOptions(app);
    addSpanOptions(app);
    addTextOptions(app);
    addReadingOptions(app, request_.options);
    explainTimes(app);
    app.callback([this] { checkArguments(); });
  }

  int run() override {
    if (output_ != "-")
      std::signal(SIGPIPE, SIG_IGN);  // unread notes must not keep it from writing
    request_.options.markup = ksImportMarkup::kHtml;
    const ksImportParser parser = openedParser(request_);
    EditedCues cues = cuesIn(parser);
    noteLeftOut(unreadableCues(parser.report()), "cue that cannot be read is",
                "cues that cannot be read are");
    noteLeftOut(parser.cues().size() - cues.size(), "duplicate cue is", "duplicate cues are");
    cues = withNewTimes(std::move(cues), edits_);
    noteLeftOut(std::erase_if(cues, isNeverShown), "cue that is never shown is",
                "cues that are never shown are");
    cues = edited(std::move(cues), edits_);
    if (cues.empty()) throw std::runtime_error(terminalText(nameOf(request_)) + ": no cue is left");
    const std::string content = written(cues, target_, colors_);
    if (isInPlace_) {
      replaceInput(content);
    } else if (output_ == "-") {
      std::cout << content;
    } else {
      OutputFile file(output_);
      file.write(content);
      file.finish();
    }
    return kSuccess;
  }

 private:
  template <typename Set>
  static CLI::Option* addTime(CLI::App& app, const char* name, const char* description, Set set) {
    return app
        .add_option_function<std::string>(
            name, [set](const std::string& text) { set(requireTime(text)); }, description)
        ->type_name("TIME");
  }

  void addTimingOptions(CLI::App& app) {
    CLI::Option* shift =
        addTime(app, "--shift", "Show everything this much later, or earlier if negative",
                [this](long long time) { edits_.change.after = time; });
    CLI::Option* scale = app.add_option_function<std::string>(
        "--scale", [this](const std::string& text) { setScale(text); },
        "Convert from one frame rate to another, such as 25:23.976");
    scale->type_name("FROM:TO");
    app.add_option_function<std::vector<std::string>>(
           "--sync", [this](const std::vector<std::string>& texts) { setPairs(texts); },
           "Move what is shown at OLD to NEW; given twice, also stretch")
        ->type_name("OLD=NEW")
        ->expected(1, 2)
        ->allow_extra_args(false)
        ->excludes(shift)
        ->excludes(scale);
  }

  void addSpanOptions(CLI::App& app) {
    addTime(app, "--from", "Keep only what is shown from then on",
            [this](long long time) { edits_.from = time; });
    addTime(app, "--until", "Keep only what is shown before",
            [this](long long time) { edits_.until = time; });
    addTime(app, "--min-duration", "Show each cue for at least this long, if the next one permits",
            [this](long long time) { edits_.least = time; });
    app.add_flag("--no-overlaps", edits_.hasNoOverlaps,
                 "End each cue where the next one begins, even dialogue where a sign begins");
  }

  void addTextOptions(CLI::App& app) {
    app.add_flag("--no-sounds", edits_.hasNoSounds,
                 "Remove text in brackets or parentheses, and names in capitals with a colon");
    app.add_option("--wrap", edits_.width,
                   "Break longer lines evenly, at most this many characters each")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 10000).description(""));
  }

  void setScale(const std::string& text) {
    const auto [from, to] = halves("--scale", text, ':');
    edits_.change.numerator = requireMillionths("--scale", from);
    edits_.change.denominator = requireMillionths("--scale", to);
  }

  void setPairs(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
      const auto [before, after] = halves("--sync", text, '=');
      edits_.pairs.push_back({requireTime(before), requireTime(after)});
    }
    if (edits_.pairs.size() < 2) return;
    const auto& [first, second] = std::tie(edits_.pairs[0], edits_.pairs[1]);
    const bool isRising = first.before < second.before && first.after < second.after;
    const bool isFalling = first.before > second.before && first.after > second.after;
    if (!isRising && !isFalling) {
      throw CLI::ValidationError("--sync", "needs two times that remain in order");
    }
  }

  static std::size_t unreadableCues(const ksImportReport& report) {
    using enum ksImportProblem;
    return report.count(kTimeUnreadable) + report.count(kCueCutOff) +
           report.count(kColumnsMissing) + report.count(kOutsideParent);
  }

  /// Rejects arguments that do not go together.
  void checkArguments() {
    if (isInPlace_ && (!output_.empty() || request_.path == "-")) {
      throw CLI::ValidationError("--in-place", "needs one file, and no OUT");
    }
    if (!isInPlace_ && output_.empty()) throw CLI::RequiredError("OUT, or --in-place,");
    std::error_code ignored;
    if (!isInPlace_ && fs::equivalent(request_.path, output_, ignored)) {
      throw CLI::ValidationError("OUT", "is IN: use --in-place to replace it");
    }
    if (edits_.from && edits_.until && *edits_.until <= *edits_.from) {
      throw CLI::ValidationError("--until", "must be later than --from");
    }
    const std::string_view written = isInPlace_ ? request_.path : output_;
    const auto target = targetNamed(to_.empty() ? extensionOf(written) : std::string_view(to_));
    if (!target) {
      throw CLI::ValidationError("--to",
                                 "must be " + targets() + " unless the extension of OUT says so");
    }
    target_ = *target;
    if (isInPlace_ && target_ == ksImportTarget::kText) {
      throw CLI::ValidationError("--in-place", "would lose the times in plain text: use --to");
    }
  }

  void noteLeftOut(std::size_t count, const char* one, const char* several) const {
    if (count == 0) return;
    std::cerr << terminalText(nameOf(request_)) << ": " << count << ' '
              << (count == 1 ? one : several) << " left out\n";
  }

  /// A link remains a link, and the file keeps its permissions.
  void replaceInput(const std::string& content) const {
    const std::string path = fs::canonical(request_.path).string();
    const fs::perms permissions = fs::status(path).permissions();
    OutputFile file(path);
    file.write(content);
    fs::copy_file(path, backupName(path));
    file.finish();
    fs::permissions(path, permissions);
  }

  FileRequest request_;
  std::string output_;
  std::string to_;
  ksImportTarget target_ = ksImportTarget::kText;
  ksImportColors colors_ = ksImportColors::kStandardColors;
  bool isInPlace_ = false;
  Edits edits_;
};

}  // namespace

std::unique_ptr<Command> makeConvert() { return std::make_unique<Convert>(); }

}  // namespace kssub
