// The report's members, and its sentences.
#include "kssubtitle/import/ksImportReport.h"

#include <algorithm>

#include "kssubtitle/import/conditions.h"
#include "kssubtitle/import/report/report_data.h"

using kssubtitle::importing::ReportData;

namespace kssubtitle::importing {

void Notes::sortByLine() {
  const auto earlier = [](const ksImportNote& a, const ksImportNote& b) { return a.line < b.line; };
  std::stable_sort(kept_.begin(), kept_.end(), earlier);
  if (kept_.size() > kMostKept) kept_.resize(kMostKept);
}

void Notes::dropLast() {
  sortByLine();
  end_ = kept_.back().line;
}

namespace {

std::string_view sentenceOf(ksImportProblem problem) noexcept {
  switch (problem) {
    case ksImportProblem::kNumberMissing:
      return "The cue has no number, while others have one.";
    case ksImportProblem::kNumberDoubled:
      return "The cue has the same number as the one before it.";
    case ksImportProblem::kNumberFalling:
      return "The cue has a lower number than the one before it.";
    case ksImportProblem::kCueWithoutText:
      return "The cue has no text and is left out.";
    case ksImportProblem::kEndNotBehindStart:
      return "The cue ends no later than it begins, or not after 0:00, so it is never shown.";
    case ksImportProblem::kOverlap:
      return "The cue begins while an earlier one is still shown.";
    case ksImportProblem::kTimeRepaired:
      return "A time is written in an unusual way; it was read all the same.";
    case ksImportProblem::kTimeUnreadable:
      return "A time cannot be read, so the cue is left out.";
    case ksImportProblem::kLineIgnored:
      return "The line is no part of any cue and is left out.";
    case ksImportProblem::kTagUnclosed:
      return "A tag or an override block is opened but not closed.";
    case ksImportProblem::kUndecodable:
      return "Some bytes have no meaning in the file's encoding; they are shown as U+FFFD.";
    case ksImportProblem::kZeroCharacter:
      return "The text holds a zero character, which is left out or shown as U+FFFD.";
    case ksImportProblem::kCueCutOff:
      return "The file ends in the middle of the cue, which is left out.";
    case ksImportProblem::kColumnsMissing:
      return "The event has fewer columns than its format has, so it is left out.";
    case ksImportProblem::kUnknownStyle:
      return "The event names a style that the script does not define.";
    case ksImportProblem::kFrameRateAssumed:
      return "The times are frame numbers and the file does not name a frame rate; one is assumed.";
    case ksImportProblem::kEndAssumed:
      return "The file does not say when the cue ends; an end is assumed.";
    case ksImportProblem::kDuplicate:
      return "The same cue is there twice; it is shown once.";
    case ksImportProblem::kPictureDamaged:
      return "The picture is damaged or missing, so nothing is shown for it.";
    case ksImportProblem::kColorsChange:
      return "The picture changes its colours from column to column; it is shown without that.";
    case ksImportProblem::kOutsideParent:
      return "The cue begins when the part that it stands in is over, so it is left out.";
    case ksImportProblem::kUnsupported:
      return "Something that the line says is not supported and is left out.";
  }
  return {};
}

std::string_view sentenceOf(ksImportRefusal refusal) noexcept {
  switch (refusal) {
    case ksImportRefusal::kNone:
      return {};
    case ksImportRefusal::kCannotOpen:
      return "The file cannot be opened or read.";
    case ksImportRefusal::kTooLarge:
      return "The file is larger than the program allows.";
    case ksImportRefusal::kEmpty:
      return "The file is empty.";
    case ksImportRefusal::kPictures:
      return "The file holds pictures of subtitles, not text.";
    case ksImportRefusal::kBinary:
      return "The file is compressed or is no text at all.";
    case ksImportRefusal::kUnknownFormat:
      return "The file is text, but not in any subtitle format that is known.";
    case ksImportRefusal::kUnknownEncoding:
      return "There is no encoding of the given name.";
    case ksImportRefusal::kUnknownOption:
      return "There is no subtitle format of the given name.";
  }
  return {};
}

}  // namespace
}  // namespace kssubtitle::importing

std::string_view describe(const ksImportNote& note) noexcept {
  return kssubtitle::importing::sentenceOf(note.problem);
}

ksImportReport::ksImportReport() noexcept = default;
ksImportReport::ksImportReport(ksImportReport&& other) noexcept = default;
ksImportReport& ksImportReport::operator=(ksImportReport&& other) noexcept = default;
ksImportReport::~ksImportReport() = default;

ksImportRefusal ksImportReport::refusal() const noexcept {
  return data_ ? data_->refusal : ksImportRefusal::kCannotOpen;
}

int ksImportReport::systemError() const noexcept { return data_ ? data_->systemError : 0; }

std::string_view ksImportReport::refusalText() const noexcept {
  if (data_ && !data_->refusalSentence.empty()) return data_->refusalSentence;
  return kssubtitle::importing::sentenceOf(refusal());
}

std::string_view ksImportReport::format() const noexcept {
  return data_ ? data_->format : std::string_view();
}

std::string_view ksImportReport::encoding() const noexcept {
  return data_ ? std::string_view(data_->encoding) : std::string_view();
}

ksImportEncodingSource ksImportReport::encodingSource() const noexcept {
  return data_ ? data_->encodingSource : ksImportEncodingSource::kValidUtf8;
}

ksImportLineEnds ksImportReport::lineEnds() const noexcept {
  return data_ ? data_->lineEnds : ksImportLineEnds::kNone;
}

std::size_t ksImportReport::size() const noexcept { return data_ ? data_->size : 0; }

std::span<const std::string> ksImportReport::languages() const noexcept {
  if (!data_) return {};
  return data_->languages;
}

std::span<const ksImportNote> ksImportReport::notes() const noexcept {
  if (!data_) return {};
  return data_->notes.kept();
}

std::size_t ksImportReport::count(ksImportProblem problem) const noexcept {
  return data_ ? data_->notes.count(problem) : 0;
}

bool ksImportReport::fixedReadersAgree() const noexcept {
  return data_ && kssubtitle::importing::failedConditions(*data_).empty();
}

std::vector<ksImportCondition> ksImportReport::unmetConditions() const {
  using namespace kssubtitle::importing;
  if (!data_) return {rowOf(Condition::kReadable)};
  const FailedConditions failed = failedConditions(*data_);
  std::vector<ksImportCondition> unmet;
  for (std::size_t i = 0; i < kConditions; ++i) {
    if (const auto condition = static_cast<Condition>(i); failed.has(condition)) {
      unmet.push_back(rowOf(condition));
    }
  }
  return unmet;
}
