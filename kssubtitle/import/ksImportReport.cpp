// The report, and the sentences that explain it to viewers.
#include "kssubtitle/import/ksImportReport.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "kssubtitle/import/report/report_data.h"

using kssubtitle::importing::kProblems;
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

template <typename Code>
struct Sentence {
  Code code;
  std::string_view text;
};

// In the order of the enumeration.
constexpr Sentence<ksImportProblem> kSentences[] = {
    {ksImportProblem::kNumberMissing, "The cue has no number, although others do."},
    {ksImportProblem::kNumberRepeated, "The cue has the same number as the previous one."},
    {ksImportProblem::kNumberDecreasing, "The cue has a lower number than the previous one."},
    {ksImportProblem::kCueWithoutText, "The cue has no text and is dropped."},
    {ksImportProblem::kEndNotAfterStart,
     "The cue does not end after it begins, or ends by 0:00, so it is never shown."},
    {ksImportProblem::kOverlap, "The cue begins while an earlier one is still shown."},
    {ksImportProblem::kTimeRepaired, "A time is written in an unusual way, but could be read."},
    {ksImportProblem::kTimeUnreadable, "A time cannot be read, so the cue is dropped."},
    {ksImportProblem::kLineIgnored, "The line belongs to no cue and is ignored."},
    {ksImportProblem::kTagUnclosed, "A tag or an override block is never closed."},
    {ksImportProblem::kUndecodable,
     "Some bytes are invalid in the file's encoding; they are shown as U+FFFD."},
    {ksImportProblem::kNulCharacter,
     "The text contains a NUL character, which is dropped or shown as U+FFFD."},
    {ksImportProblem::kCueCutOff, "The file ends in the middle of the cue, which is dropped."},
    {ksImportProblem::kColumnsMissing,
     "The event has fewer columns than its Format line, so it is dropped."},
    {ksImportProblem::kUnknownStyle, "The event names a style that the script does not define."},
    {ksImportProblem::kFrameRateAssumed,
     "The times are frame numbers and the file gives no frame rate; one is assumed."},
    {ksImportProblem::kEndAssumed, "The file does not say when the cue ends; an end is assumed."},
    {ksImportProblem::kDuplicate, "The same cue occurs twice; it is shown once."},
    {ksImportProblem::kPictureDamaged,
     "The picture is damaged or missing, so nothing is shown for it."},
    {ksImportProblem::kColoursChange,
     "The picture changes its colours by column; only the first set is used."},
    {ksImportProblem::kOutsideParent,
     "The cue begins after the element around it has ended, so it is dropped."},
    {ksImportProblem::kContainerWithoutTime,
     "The element around cues does not end after it begins, so its end is ignored."},
    {ksImportProblem::kUnsupported,
     "The line uses a feature that is not supported and is ignored."},
    {ksImportProblem::kIndexUnreadable,
     "The index beside the stream cannot be read, so its languages and colours are not known."},
};
static_assert(std::size(kSentences) == kProblems);

constexpr auto kAllProblems = [] {
  std::array<ksImportProblem, kProblems> problems{};
  std::ranges::transform(kSentences, problems.begin(), &Sentence<ksImportProblem>::code);
  return problems;
}();
static_assert(std::ranges::is_sorted(kAllProblems));

// In the order of the enumeration.
constexpr Sentence<ksImportRefusal> kRefusalSentences[] = {
    {ksImportRefusal::kNone, ""},
    {ksImportRefusal::kNotOpened, "No file has been opened."},
    {ksImportRefusal::kCannotOpen, "The file cannot be opened or read."},
    {ksImportRefusal::kTooLarge, "The file is larger than the program allows."},
    {ksImportRefusal::kEmpty, "The file is empty."},
    {ksImportRefusal::kPictures, "The file holds pictures of subtitles, not text."},
    {ksImportRefusal::kBinary, "The file is compressed or is not text at all."},
    {ksImportRefusal::kUnknownFormat, "The file is text, but not in any known subtitle format."},
    {ksImportRefusal::kUnknownEncodingName, "There is no encoding with the given name."},
    {ksImportRefusal::kUnknownFormatName, "There is no subtitle format with the given name."},
};
static_assert(std::ranges::is_sorted(kRefusalSentences, {}, &Sentence<ksImportRefusal>::code));

}  // namespace
}  // namespace kssubtitle::importing

std::span<const ksImportProblem> ksImportProblems() noexcept {
  return kssubtitle::importing::kAllProblems;
}

std::string_view ksImportSentence(ksImportProblem problem) noexcept {
  const auto place = static_cast<std::size_t>(problem);
  return place < kProblems ? kssubtitle::importing::kSentences[place].text : std::string_view();
}

ksImportReport::ksImportReport() noexcept = default;
ksImportReport::ksImportReport(ksImportReport&& other) noexcept = default;
ksImportReport& ksImportReport::operator=(ksImportReport&& other) noexcept = default;
ksImportReport::~ksImportReport() = default;

ksImportRefusal ksImportReport::refusal() const noexcept {
  return data_ ? data_->refusal : ksImportRefusal::kNotOpened;
}

int ksImportReport::systemError() const noexcept { return data_ ? data_->systemError : 0; }

std::string_view ksImportReport::refusalSentence() const noexcept {
  if (data_ && !data_->refusalSentence.empty()) return data_->refusalSentence;
  return kssubtitle::importing::kRefusalSentences[static_cast<std::size_t>(refusal())].text;
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

bool ksImportReport::hasLanguage() const noexcept { return !data_ || data_->hasLanguage; }

std::span<const ksImportNote> ksImportReport::notes() const noexcept {
  if (!data_) return {};
  return data_->notes.kept();
}

std::size_t ksImportReport::count(ksImportProblem problem) const noexcept {
  return data_ && static_cast<std::size_t>(problem) < kProblems ? data_->notes.count(problem) : 0;
}
