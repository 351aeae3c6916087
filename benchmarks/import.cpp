// Measures the import library.
#include "benchmarks/import.h"

#include <iconv.h>
#include <kssubtitle/import.h>
#include <uchardet/uchardet.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

#include "benchmarks/measure.h"
#include "benchmarks/memory.h"
#include "benchmarks/peers.h"
#include "benchmarks/yardsticks.h"

namespace bench {
namespace {

ksImportParser openFile(const std::string& path, ksImportMarkup markup = ksImportMarkup::kPlain) {
  ksImportOptions options;
  options.markup = markup;
  ksImportParser parser;
  if (!parser.Open(path.c_str(), options)) {
    throw std::runtime_error("the import library refuses " + path);
  }
  return parser;
}

auto asking(const std::string& path) {
  const auto parser = std::make_shared<ksImportParser>(openFile(path));
  return [parser](long long t) { return parser->GetSubTitle(t); };
}

bool isScript(const Input& input) { return input.name.ends_with(".ass"); }
/// Whether cues of the input may be shown together, which the binary search does not do.
bool hasOverlap(const Input& input) { return isScript(input) && input.name != "lines.ass"; }

void addOpening(const Input& input) {
  const auto add = [](const std::string& name, const std::string& path, ksImportMarkup markup) {
    measureReading(name, [=] { return openFile(path, markup); });
  };
  add("import/" + input.name, input.path, ksImportMarkup::kPlain);
  add("import/crlf-" + input.name, input.crLfPath, ksImportMarkup::kPlain);
  add("import/wide-" + input.name, input.widePath, ksImportMarkup::kPlain);
  add("import/html-" + input.name, input.path, ksImportMarkup::kHtml);
  const std::size_t cues = onePass(input.path).cues.size();
  for (const Peer& peer : peers()) {
    if (!peer.readsSubRip && !isScript(input)) continue;
    if (peer.read(input.path) != cues) {
      throw std::runtime_error(peer.name + " disagrees on " + input.path);
    }
    measureReading(peer.name + "/" + input.name,
                   [read = peer.read, path = input.path] { return read(path); });
  }
}

void addQueries(const Input& input) {
  const auto search = [input] {
    return [segments = SegmentSearch<char>(plainLoop(input.path).cues)](long long t) {
      return segments.at(t);
    };
  };
  for (const auto& [order, moments] : momentsOf(input)) {
    requireSameAnswers(moments, asking(input.path), search());
    measureQueries("import-query/" + input.name + order, moments,
                   [input] { return asking(input.path); });
  }
}

using Lines = std::vector<std::string>;

/// As many of the lines that are not ASCII as the library shows the detector.
Lines linesToDetect(const std::string& path) {
  constexpr std::size_t kShown = 65536;
  const OnePassFile file = readOnly(path);
  std::string_view rest(file.bytes.get(), file.size);
  Lines lines;
  for (std::size_t size = 0; size < kShown && !rest.empty();) {
    const std::string_view line = rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
    rest.remove_prefix(line.size());
    if (std::ranges::none_of(line, [](char c) { return (c & 0x80) != 0; })) continue;
    lines.emplace_back(line.substr(0, kShown - size));
    size += line.size();
  }
  return lines;
}

/// What telling and converting a code page costs at least: the detector and the conversion.
std::string detectAndConvert(const std::string& path, const Lines& shown) {
  const OnePassFile file = readOnly(path);
  const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(),
                                                                       &uchardet_delete);
  for (const std::string& line : shown) {
    uchardet_handle_data(detector.get(), line.data(), line.size());
  }
  uchardet_data_end(detector.get());
  const iconv_t conversion = iconv_open("UTF-8", uchardet_get_charset(detector.get()));
  std::string text(2 * file.size, '\0');
  char* from = file.bytes.get();
  char* to = text.data();
  std::size_t left = file.size;
  std::size_t room = text.size();
  iconv(conversion, &from, &left, &to, &room);
  iconv_close(conversion);
  if (left > 0) throw std::runtime_error("the detector is wrong about " + path);
  text.resize(text.size() - room);
  return text;
}

/// The answers of a stack of cues by what is known of it: the least for texts that are joined.
class StackSearch {
 public:
  explicit StackSearch(const Input& input) : file_(onePass(input.path)) {}

  SegmentSearch<char>::Answer at(long long t) const {
    const std::vector<CueView>& cues = file_.cues;
    const auto after = std::ranges::upper_bound(cues, t, {}, &CueView::start);
    SegmentSearch<char>::Answer answer{std::prev(after)->start, after->start, {}};
    const auto add = [&](const CueView& cue) { (answer.text += '\n') += cue.text; };
    add(cues.front());
    const long long step = cues[1].start;
    const auto shown = (cues[1].end - cues[1].start) / step;
    for (auto cue = after - shown; cue != after; ++cue) add(*cue);
    return answer;
  }

 private:
  OnePassFile file_;
};

/// Moments at which as many cues are shown as ever.
Moments fullMoments(int cues, int atOnce) {
  constexpr int kStep = 100;
  Moments moments = randomMoments(1000, (cues - atOnce - 2) * kStep);
  for (long long& t : moments) t += atOnce * kStep + kStep;
  return moments;
}

void addStack(const Input& input, const Moments& moments) {
  const auto search = [input] {
    return [known = std::make_shared<StackSearch>(input)](long long t) { return known->at(t); };
  };
  requireSameAnswers(moments, asking(input.path), search());
  measureQueries("import-query/" + input.name, moments, [input] { return asking(input.path); });
  measureQueries("search/" + input.name, moments, search);
}

struct Kept {
  double bytes;
  double allowed;  // 1.1 times the text and 80 bytes a cue
  double size;
};

Kept keptByOpening(const std::string& path, ksImportMarkup markup) {
  ksImportParser parser;
  const std::size_t kept = keptBy([&] { parser = openFile(path, markup); });
  const auto size = static_cast<double>(parser.report().size());
  return {static_cast<double>(kept), size * 1.1 + 80.0 * static_cast<double>(parser.cues().size()),
          size};
}

}  // namespace

ImportBenchmarks::ImportBenchmarks(const std::vector<Input>& inputs)
    : inputs_(inputs), codePage_(writeCodePageInput()) {
  for (const Input& input : inputs_) {
    addOpening(input);
    if (!hasOverlap(input)) addQueries(input);
  }
  const std::string path = codePage_.path;
  const Lines shown = linesToDetect(path);
  if (detectAndConvert(path, shown).empty() ||
      openFile(path).report().encoding() != "windows-1251") {
    throw std::runtime_error("the code page is not recognised");
  }
  measureReading("import/" + codePage_.name, [path] { return openFile(path); });
  measureReading("convert/" + codePage_.name, [=] { return detectAndConvert(path, shown); });
  for (const int cues : {1'000, 10'000, 100'000}) {
    for (const int atOnce : {1, 10, 100}) {
      stacks_.push_back({cues, atOnce, writeStack(cues, atOnce)});
      addStack(stacks_.back().input, fullMoments(cues, atOnce));
    }
  }
}

void ImportBenchmarks::print(const Results& results) const {
  printOpening(results);
  printQueries(results);
  printStacks(results);
  printMemory();
}

void ImportBenchmarks::printOpening(const Results& results) const {
  printHead({"`Open` of the import library", "time", "/ one pass", "CR LF / one pass",
             "UTF-16 / one pass", "html / one pass", "/ libavformat", "/ libass"});
  for (const Input& input : inputs_) {
    const auto seconds = [&](const std::string& what) {
      return results.of(what + input.name).seconds;
    };
    const double open = seconds("import/");
    const double pass = seconds("pass/");
    printRow({input.title, duration(open), ratio(open, pass), ratio(seconds("import/crlf-"), pass),
              ratio(seconds("import/wide-"), pass), ratio(seconds("import/html-"), pass),
              ratio(open, seconds("libavformat/")), ratio(open, seconds("libass/"))});
  }
  printHead({"`Open` of a code page", "time", "/ detector and iconv"});
  const double open = results.of("import/" + codePage_.name).seconds;
  printRow({codePage_.title, duration(open),
            ratio(open, results.of("convert/" + codePage_.name).seconds)});
}

void ImportBenchmarks::printQueries(const Results& results) const {
  printHead({"Query of the import library / binary search (time)", "random", "60 Hz"});
  for (const Input& input : inputs_) {
    if (hasOverlap(input)) continue;
    std::vector<std::string> cells{input.title};
    for (const char* order : {"/random", "/clock"}) {
      const double seconds = results.of("import-query/" + input.name + order).seconds;
      cells.push_back(ratio(seconds, results.of("search/" + input.name + order).seconds) + " (" +
                      duration(seconds) + ")");
    }
    printRow(cells);
  }
}

void ImportBenchmarks::printStacks(const Results& results) const {
  printHead({"Query with k cues at once of n", "time", "per cue shown", "/ known cues joined"});
  for (const Stack& stack : stacks_) {
    const double seconds = results.of("import-query/" + stack.input.name).seconds;
    printRow({std::to_string(stack.atOnce + 1) + " of " + std::to_string(stack.cues),
              duration(seconds), duration(seconds / (stack.atOnce + 1)),
              ratio(seconds, results.of("search/" + stack.input.name).seconds)});
  }
}

void ImportBenchmarks::printMemory() const {
  printHead({"Memory kept after `Open`", "plain", "/ (1.1 x text + 80 bytes a cue)",
             "html / size of the file"});
  for (const Input& input : inputs_) {
    const Kept plain = keptByOpening(input.path, ksImportMarkup::kPlain);
    const Kept html = keptByOpening(input.path, ksImportMarkup::kHtml);
    printRow({input.title, rounded(plain.bytes / 1000) + " KB", ratio(plain.bytes, plain.allowed),
              ratio(html.bytes, html.size)});
  }
}

}  // namespace bench
