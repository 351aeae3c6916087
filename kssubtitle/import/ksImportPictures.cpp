// The road of pictures: files become an index and a stream, a language its entries, an entry its
// picture.
#include "kssubtitle/import/ksImportPictures.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <optional>
#include <utility>

#include "kssubtitle/import/pictures/index.h"
#include "kssubtitle/import/pictures/picture_cache.h"
#include "kssubtitle/import/pictures/picture_entries.h"
#include "kssubtitle/import/pictures/sibling.h"
#include "kssubtitle/import/pictures/stream_bytes.h"
#include "kssubtitle/import/pictures/stream_index.h"
#include "kssubtitle/import/pictures/subpicture.h"
#include "kssubtitle/import/pictures/subpicture_units.h"
#include "kssubtitle/import/recognition/kinds.h"
#include "kssubtitle/import/report/report_data.h"
#include "kssubtitle/import/text/bytes.h"
#include "kssubtitle/import/text/file_text.h"

using namespace kssubtitle::importing;

/// What open files hold.
struct kssubtitle::importing::OpenPictures {
  StreamBytes bytes;
  PictureIndex index;
  Notes indexNotes;
  std::vector<ksImportPictureStream> streams;

  // Of the selected language.
  std::size_t selected = 0;
  Pair frame;
  std::vector<ksImportPictureEntry> entries;
  std::vector<UnitPlace> places;   // of the entries' units
  std::vector<std::size_t> shown;  // the entries that can be, by position

  std::mutex mutex;  // of the bytes, which have one window, and of the cache
  PictureCache cache;
};

namespace {

void select(OpenPictures& opened, std::size_t stream, Notes& notes) {
  opened.cache.clear();
  opened.entries.clear();
  opened.places.clear();
  opened.shown.clear();
  opened.selected = stream;
  notes = opened.indexNotes;
  if (opened.streams.empty()) return;
  const PictureIndex& index = opened.index;
  const std::vector<PlacedEntry> placed =
      readEntries(opened.bytes, index, index.streams[stream], notes);
  notes.sortByLine();
  opened.frame = frameOf(index, placed);
  opened.places.reserve(placed.size());
  opened.entries.reserve(placed.size());
  opened.shown.reserve(placed.size());
  for (const PlacedEntry& each : placed) {
    if (each.entry.isForced || !index.showsForcedOnly)
      opened.shown.push_back(opened.entries.size());
    opened.places.push_back(each.place);
    opened.entries.push_back(each.entry);
  }
}

PictureCache::Picture readPicture(OpenPictures& opened, std::size_t entry) {
  const std::scoped_lock lock(opened.mutex);
  if (auto kept = opened.cache.find(entry)) return kept;
  const auto [begin, end] = opened.places[entry];
  const int stream = opened.index.streams[opened.selected].number;
  const Unit unit = readUnit(opened.bytes, begin, end, stream);
  if (!unit.damage.empty()) return nullptr;
  const Subpicture subpicture = readSubpicture(unit.bytes);
  if (!subpicture.damage.empty()) return nullptr;
  const ksImportPictureEntry& from = opened.entries[entry];
  auto picture = std::make_shared<const ksImportPicture>(
      ksImportPicture{from.start, from.end, from.isForced, from.rectangle, subpicture.width,
                      subpicture.height, opened.frame.x, opened.frame.y,
                      drawSubpicture(unit.bytes, subpicture, opened.index.palette)});
  opened.cache.add(entry, picture);
  return picture;
}

bool isProgramStream(StreamBytes& bytes) {
  constexpr std::size_t kLooked = 4096;
  const auto head = bytes.at(0, kLooked);
  const std::string_view looked(reinterpret_cast<const char*>(head.data()), head.size());  // NOLINT
  return isOfKind(kindOf(Content::kBytes, looked), FileKind::kVobSubStream);
}

/// Reads the index out of the bytes of its file; false if they are refused.
bool readIndexBytes(OpenPictures& opened, std::string bytes, const ksImportOptions& options,
                    ReportData& report) {
  report.size = bytes.size();
  if (const Kind* const kind = kindOf(Content::kBytes, bytes)) {
    return report.refuse(kind->refusal, 0, kind->sentence);
  }
  const std::optional<std::string> text = textOf(std::move(bytes), options, report);
  if (!text) return report.refuse(ksImportRefusal::kUnknownEncodingName);
  if (!isOfKind(kindOf(Content::kText, *text), FileKind::kVobSubIndex)) {
    return report.refuse(ksImportRefusal::kUnknownFormat, 0, "The file is not a VobSub index.");
  }
  opened.index = readIndex(*text, report.notes);
  return true;
}

/// Finds the units of a stream without an index; false if it has none.
bool searchStream(OpenPictures& opened, ReportData& report) {
  if (opened.bytes.at(0, 1).empty()) return report.refuse(ksImportRefusal::kEmpty);
  opened.index = indexOfStream(opened.bytes);
  if (!opened.index.streams.empty()) return true;
  return report.refuse(ksImportRefusal::kUnknownFormat, 0,
                       "The file is not a program stream that contains pictures of subtitles.");
}

/// The index beside a stream; empty, and noted unless there is no such file, if it cannot be read.
std::string readIndexBeside(const std::string& path, std::size_t maxBytes, Notes& notes) {
  FileBytes index = readFile(path.c_str(), maxBytes);
  if (index.bytes.empty() && index.systemError != ENOENT) {
    notes.add(ksImportProblem::kIndexUnreadable, 0);
  }
  return std::move(index.bytes);
}

bool openStreamFile(OpenPictures& opened, const char* path, const ksImportOptions& options,
                    ReportData& report) {
  const std::size_t maxBytes = std::min(options.maxBytes, kMostFileBytes);
  std::string index = readIndexBeside(siblingOf(path, ".idx"), maxBytes, report.notes);
  return index.empty() ? searchStream(opened, report)
                       : readIndexBytes(opened, std::move(index), options, report);
}

bool openIndexFile(OpenPictures& opened, const char* path, const ksImportOptions& options,
                   ReportData& report) {
  FileBytes index = readFile(path, std::min(options.maxBytes, kMostFileBytes));
  if (index.refusal != ksImportRefusal::kNone) {
    return report.refuse(index.refusal, index.systemError);
  }
  if (index.bytes.empty()) return report.refuse(ksImportRefusal::kEmpty);
  if (!readIndexBytes(opened, std::move(index.bytes), options, report)) return false;
  const int error = opened.bytes.open(siblingOf(path, ".sub").c_str());
  return error == 0 ||
         report.refuse(ksImportRefusal::kCannotOpen, error,
                       "The .sub file with the pictures, beside the index, cannot be opened.");
}

/// Selects a language, now that the index and the stream are known.
void finish(OpenPictures& opened, const ksImportOptions& options, ReportData& report) {
  for (const IndexStream& stream : opened.index.streams) {
    opened.streams.push_back({stream.number, stream.language, stream.name, stream.entries.size()});
    if (!stream.language.empty()) report.languages.push_back(stream.language);
  }
  opened.indexNotes = report.notes;
  select(opened, streamToSelect(opened.index, options.language), report.notes);
  report.hasLanguage = hasLanguage(opened.index, options.language);
  report.format = "vobsub";
  report.refusal = ksImportRefusal::kNone;
}

}  // namespace

ksImportPictures::ksImportPictures() noexcept = default;
ksImportPictures::ksImportPictures(ksImportPictures&& other) noexcept = default;
ksImportPictures& ksImportPictures::operator=(ksImportPictures&& other) noexcept = default;
ksImportPictures::~ksImportPictures() = default;

bool ksImportPictures::Open(const char* path, const ksImportOptions& options) {
  opened_.reset();
  ReportData& report = renewed(report_.data_);
  auto opened = std::make_unique<OpenPictures>();
  if (const int error = opened->bytes.open(path)) {
    return report.refuse(ksImportRefusal::kCannotOpen, error);
  }
  const auto openFile = isProgramStream(opened->bytes) ? openStreamFile : openIndexFile;
  if (!openFile(*opened, path, options, report)) return false;
  finish(*opened, options, report);
  opened_ = std::move(opened);
  return true;
}

bool ksImportPictures::OpenMemory(const void* index, std::size_t indexSize, const void* stream,
                                  std::size_t streamSize, const ksImportOptions& options) {
  const auto copied = [](const void* bytes, std::size_t size) {
    return size == 0 ? std::string() : std::string(static_cast<const char*>(bytes), size);
  };
  opened_.reset();
  ReportData& report = renewed(report_.data_);
  if (indexSize > std::min(options.maxBytes, kMostFileBytes)) {
    return report.refuse(ksImportRefusal::kTooLarge);
  }
  auto opened = std::make_unique<OpenPictures>();
  opened->bytes = StreamBytes(copied(stream, streamSize));
  const bool isRead = indexSize == 0
                          ? searchStream(*opened, report)
                          : readIndexBytes(*opened, copied(index, indexSize), options, report);
  if (!isRead) return false;
  finish(*opened, options, report);
  opened_ = std::move(opened);
  return true;
}

bool ksImportPictures::IsOpen() const noexcept { return opened_ != nullptr; }

std::span<const ksImportPictureStream> ksImportPictures::streams() const noexcept {
  if (!opened_) return {};
  return opened_->streams;
}

bool ksImportPictures::Select(std::size_t stream) {
  if (stream >= streams().size()) return false;
  select(*opened_, stream, report_.data_->notes);
  return true;
}

std::size_t ksImportPictures::selected() const noexcept { return opened_ ? opened_->selected : 0; }

std::span<const ksImportPictureEntry> ksImportPictures::entries() const noexcept {
  if (!opened_) return {};
  return opened_->entries;
}

std::shared_ptr<const ksImportPicture> ksImportPictures::PictureAt(long long t) const {
  if (!opened_) return nullptr;
  const auto& shown = opened_->shown;
  const auto next = std::upper_bound(
      shown.begin(), shown.end(), t,
      [this](long long time, std::size_t i) { return time < opened_->entries[i].start; });
  if (next == shown.begin() || t >= opened_->entries[*std::prev(next)].end) return nullptr;
  return Picture(*std::prev(next));
}

std::shared_ptr<const ksImportPicture> ksImportPictures::Picture(std::size_t entry) const {
  if (entry >= entries().size() || !entries()[entry].damage.empty()) return nullptr;
  return readPicture(*opened_, entry);
}
