// The front of the import library: bytes become text, text becomes cues, cues become moments.
#include "kssubtitle/import/ksImportParser.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "kssubtitle/import/conditions.h"
#include "kssubtitle/import/formats/common/cue_sink.h"
#include "kssubtitle/import/formats/formats.h"
#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/markup/text_arena.h"
#include "kssubtitle/import/moments/moments.h"
#include "kssubtitle/import/report/report_data.h"
#include "kssubtitle/import/text/bytes.h"
#include "kssubtitle/import/text/file_text.h"
#include "kssubtitle/import/text/lines.h"
#include "kssubtitle/import/text/unicode.h"

using namespace kssubtitle::importing;

namespace {

/// The format of a text in which zero characters do not count.
const Format* recogniseText(std::string_view text, std::string_view path) {
  if (text.find('\0') == text.npos) return recognise(text, path);
  std::string withoutZeros(text);
  std::erase(withoutZeros, '\0');
  return recognise(withoutZeros, path);
}

/// Zero characters end texts elsewhere: none is left in.
void replaceZeros(std::string& text, bool keepsPlace, Notes& notes) {
  std::string kept;
  std::size_t at = 0;
  int line = 1;
  for (std::size_t zero; (zero = text.find('\0', at)) != text.npos; at = zero + 1) {
    const std::string_view between = std::string_view(text).substr(at, zero - at);
    line += countLines(between);
    notes.add(ksImportProblem::kNulCharacter, line);
    kept += between;
    if (keepsPlace) kept += kReplacementUtf8;
  }
  if (at == 0) return;
  kept += std::string_view(text).substr(at);
  text = std::move(kept);
}

/// Whether a text that is of no format is text at all.
bool looksBinary(std::string_view text) noexcept {
  constexpr std::size_t kLooked = 4096;
  text = text.substr(0, std::min(text.size(), kLooked));
  const auto controls = std::count_if(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && !isBlank(c) && c != '\n' && c != '\x1A';
  });
  return static_cast<std::size_t>(controls) > text.size() / 32;
}

struct FormatOrRefusal {
  const Format* format;
  RefusalAtSight refusal;
};

/// The format to read a text in, that of the name `given` if there is one.
FormatOrRefusal formatToRead(std::string_view text, std::string_view path, std::string_view given) {
  if (!given.empty()) {
    // The refusal counts where there is no such format.
    return {formatNamed(given), {ksImportRefusal::kUnknownOption, {}}};
  }
  const Format* const format = recogniseText(text, path);
  if (const Format* const meant = formatLackingSignature(text, path, format)) {
    return {nullptr, {ksImportRefusal::kUnknownFormat, meant->signatureMissing}};
  }
  if (format != nullptr) return {format, {}};
  if (looksBinary(text)) return {nullptr, {ksImportRefusal::kBinary, {}}};
  return {nullptr, {ksImportRefusal::kUnknownFormat, sentenceOnOtherText(text)}};
}

/// The texts of what `moment` shows, each cue behind a line feed.
std::string joinedTexts(const Moments& moments, const Moment& moment,
                        std::span<const ksImportCue> cues) {
  std::string joined;
  const auto add = [&](int cue) {
    const std::string_view text = cues[static_cast<std::size_t>(cue)].text;
    joined.reserve(joined.size() + text.size() + 1);
    joined += '\n';
    joined += text;
  };
  if (moment.shown >= 0) {
    add(moment.shown);
  } else {
    for (const int cue : moments.cuesAt(moment, cues)) add(cue);
  }
  return joined;
}

}  // namespace

/// What an open parser holds.
struct ksImportParser::Contents {
  explicit Contents(std::size_t textSize) : texts(textSize) {}

  TextArena texts;
  std::vector<ksImportCue> cues;
  Moments moments;
  long long duration = 0;
};

ksImportParser::ksImportParser() noexcept = default;
ksImportParser::ksImportParser(ksImportParser&& other) noexcept = default;
ksImportParser& ksImportParser::operator=(ksImportParser&& other) noexcept = default;
ksImportParser::~ksImportParser() = default;

bool ksImportParser::Open(const char* path) { return Open(path, ksImportOptions()); }

bool ksImportParser::Open(const char* path, const ksImportOptions& options) {
  close();
  FileBytes file = readFile(path, std::min(options.maxBytes, kMostFileBytes));
  if (file.refusal != ksImportRefusal::kNone) return refuse(file.refusal, file.systemError);
  return openBytes(std::move(file.bytes), path, options);
}

bool ksImportParser::OpenMemory(const void* bytes, std::size_t size,
                                const ksImportOptions& options) {
  close();
  if (size > std::min(options.maxBytes, kMostFileBytes)) return refuse(ksImportRefusal::kTooLarge);
  if (size == 0) return refuse(ksImportRefusal::kEmpty);
  return openBytes(std::string(static_cast<const char*>(bytes), size), {}, options);
}

bool ksImportParser::IsOpen() const { return contents_ != nullptr; }

long long ksImportParser::DurationTime() { return contents_ ? contents_->duration : 0; }

SUBTITLE_ST ksImportParser::GetSubTitle(long long t) {
  if (!contents_) return {};
  const auto moment = contents_->moments.at(t, contents_->cues);
  if (!moment) return {};
  return {moment->start, moment->end, joinedTexts(contents_->moments, *moment, contents_->cues)};
}

SUBTITLE_ST_U ksImportParser::GetSubTitleU(long long t) {
  if (!contents_) return {};
  const auto moment = contents_->moments.at(t, contents_->cues);
  if (!moment) return {};
  return {moment->start, moment->end,
          wideText(joinedTexts(contents_->moments, *moment, contents_->cues))};
}

std::span<const ksImportCue> ksImportParser::cues() const noexcept {
  if (!contents_) return {};
  return contents_->cues;
}

void ksImportParser::close() {
  contents_.reset();
  report_.data_.reset();  // even if there is no memory for a new one
  report_.data_ = std::make_unique<ReportData>();
}

bool ksImportParser::refuse(ksImportRefusal refusal, int systemError) noexcept {
  report_.data_->refusal = refusal;
  report_.data_->systemError = systemError;
  report_.data_->notes.sortByLine();
  return false;
}

bool ksImportParser::openBytes(std::string bytes, std::string_view path,
                               const ksImportOptions& options) {
  ReportData& report = *report_.data_;
  report.size = bytes.size();
  if (const RefusalAtSight seen = refusalOf(bytes); seen.refusal != ksImportRefusal::kNone) {
    report.refusalSentence = seen.sentence;
    return refuse(seen.refusal);
  }
  std::optional<std::string> text = textOf(std::move(bytes), options, report);
  if (!text) return refuse(ksImportRefusal::kUnknownEncoding);
  return openText(std::move(*text), path, options);
}

bool ksImportParser::openText(std::string text, std::string_view path,
                              const ksImportOptions& options) {
  ReportData& report = *report_.data_;
  const bool hasEndMark = text.ends_with('\x1A');  // with which old systems filled text files up
  text.resize(text.find_last_not_of('\x1A') + 1);
  const std::size_t begin = httpHeaderLength(text);
  const auto [format, refusal] =
      formatToRead(std::string_view(text).substr(begin), path, options.format);
  if (format == nullptr) {
    report.refusalSentence = refusal.sentence;
    return refuse(refusal.refusal);
  }
  report.format = format->info.name;
  if (hasEndMark || begin > 0) report.notes.fail(Condition::kCuesAlone);
  if (report.lineEnds != ksImportLineEnds::kLf || !text.ends_with('\n')) {
    report.notes.fail(Condition::kLineEnds);
  }
  if (!isExtensionOfFixedReaders(path, format->info.name)) report.notes.fail(Condition::kExtension);
  replaceZeros(text, format->keepsNuls, report.notes);
  const std::size_t linesBegin = httpHeaderLength(text);  // anew, without its zeros
  const int firstLine = 1 + countLines(std::string_view(text).substr(0, linesBegin));
  readCues(*format, {text, linesBegin, firstLine, options});
  report.notes.sortByLine();
  report.refusal = ksImportRefusal::kNone;
  report.systemError = 0;
  return true;
}

void ksImportParser::readCues(const Format& format, const FormatInput& input) {
  auto contents = std::make_unique<Contents>(input.text.size());
  CueText text(contents->texts, input.options.markup);
  CueSink sink(text, report_.data_->notes, input.text.size());
  format.read(input, sink);
  report_.data_->languages = std::move(sink.languages());
  arrange(sink.cues(), format.longestAssumed, sink.notes());
  contents->cues = std::move(sink.cues());
  contents->moments.reserve(contents->cues.size());
  for (const ksImportCue& cue : contents->cues) {
    contents->moments.add(cue);
    contents->duration = std::max(contents->duration, cue.end);
  }
  contents->moments.settle(contents->cues);
  report_.data_->cues = contents->cues;
  contents_ = std::move(contents);
}
