// Files of any content, opened by the import library: with any options, which the first two bytes
// of an input choose, or, if FUZZED_FORMAT names a format, in that one.
#include "fuzz/support.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/white_space.h"
#include "kssubtitle/import/text/unicode.h"
#include "tests/models/moments_model.h"

namespace {

using namespace kssubtitle::importing;

ksImportOptions optionsOf(unsigned char first, unsigned char second) {
  constexpr const char* kEncodings[] = {
      "",      "",        "",        "",       "windows-1251", "UTF-8",  "CP932",  "UTF-16",
      "UTF-7", "UCS-4LE", "GB18030", "UTF-32", "ISO-2022-JP",  "EUC-KR", "CP1255", "x"};
  ksImportOptions options;
  options.markup = (first & 1) != 0 ? ksImportMarkup::kHtml : ksImportMarkup::kPlain;
  options.maxBytes = (first & 8) != 0 ? 2048 : options.maxBytes;
  options.encoding = kEncodings[second & 15];
  options.fallbackEncoding = kEncodings[second >> 4];
  return options;
}

/// Whether the tags of `html` are those of the small set, each closed before the one round it.
bool isWellFormed(std::string_view html) {
  std::vector<std::string_view> open;
  for (std::size_t at; (at = html.find_first_of("<>&")) != html.npos;) {
    html.remove_prefix(at);
    const std::size_t end = html.find_first_of(html.front() == '&' ? ";" : ">");
    if (html.front() == '>' || end == html.npos) return false;
    std::string_view inner = html.substr(1, end - 1);
    if (html.front() == '&') {
      if (inner != "amp" && inner != "lt" && inner != "gt") return false;
    } else if (inner.starts_with('/')) {
      if (open.empty() || open.back() != inner.substr(1)) return false;
      open.pop_back();
    } else {
      const bool isFont = inner.size() == 20 && inner.starts_with("font color=\"#") &&
                          inner.find_first_not_of("0123456789abcdef", 13) == 19 && inner[19] == '"';
      if (!isFont && inner != "i" && inner != "b" && inner != "u" && inner != "s") return false;
      open.push_back(isFont ? "font" : inner);
    }
    html.remove_prefix(end + 1);
  }
  return open.empty();
}

void checkText(std::string_view text, bool isHtml) {
  check(!text.empty(), "a cue has text");
  const Utf8Count count = countUtf8(text);
  check(count.badBytes == 0 && !count.cutAtEnd, "a text is valid UTF-8");
  check(text.find('\0') == text.npos, "a text has no NUL");
  if (isHtml) return check(isWellFormed(text), "html is well formed");
  for (bool more = true; more;) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    check(!line.empty() && leadingWhiteSpace(line) == 0 && trailingWhiteSpace(line) == 0,
          "a line neither begins nor ends in white space");
    more = end < text.size();
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void checkReport(const ksImportReport& report, bool isOpen) {
  check(isOpen == (report.refusal() == ksImportRefusal::kNone), "a refusal has a reason");
  check(isOpen == report.refusalSentence().empty(), "a refusal is explained");
  std::size_t all = 0;
  for (const ksImportProblem problem : ksImportProblems()) {
    const auto kept =
        std::count_if(report.notes().begin(), report.notes().end(),
                      [&](const ksImportNote& note) { return note.problem == problem; });
    check(static_cast<std::size_t>(kept) <= report.count(problem), "every note is counted");
    all += report.count(problem);
  }
  check(report.notes().size() == std::min<std::size_t>(all, 1000), "a thousand notes are kept");
  for (const ksImportNote& note : report.notes()) {
    check(note.line >= 0 && static_cast<std::size_t>(note.line) <= report.size() + 1 &&
              !ksImportSentence(note.problem).empty(),
          "a note names a line");
  }
}

void checkMoments(ksImportParser& parser) {
  constexpr std::size_t kEnough = 100;
  std::set<long long> times{LLONG_MIN, -1, 0, 1, LLONG_MAX};
  long long greatestEnd = 0;
  for (const ksImportCue& cue : parser.cues()) {
    greatestEnd = std::max(greatestEnd, cue.end);
    if (times.size() > kEnough) continue;
    for (const long long t : {cue.start, cue.end}) times.insert({t - 1, t, t + 1});
  }
  check(parser.DurationTime() == greatestEnd, "the duration is the greatest end");
  for (const long long t : times) {
    const ShownText shown = ask(parser, t);
    check(shown == shownAt(parser.cues(), t), "what is shown is what a look at all cues gives");
    check(shown.text.empty() || shown.end > shown.start, "a moment lasts");
    const SUBTITLE_ST_U wideAnswer = parser.GetSubTitleU(t);
    check(wideAnswer.start == shown.start && wideAnswer.end == shown.end &&
              wideAnswer.text.getData() == wideText(shown.text),
          "both widths say the same");
  }
}

void checkCues(std::span<const ksImportCue> cues, bool isHtml) {
  for (std::size_t i = 0; i < cues.size(); ++i) {
    checkText(cues[i].text, isHtml);
    check(cues[i].line > 0 && cues[i].index >= 0, "a cue knows its place");
    check(cues[i].alignment >= 1 && cues[i].alignment <= 9, "an alignment is a key of the pad");
    if (i == 0) continue;
    check(std::pair(cues[i - 1].start, cues[i - 1].index) < std::pair(cues[i].start, cues[i].index),
          "cues are sorted by start, then by place");
  }
}

/// Where the fixed readers are said to agree, the manager gives the same answers.
void checkAgreement(std::string_view format, std::string_view bytes) {
  if (format != "subrip" && format != "ass") return;
  static const TempDir dir;
  const std::string path = dir.write(format == "ass" ? "film.ass" : "film.srt", bytes);
  if (!ksWhyFixedReadersDiffer(path.c_str()).empty()) return;
  ksImportParser parser;
  ksSubtitleManager manager;
  check(parser.Open(path.c_str()) && manager.Open(path.c_str()), "both open a plain file");
  const bool isWide = bytes.starts_with("\xFF\xFE");
  for (const ksImportCue& cue : parser.cues()) {
    for (const long long t : {cue.start - 1, cue.start, cue.end, cue.end + 1}) {
      check(isWide ? isSame(manager.GetSubTitleU(t), parser.GetSubTitleU(t))
                   : isSame(manager.GetSubTitle(t), parser.GetSubTitle(t)),
            "the manager answers a plain file in the same way");
    }
  }
}

bool areSameCues(const ksImportParser& a, const ksImportParser& b) {
  return std::equal(a.cues().begin(), a.cues().end(), b.cues().begin(), b.cues().end(),
                    [](const ksImportCue& x, const ksImportCue& y) {
                      return x.start == y.start && x.end == y.end && x.text == y.text &&
                             x.line == y.line && x.index == y.index;
                    });
}

using ShownCues = std::set<std::tuple<long long, long long, std::string_view, int>>;

ShownCues shownCues(const ksImportParser& parser) {
  ShownCues shown;
  for (const ksImportCue& cue : parser.cues()) {
    const long long start = std::max(cue.start, 0LL);
    const long long end = std::min(cue.end, 3'599'999'999'999'999'990LL);
    if (cue.isDuplicate) continue;
    if (end > start) shown.emplace(start, end, cue.text, cue.alignment);
  }
  return shown;
}

/// Cues that differ in alignment alone are one when they are read.
bool areSameButFor(ShownCues a, const ShownCues& b) {
  for (const auto& cue : b) {
    if (a.erase(cue) == 0) return false;
  }
  return std::all_of(a.begin(), a.end(), [&](const auto& cue) {
    const auto& [start, end, text, alignment] = cue;
    const auto same = b.lower_bound({start, end, text, 0});
    return same != b.end() && std::get<2>(*same) == text && std::get<1>(*same) == end;
  });
}

void checkWritten(const ksImportParser& parser, const ksImportOptions& options) {
  for (const ksImportTarget target : {ksImportTarget::kWebVtt, ksImportTarget::kAss}) {
    ksImportWrite(parser.cues(), target, options.markup);
  }
  const std::string file = ksImportWrite(parser.cues(), ksImportTarget::kSubRip, options.markup);
  ksImportParser again;
  ksImportOptions sameMarkup;
  sameMarkup.markup = options.markup;
  sameMarkup.format = "subrip";
  const bool isOpen = again.OpenMemory(file.data(), file.size(), sameMarkup);
  check(isOpen != file.empty(), "a written file is read");
  check(areSameButFor(shownCues(parser), shownCues(again)), "a written file has the same cues");
  check(again.report().count(ksImportProblem::kTimeRepaired) == 0, "times are written as usual");
}

void checkFile(ksImportParser& parser, std::string_view bytes, const ksImportOptions& options) {
  const bool isOpen = parser.OpenMemory(bytes.data(), bytes.size(), options);
  check(isOpen == parser.IsOpen(), "a parser is open if Open() says so");
  check(isOpen || parser.cues().empty(), "a refused file has no cues");
  checkReport(parser.report(), isOpen);
  checkCues(parser.cues(), options.markup == ksImportMarkup::kHtml);
  checkMoments(parser);
  checkWritten(parser, options);
  checkAgreement(parser.report().format(), bytes);
  ksImportParser again;
  again.OpenMemory("x", 1);
  check(again.OpenMemory(bytes.data(), bytes.size(), options) == isOpen &&
            areSameCues(parser, again) &&
            again.report().notes().size() == parser.report().notes().size(),
        "a file is read the same way again");
}

/// Reads the bytes in that format, in both markups, and then as what they are taken for.
void checkFormat(std::string_view bytes, const char* format) {
  check(formatNamed(format) != nullptr, "FUZZED_FORMAT is in the table of formats");
  ksImportOptions options;
  options.format = format;
  options.encoding = "UTF-8";
  ksImportParser parser;
  for (const auto markup : {ksImportMarkup::kHtml, ksImportMarkup::kPlain}) {
    options.markup = markup;
    checkFile(parser, bytes, options);
  }
  ksImportParser recognising;
  recognising.OpenMemory(bytes.data(), bytes.size());
  if (recognising.report().format() != format || recognising.report().encoding() != "UTF-8") return;
  check(areSameCues(parser, recognising), "a file is read in the same way if its format is found");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const char* const kFormat = std::getenv("FUZZED_FORMAT");
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (kFormat != nullptr) {
    checkFormat(bytes, kFormat);
  } else if (size >= 2) {
    ksImportParser parser;
    checkFile(parser, bytes.substr(2), optionsOf(data[0], data[1]));
  }
  return 0;
}
