// The front of the picture room: files become an index and a stream, a language its entries, an
// entry its picture.
#include "kssubtitle/import/ksImportPictures.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

#include "kssubtitle/import/pictures/index.h"
#include "kssubtitle/import/pictures/picture_cache.h"
#include "kssubtitle/import/pictures/program_stream.h"
#include "kssubtitle/import/pictures/sibling.h"
#include "kssubtitle/import/pictures/stream_bytes.h"
#include "kssubtitle/import/pictures/subpicture.h"
#include "kssubtitle/import/pictures/survey.h"
#include "kssubtitle/import/recognition/kinds.h"
#include "kssubtitle/import/report/report_data.h"
#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/bytes.h"
#include "kssubtitle/import/text/file_text.h"

using namespace kssubtitle::importing;

namespace {

bool isProgramStream(StreamBytes& bytes) {
  constexpr std::size_t kLooked = 4096;
  const auto head = bytes.at(0, kLooked);
  const std::string_view looked(reinterpret_cast<const char*>(head.data()), head.size());  // NOLINT
  return isOfKind(kindOf(Content::kBytes, looked), FileKind::kVobSubStream);
}

/// The index that a stream without one would have.
PictureIndex indexOf(StreamBytes& bytes) {
  constexpr std::uint64_t kTicks = 90;  // in a millisecond
  PictureIndex index;
  std::array<IndexStream, kSubpictureStreams> streams;
  for (const FoundUnit& unit : findUnits(bytes)) {
    streams[static_cast<std::size_t>(unit.stream)].entries.push_back(
        {static_cast<long long>(unit.time / kTicks), unit.position, 0});
  }
  for (std::size_t i = 0; i < streams.size(); ++i) {
    streams[i].number = static_cast<int>(i);
    if (!streams[i].entries.empty()) index.streams.push_back(std::move(streams[i]));
  }
  return index;
}

/// The place of the first stream for which `suits` holds; the number of streams if there is none.
template <typename Suits>
std::size_t findStream(const std::vector<IndexStream>& streams, Suits suits) {
  const auto found = std::find_if(streams.begin(), streams.end(), suits);
  return static_cast<std::size_t>(found - streams.begin());
}

std::size_t streamToSelect(const PictureIndex& index, std::string_view language) {
  const std::vector<IndexStream>& streams = index.streams;
  const std::size_t wanted = findStream(streams, [&](const IndexStream& stream) {
    return !language.empty() &&
           (equalNoCase(stream.language, language) || equalNoCase(stream.name, language));
  });
  if (wanted < streams.size()) return wanted;
  const auto hasPictures = [](const IndexStream& stream) { return !stream.entries.empty(); };
  const std::size_t chosen = findStream(streams, [&](const IndexStream& stream) {
    return stream.number == index.chosenStream && hasPictures(stream);
  });
  return chosen < streams.size() ? chosen : findStream(streams, hasPictures) % streams.size();
}

}  // namespace

/// What open files hold.
struct ksImportPictures::Contents {
  StreamBytes bytes;
  PictureIndex index;
  Notes indexNotes;
  std::vector<ksImportPictureStream> streams;

  // Of the language that is selected.
  std::size_t selected = 0;
  struct Place {
    std::uint64_t begin, end;  // in the stream
  };
  std::vector<Place> places;  // of the entries' units
  std::vector<ksImportPictureEntry> entries;
  std::vector<std::size_t> shown;  // the entries that may be
  Pair frame;

  std::mutex mutex;  // of the bytes, which have one window, and of the cache
  PictureCache cache;

  void select(std::size_t stream, Notes& notes);
  PictureCache::Picture read(std::size_t entry);
};

void ksImportPictures::Contents::select(std::size_t stream, Notes& notes) {
  cache.clear();
  places.clear();
  entries.clear();
  shown.clear();
  selected = stream;
  notes = indexNotes;
  if (streams.empty()) return;
  const std::vector<Surveyed> surveyed = surveyStream(bytes, index, index.streams[stream], notes);
  notes.sortByLine();
  frame = frameOf(index, surveyed);
  places.reserve(surveyed.size());
  entries.reserve(surveyed.size());
  shown.reserve(surveyed.size());
  for (const Surveyed& each : surveyed) {
    if (each.entry.isForced || !index.showsForcedOnly) shown.push_back(entries.size());
    places.push_back({each.begin, each.end});
    entries.push_back(each.entry);
  }
}

PictureCache::Picture ksImportPictures::Contents::read(std::size_t entry) {
  const std::scoped_lock lock(mutex);
  if (auto kept = cache.find(entry)) return kept;
  const Place& place = places[entry];
  const Unit unit = readUnit(bytes, place.begin, place.end, index.streams[selected].number);
  if (!unit.damage.empty()) return nullptr;
  const Subpicture subpicture = readSubpicture(unit.bytes);
  if (!subpicture.damage.empty()) return nullptr;
  const ksImportPictureEntry& from = entries[entry];
  auto picture = std::make_shared<const ksImportPicture>(ksImportPicture{
      from.start, from.end, from.isForced, from.rectangle, subpicture.width, subpicture.height,
      frame.x, frame.y, drawSubpicture(unit.bytes, subpicture, index.palette)});
  cache.add(entry, picture);
  return picture;
}

ksImportPictures::ksImportPictures() noexcept = default;
ksImportPictures::ksImportPictures(ksImportPictures&& other) noexcept = default;
ksImportPictures& ksImportPictures::operator=(ksImportPictures&& other) noexcept = default;
ksImportPictures::~ksImportPictures() = default;

bool ksImportPictures::Open(const char* path, const ksImportOptions& options) {
  close();
  auto contents = std::make_unique<Contents>();
  if (const int error = contents->bytes.open(path)) {
    return refuse(ksImportRefusal::kCannotOpen, error);
  }
  const bool isStream = isProgramStream(contents->bytes);
  const std::string other = siblingOf(path, isStream ? ".idx" : ".sub");
  FileBytes index =
      readFile(isStream ? other.c_str() : path, std::min(options.maxBytes, kMostFileBytes));
  if (isStream) return open(std::move(contents), std::move(index.bytes), options);
  if (index.refusal != ksImportRefusal::kNone) return refuse(index.refusal, index.systemError);
  if (index.bytes.empty()) return refuse(ksImportRefusal::kEmpty);
  if (!readIndexText(*contents, std::move(index.bytes), options)) return false;
  if (const int error = contents->bytes.open(other.c_str())) {
    return refuse(ksImportRefusal::kCannotOpen, error,
                  "The .sub file with the pictures, beside the index, cannot be opened.");
  }
  return finish(std::move(contents), options);
}

bool ksImportPictures::OpenMemory(const void* index, std::size_t indexSize, const void* stream,
                                  std::size_t streamSize, const ksImportOptions& options) {
  const auto copied = [](const void* bytes, std::size_t size) {
    return size == 0 ? std::string() : std::string(static_cast<const char*>(bytes), size);
  };
  close();
  if (indexSize > std::min(options.maxBytes, kMostFileBytes)) {
    return refuse(ksImportRefusal::kTooLarge);
  }
  auto contents = std::make_unique<Contents>();
  contents->bytes = StreamBytes(copied(stream, streamSize));
  return open(std::move(contents), copied(index, indexSize), options);
}

bool ksImportPictures::IsOpen() const noexcept { return contents_ != nullptr; }

std::span<const ksImportPictureStream> ksImportPictures::streams() const noexcept {
  if (!contents_) return {};
  return contents_->streams;
}

bool ksImportPictures::select(std::size_t stream) {
  if (stream >= streams().size()) return false;
  contents_->select(stream, report_.data_->notes);
  return true;
}

std::size_t ksImportPictures::selected() const noexcept {
  return contents_ ? contents_->selected : 0;
}

std::span<const ksImportPictureEntry> ksImportPictures::entries() const noexcept {
  if (!contents_) return {};
  return contents_->entries;
}

std::shared_ptr<const ksImportPicture> ksImportPictures::PictureAt(long long t) const {
  if (!contents_) return nullptr;
  const auto& shown = contents_->shown;
  const auto next = std::upper_bound(
      shown.begin(), shown.end(), t,
      [this](long long time, std::size_t i) { return time < contents_->entries[i].start; });
  if (next == shown.begin() || t >= contents_->entries[*std::prev(next)].end) return nullptr;
  return Picture(*std::prev(next));
}

std::shared_ptr<const ksImportPicture> ksImportPictures::Picture(std::size_t entry) const {
  if (entry >= entries().size() || !entries()[entry].damage.empty()) return nullptr;
  return contents_->read(entry);
}

void ksImportPictures::close() {
  contents_.reset();
  report_.data_.reset();  // even if there is no memory for a new one
  report_.data_ = std::make_unique<ReportData>();
}

bool ksImportPictures::refuse(ksImportRefusal refusal, int systemError,
                              std::string_view sentence) noexcept {
  report_.data_->refusal = refusal;
  report_.data_->systemError = systemError;
  report_.data_->refusalSentence = sentence;
  return false;
}

/// Opens a stream with the bytes of its index; empty ones are none.
bool ksImportPictures::open(std::unique_ptr<Contents> contents, std::string indexBytes,
                            const ksImportOptions& options) {
  if (!indexBytes.empty()) {
    if (!readIndexText(*contents, std::move(indexBytes), options)) return false;
    return finish(std::move(contents), options);
  }
  if (contents->bytes.at(0, 1).empty()) return refuse(ksImportRefusal::kEmpty);
  contents->index = indexOf(contents->bytes);
  if (contents->index.streams.empty()) {
    return refuse(ksImportRefusal::kUnknownFormat, 0,
                  "The file is no program stream that holds pictures of subtitles.");
  }
  return finish(std::move(contents), options);
}

bool ksImportPictures::readIndexText(Contents& contents, std::string bytes,
                                     const ksImportOptions& options) {
  ReportData& report = *report_.data_;
  report.size = bytes.size();
  if (const Kind* const kind = kindOf(Content::kBytes, bytes)) {
    return refuse(kind->refusal, 0, kind->sentence);
  }
  const std::optional<std::string> text = textOf(std::move(bytes), options, report);
  if (!text) return refuse(ksImportRefusal::kUnknownEncodingName);
  if (!isOfKind(kindOf(Content::kText, *text), FileKind::kVobSubIndex)) {
    return refuse(ksImportRefusal::kUnknownFormat, 0, "The file is no VobSub index.");
  }
  contents.index = readIndex(*text, report.notes);
  return true;
}

bool ksImportPictures::finish(std::unique_ptr<Contents> contents, const ksImportOptions& options) {
  ReportData& report = *report_.data_;
  for (const IndexStream& stream : contents->index.streams) {
    contents->streams.push_back(
        {stream.number, stream.language, stream.name, stream.entries.size()});
    if (!stream.language.empty()) report.languages.push_back(stream.language);
  }
  contents->indexNotes = report.notes;
  contents->select(
      contents->streams.empty() ? 0 : streamToSelect(contents->index, options.language),
      report.notes);
  report.format = "vobsub";
  report.refusal = ksImportRefusal::kNone;
  report.systemError = 0;
  contents_ = std::move(contents);
  return true;
}
