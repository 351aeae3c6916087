// The front of the import library: bytes become text, text becomes cues, cues become moments.
#include "kssubtitle/import/ksImportParser.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "kssubtitle/import/formats/common/arrangement.h"
#include "kssubtitle/import/formats/common/cue_sink.h"
#include "kssubtitle/import/formats/common/format.h"
#include "kssubtitle/import/markup/cue_text.h"
#include "kssubtitle/import/markup/text_arena.h"
#include "kssubtitle/import/moments/moments.h"
#include "kssubtitle/import/recognition/kinds.h"
#include "kssubtitle/import/recognition/recognition.h"
#include "kssubtitle/import/report/report_data.h"
#include "kssubtitle/import/text/bytes.h"
#include "kssubtitle/import/text/file_text.h"
#include "kssubtitle/import/text/lines.h"
#include "kssubtitle/import/text/unicode.h"

using namespace kssubtitle::importing;

/// An open file.
struct kssubtitle::importing::ParserContents {
  explicit ParserContents(std::size_t textSize) : texts(textSize) {}

  TextArena texts;
  std::vector<ksImportCue> cues;
  Moments moments;
  long long duration = 0;
};

namespace {

/// Drops NULs, which would end texts elsewhere, or lets U+FFFD take their place.
void replaceNuls(std::string& text, bool keepsPlace, Notes& notes) {
  std::string kept;
  std::size_t at = 0;
  LineNumbers lines(text);
  for (std::size_t nul; (nul = text.find('\0', at)) != text.npos; at = nul + 1) {
    notes.add(ksImportProblem::kNulCharacter, lines.of(nul));
    kept.append(text, at, nul - at);
    if (keepsPlace) kept += kReplacementUtf8;
  }
  if (at == 0) return;
  kept.append(text, at);
  text = std::move(kept);
}

/// Requires: the text ends in no SUB and has no NULs.
std::unique_ptr<ParserContents> readCues(const Format& format, std::string_view text,
                                         const ksImportOptions& options, ReportData& report) {
  auto contents = std::make_unique<ParserContents>(text.size());
  CueText cueText(contents->texts, options.markup);
  CueSink sink(cueText, report.notes, text.size());
  const std::size_t begin = httpHeaderLength(text);
  format.read({text, begin, 1 + countLines(text.substr(0, begin)), options}, sink);
  report.languages = std::move(sink.languages());
  report.hasLanguage = sink.hasLanguage();
  arrange(sink.cues(), format.longestAssumed, options.markup, sink.notes());
  contents->cues = std::move(sink.cues());
  for (const ksImportCue& cue : contents->cues) {
    contents->duration = std::max(contents->duration, cue.end);
  }
  contents->moments = Moments(contents->cues);
  return contents;
}

std::unique_ptr<ParserContents> refused(ReportData& report, ksImportRefusal refusal,
                                        std::string_view sentence = {}) noexcept {
  report.refuse(refusal, 0, sentence);
  return nullptr;
}

/// The road from bytes to cues. Null if the file is refused.
std::unique_ptr<ParserContents> readBytes(std::string bytes, std::string_view path,
                                          const ksImportOptions& options, ReportData& report) {
  report.size = bytes.size();
  if (bytes.empty()) return refused(report, ksImportRefusal::kEmpty);
  if (const Kind* const kind = kindOf(Content::kBytes, bytes)) {
    return refused(report, kind->refusal, kind->sentence);
  }
  std::optional<std::string> text = textOf(std::move(bytes), options, report);
  if (!text) return refused(report, ksImportRefusal::kUnknownEncodingName);
  const std::size_t headerLength = httpHeaderLength(*text);
  const Recognised recognised =
      recognise(std::string_view(*text).substr(headerLength), path, options.format);
  if (recognised.format == nullptr) return refused(report, recognised.refusal, recognised.sentence);
  const Format& format = *recognised.format;
  report.format = format.info.name;
  replaceNuls(*text, format.keepsNuls, report.notes);
  auto contents = readCues(format, *text, options, report);
  report.notes.sortByLine();
  report.refusal = ksImportRefusal::kNone;
  return contents;
}

/// The texts of what `moment` shows, each after a line feed.
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

ksImportParser::ksImportParser() noexcept = default;
ksImportParser::ksImportParser(ksImportParser&& other) noexcept = default;
ksImportParser& ksImportParser::operator=(ksImportParser&& other) noexcept = default;
ksImportParser::~ksImportParser() = default;

bool ksImportParser::Open(const char* path) { return Open(path, ksImportOptions()); }

bool ksImportParser::Open(const char* path, const ksImportOptions& options) {
  contents_.reset();
  ReportData& report = renewed(report_.data_);
  FileBytes file = readFile(path, std::min(options.maxBytes, kMostFileBytes));
  if (file.refusal != ksImportRefusal::kNone) {
    report.refuse(file.refusal, file.systemError);
  } else {
    contents_ = readBytes(std::move(file.bytes), path, options, report);
  }
  return contents_ != nullptr;
}

bool ksImportParser::OpenMemory(const void* bytes, std::size_t size,
                                const ksImportOptions& options) {
  contents_.reset();
  ReportData& report = renewed(report_.data_);
  if (size > std::min(options.maxBytes, kMostFileBytes)) {
    report.refuse(ksImportRefusal::kTooLarge);
  } else {
    std::string copied;
    if (size > 0) copied.assign(static_cast<const char*>(bytes), size);
    contents_ = readBytes(std::move(copied), {}, options, report);
  }
  return contents_ != nullptr;
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
