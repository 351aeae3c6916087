// ASS and SSA scripts: columns as the Format line of their section names them, events anywhere.
#include <algorithm>
#include <array>
#include <string_view>

#include "kssubtitle/import/formats/common/time_lines.h"
#include "kssubtitle/import/formats/common/times.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/ass_overrides.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/lines.h"

namespace kssubtitle::importing {
namespace {

/// The columns of a line, as far as they are read.
template <std::size_t kNames>
class Columns {
 public:
  using Names = std::array<std::string_view, kNames>;

  Columns(const Names& names, std::string_view format) : names_(names) { setFormat(format); }

  /// `format` is the value of a Format line.
  void setFormat(std::string_view format) {
    count_ = 0;
    places_.fill(kMissing);
    for (; count_ == 0 || !format.empty(); ++count_) {
      const std::size_t end = std::min(format.find(','), format.size());
      setPlace(withoutBlanks(format.substr(0, end)));
      format.remove_prefix(std::min(end + 1, format.size()));
    }
  }

  /// Makes the last column that of `name` if no other is, and it has no name itself.
  void setLast(std::size_t name) noexcept {
    const bool isNamed = std::ranges::find(places_, count_ - 1) != places_.end();
    if (!has(name) && !isNamed) places_[name] = count_ - 1;
  }

  bool has(std::size_t name) const noexcept { return places_[name] != kMissing; }

  /// Splits `line` into `values`, in the order of the names; the last column has the whole rest.
  /// False if there are fewer columns than the format has.
  bool split(std::string_view line, std::array<std::string_view, kNames>& values) const noexcept {
    values.fill({});
    for (std::size_t column = 0; column < count_; ++column) {
      const bool isLast = column + 1 == count_;
      const std::size_t end = isLast ? line.size() : line.find(',');
      if (end == line.npos) return false;
      for (std::size_t i = 0; i < kNames; ++i) {
        if (places_[i] == column) values[i] = line.substr(0, end);
      }
      if (!isLast) line.remove_prefix(end + 1);
    }
    return true;
  }

 private:
  static constexpr std::size_t kMissing = static_cast<std::size_t>(-1);

  /// Of two columns of the same name the first one counts.
  void setPlace(std::string_view name) noexcept {
    for (std::size_t i = 0; i < kNames; ++i) {
      if (equalNoCase(names_[i], name) && !has(i)) places_[i] = count_;
    }
  }

  const Names& names_;
  std::array<std::size_t, kNames> places_{};  // the column of each name
  std::size_t count_ = 0;                     // of all columns
};

enum EventColumn : std::size_t { kStart, kEnd, kStyle, kText, kEventColumns };
constexpr std::array<std::string_view, kEventColumns> kEventNames = {"Start", "End", "Style",
                                                                     "Text"};
// "Layer" is "Marked" in SSA.
constexpr std::string_view kEventFormat =
    "Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text";
// Of type v4.00++, which has two vertical margins.
constexpr std::string_view kEventFormatOfFourMargins =
    "Layer, Start, End, Style, Actor, MarginL, MarginR, MarginT, MarginB, Effect, Text";
enum StyleColumn : std::size_t {
  kName,
  kPrimaryColour,
  kBold,
  kItalic,
  kUnderline,
  kStrikeOut,
  kAlignment,
  kStyleColumns
};
constexpr std::array<std::string_view, kStyleColumns> kStyleNames = {
    "Name", "PrimaryColour", "Bold", "Italic", "Underline", "StrikeOut", "Alignment"};
constexpr std::string_view kAssStyleFormat =
    "Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, Bold, "
    "Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, Shadow, "
    "Alignment, MarginL, MarginR, MarginV, Encoding";
constexpr std::string_view kSsaStyleFormat =
    "Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, TertiaryColour, BackColour, Bold, "
    "Italic, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, AlphaLevel, "
    "Encoding";

/// Whether a line has this key, in any case; `value` is then what follows its colon.
bool hasKey(std::string_view line, std::string_view key, std::string_view& value) noexcept {
  if (!startsWithNoCase(line, key)) return false;
  const std::string_view rest = withoutLeadingBlanks(line.substr(key.size()));
  if (!rest.starts_with(':')) return false;
  value = withoutLeadingBlanks(rest.substr(1));
  return true;
}

bool isSectionOfStyles(std::string_view line) noexcept {
  return startsWithNoCase(line, "[V4") && line.ends_with(']') &&
         findNoCase(line, "Styles") != line.npos;
}

bool isSectionOfScripts(std::string_view line) noexcept {
  return equalNoCase(line, "[Script Info]") || isSectionOfStyles(line);
}

constexpr bool isLowerCase(char c) noexcept { return c >= 'a' && c <= 'z'; }

class AssReader {
 public:
  AssReader(const FormatInput& input, CueSink& sink)
      : input_(input),
        sink_(sink),
        events_(kEventNames, kEventFormat),
        styleColumns_(kStyleNames, kAssStyleFormat) {}

  void read() {
    for (const Line& line : input_.lines()) readLine(line);
    countHundredths();
  }

 private:
  /// The times of a cue of which one has three digits after its point, read as hundredths.
  struct OddTimes {
    std::size_t cue;
    long long start;
    long long end;
  };

  void readLine(const Line& whole) {
    const std::string_view line = withoutLeadingBlanks(whole.text);
    if (line.empty()) return;
    if (line.front() == '[') return enterSection(line);
    if (isAttachment_) return;
    std::string_view value;
    if (hasKey(line, "Dialogue", value)) {
      if (!hasEvents_) readStylesBelow(whole.next);
      hasEvents_ = true;
      readEvent(value, whole.number);
    } else if (hasKey(line, "Format", value)) {
      readFormat(value);
    } else if (hasKey(line, "Style", value)) {
      readStyle(value);
    } else {
      if (hasKey(line, "ScriptType", value)) hasFourMargins_ = withoutBlanks(value).ends_with("++");
      if (isInEvents_ && !isHidden(line)) {
        sink_.notes().add(ksImportProblem::kLineIgnored, whole.number);
      }
    }
  }

  /// Whether the line is an event that shows no text, or a comment.
  static bool isHidden(std::string_view line) noexcept {
    constexpr std::string_view kKeys[] = {"Comment", "Picture", "Sound", "Movie", "Command"};
    std::string_view value;
    return line.front() == ';' || line.starts_with("!:") ||
           std::any_of(std::begin(kKeys), std::end(kKeys),
                       [&](std::string_view key) { return hasKey(line, key, value); });
  }

  void enterSection(std::string_view line) {
    const auto is = [line](std::string_view name) { return startsWithNoCase(line, name); };
    // Attached data may look like nearly anything, but has no lower-case letters.
    const bool isKnown = isSectionOfScripts(line) || equalNoCase(line, "[Events]");
    if (isAttachment_ && !isKnown && std::none_of(line.begin(), line.end(), isLowerCase)) return;
    isAttachment_ = is("[Fonts]") || is("[Graphics]");
    isInEvents_ = is("[Events");
    if (isInEvents_) events_.setFormat(hasFourMargins_ ? kEventFormatOfFourMargins : kEventFormat);
    if (is("[V4")) {
      isSsa_ = is("[V4 ");
      hasFourMargins_ = hasFourMargins_ || is("[V4++");
      styleColumns_.setFormat(isSsa_ ? kSsaStyleFormat : kAssStyleFormat);
    }
  }

  /// The columns show which section a Format line belongs to.
  void readFormat(std::string_view format) {
    Columns<kEventColumns> columns(kEventNames, format);
    if (columns.has(kStart) && columns.has(kEnd)) {
      events_.setFormat(format);
      events_.setLast(kText);  // whatever its name
    } else if (!columns.has(kText)) {
      styleColumns_.setFormat(format);
    }
  }

  void readStyle(std::string_view line) {
    std::array<std::string_view, kStyleColumns> values;
    styleColumns_.split(line, values);  // what is missing at the end keeps its default
    const auto isOn = [&values](StyleColumn column) {
      return integerOfAss(values[column]).value_or(0) != 0;
    };
    AssStyle style;
    style.style.bold = isBoldWeight(integerOfAss(values[kBold]).value_or(0));
    style.style.italic = isOn(kItalic);
    style.style.underline = isOn(kUnderline);
    style.style.strikeOut = isOn(kStrikeOut);
    style.style.colour = colourOfAss(values[kPrimaryColour]).value_or(Style::kNoColour);
    style.alignment = alignmentOf(values[kAlignment]);
    styles_.add(values[kName], style);
  }

  /// Styles apply to all of a script, so they are read from the sections below before the first
  /// event is.
  void readStylesBelow(std::size_t begin) {
    AssReader below(input_, sink_);
    below.styles_ = std::move(styles_);
    for (std::size_t at = begin; (at = input_.text.find('[', at)) < input_.text.size(); ++at) {
      if (input_.text[at - 1] == '\n') below.readSectionOfStyles(at);
    }
    styles_ = std::move(below.styles_);
  }

  void readSectionOfStyles(std::size_t begin) {
    for (const Line& line : Lines(input_.text, begin)) {
      if (line.begin == begin) {
        if (!isSectionOfStyles(withoutTrailingBlanks(line.text))) return;
        enterSection(line.text);
      } else if (line.text.starts_with('[')) {
        return;
      }
      std::string_view value;
      if (hasKey(line.text, "Format", value)) readFormat(value);
      if (hasKey(line.text, "Style", value)) readStyle(value);
    }
  }

  int alignmentOf(std::string_view column) const noexcept {
    const int number = integerOfAss(column).value_or(2);
    if (isSsa_) return alignmentOfSsa(number).value_or(2);
    return number >= 1 && number <= 9 ? number : 2;
  }

  void readEvent(std::string_view line, int number) {
    std::array<std::string_view, kEventColumns> columns;
    if (!events_.split(line, columns)) {
      return sink_.notes().add(ksImportProblem::kColumnsMissing, number);
    }
    const auto start = timeIn(columns[kStart]);
    const auto end = timeIn(columns[kEnd]);
    if (!start || !end) return sink_.notes().add(ksImportProblem::kTimeUnreadable, number);
    if (!start->isUsual || !end->isUsual) {
      sink_.notes().add(ksImportProblem::kTimeRepaired, number);
    }
    ksImportCue& cue = sink_.begin(start->milliseconds, end->milliseconds, number);
    noteFractions(*start, *end);
    const AssStyle& style = styleOf(columns[kStyle], number);
    const AssTextTraits traits = writeAssText(columns[kText], style, styles_, sink_.text());
    cue.alignment = traits.alignment.value_or(style.alignment);
    if (traits.isUnclosed) sink_.notes().add(ksImportProblem::kTagUnclosed, number);
    if (traits.hasDrawing) {
      sink_.finishOrMark();  // which may be all that it shows
    } else {
      sink_.finish();
    }
  }

  void noteFractions(const WrittenTime& start, const WrittenTime& end) {
    for (const WrittenTime& time : {start, end}) {
      if (time.fractionDigits == 2) ++withTwoDigits_;
      if (hasThreeDigits(time)) ++withThreeDigits_;
    }
    if (!hasThreeDigits(start) && !hasThreeDigits(end)) return;
    oddTimes_.push_back({sink_.cues().size() - 1, hundredthsOf(start), hundredthsOf(end)});
  }

  static bool hasThreeDigits(const WrittenTime& time) noexcept {
    return time.isUsual && time.fractionDigits == 3;
  }

  /// The milliseconds of a time whose fraction counts hundredths, however many digits it has.
  static long long hundredthsOf(const WrittenTime& time) noexcept {
    return time.milliseconds + (hasThreeDigits(time) ? time.milliseconds % 1000 * 9 : 0);
  }

  /// Where most times have two digits after the point, three are hundredths too, as libass reads
  /// them: some programs write 59.996 seconds as "0:00:59.100".
  void countHundredths() {
    if (withTwoDigits_ <= withThreeDigits_) return;
    for (const OddTimes& odd : oddTimes_) {
      ksImportCue& cue = sink_.cues()[odd.cue];
      cue.start = odd.start;
      cue.end = odd.end;
      sink_.notes().add(ksImportProblem::kTimeRepaired, cue.line);
    }
  }

  static std::optional<WrittenTime> timeIn(std::string_view column) noexcept {
    auto time = consumeTime(column);
    if (!withoutBlanks(column).empty()) time.reset();
    return time;
  }

  const AssStyle& styleOf(std::string_view name, int line) {
    static constexpr AssStyle kPlainStyle{};
    if (const AssStyle* const named = styles_.named(name)) return *named;
    if (!styles_.empty() && !withoutBlanks(name).empty()) {
      sink_.notes().add(ksImportProblem::kUnknownStyle, line);
    }
    const AssStyle* const usual = styles_.named("Default");
    return usual == nullptr ? kPlainStyle : *usual;
  }

  const FormatInput& input_;
  CueSink& sink_;
  Columns<kEventColumns> events_;
  Columns<kStyleColumns> styleColumns_;
  AssStyles styles_;
  std::size_t withTwoDigits_ = 0;  // times, by the digits of their fractions
  std::size_t withThreeDigits_ = 0;
  std::vector<OddTimes> oddTimes_;
  bool isSsa_ = false;
  bool hasFourMargins_ = false;
  bool hasEvents_ = false;
  bool isInEvents_ = false;
  bool isAttachment_ = false;  // within the data of [Fonts] or [Graphics]
};

/// Whether one of the first columns of an event is a time.
bool hasTimes(std::string_view event) noexcept {
  constexpr int kColumnsUpToStart = 2;
  for (int column = 0; column < kColumnsUpToStart; ++column) {
    std::string_view text = event.substr(0, event.find(','));
    if (const auto time = consumeTime(text); time && time->fields == 3) return true;
    event.remove_prefix(std::min(event.find(','), event.size()));
    if (!event.empty()) event.remove_prefix(1);
  }
  return false;
}

Likelihood likelihoodOf(std::string_view text) noexcept {
  Likelihood likelihood = Likelihood::kNone;
  for (const Line& line : Lines(text)) {
    const std::string_view content = withoutBlanks(line.text);
    std::string_view value;
    if (isSectionOfScripts(content)) return Likelihood::kCertain;
    if (hasKey(content, "Dialogue", value) && hasTimes(value)) return Likelihood::kLikely;
    if (mayPrecedeText(content)) break;
    if (equalNoCase(content, "[Events]")) likelihood = Likelihood::kPossible;
  }
  return likelihood;
}

}  // namespace

constinit const Format kAss = {
    .info = {.name = "ass",
             .extensions = "ass ssa",
             .target = ksImportTarget::kAss,
             .isSequential = false,
             .repeatsCues = true},
    .likelihood = likelihoodOf,
    .read = readWith<AssReader>,
};

}  // namespace kssubtitle::importing
