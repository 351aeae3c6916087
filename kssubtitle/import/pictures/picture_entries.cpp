// The entries of a language: the time in the index or the stream, and what the unit says about its
// delays and its place, give when and where a picture is shown.
#include "kssubtitle/import/pictures/picture_entries.h"

#include <algorithm>
#include <limits>

#include "kssubtitle/import/pictures/subpicture.h"
#include "kssubtitle/import/pictures/subpicture_units.h"

namespace kssubtitle::importing {
namespace {

constexpr long long kLastLasts = 5000;  // milliseconds, if the unit gives no end

ksImportRectangle rectangleOf(const Subpicture& subpicture, const PictureIndex& index) noexcept {
  const auto scaled = [](int n, int percent) { return n * percent / 100; };
  const auto [x, y] = index.scalePercent;
  const DisplayArea area = subpicture.control.shown.area.value_or(DisplayArea{});
  return {scaled(area.left, x) + index.origin.x, scaled(area.top, y) + index.origin.y,
          scaled(subpicture.width, x), scaled(subpicture.height, y)};
}

/// What the index and the unit say; if the unit gives no end, it is still missing.
ksImportPictureEntry entryOf(const IndexEntry& from, const Subpicture& subpicture,
                             const PictureIndex& index) {
  ksImportPictureEntry entry;
  entry.line = from.line;
  entry.damage = subpicture.damage;
  entry.start = from.time;
  entry.isEndAssumed = true;
  if (!entry.damage.empty()) return entry;
  entry.start += subpicture.startDelay;
  entry.isEndAssumed = !subpicture.stopDelay;
  entry.end = from.time + subpicture.stopDelay.value_or(0);
  entry.isForced = subpicture.control.isForced;
  entry.rectangle = rectangleOf(subpicture, index);
  return entry;
}

/// Reads each unit once, however many entries refer to it.
class EntryReader {
 public:
  EntryReader(StreamBytes& bytes, const PictureIndex& index, const IndexStream& stream,
              Notes& notes)
      : bytes_(bytes), index_(index), stream_(stream), notes_(notes) {}

  std::vector<PlacedEntry> run() {
    const std::vector<std::size_t> order = orderInStream();
    std::vector<PlacedEntry> all = placesInStream(order);
    const UnitPlace* last = nullptr;
    for (const std::size_t i : order) {
      if (last == nullptr || last->begin != all[i].place.begin) readSubpictureAt(all[i].place);
      last = &all[i].place;
      all[i].entry = entryOf(stream_.entries[i], subpicture_, index_);
      note(all[i].entry);
    }
    return all;
  }

 private:
  std::vector<std::size_t> orderInStream() const {
    std::vector<std::size_t> order(stream_.entries.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
      return stream_.entries[a].position < stream_.entries[b].position;
    });
    return order;
  }

  /// Where the units begin and end, of entries that are not read yet.
  std::vector<PlacedEntry> placesInStream(const std::vector<std::size_t>& order) const {
    std::vector<PlacedEntry> all(order.size());
    std::uint64_t end = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t next = end;
    for (std::size_t i = order.size(); i-- > 0;) {
      UnitPlace& each = all[order[i]].place;
      each.begin = stream_.entries[order[i]].position;
      if (next > each.begin) end = next;
      each.end = end;
      next = each.begin;
    }
    return all;
  }

  void readSubpictureAt(const UnitPlace& place) {
    const Unit unit = readUnit(bytes_, place.begin, place.end, stream_.number);
    subpicture_ = {};
    if (unit.damage.empty()) {
      subpicture_ = readSubpicture(unit.bytes);
    } else {
      subpicture_.damage = unit.damage;
    }
  }

  void note(const ksImportPictureEntry& entry) {
    if (!entry.damage.empty()) {
      notes_.add(ksImportProblem::kPictureDamaged, entry.line);
    } else if (subpicture_.control.changesColors) {
      notes_.add(ksImportProblem::kColoursChange, entry.line);
    }
  }

  StreamBytes& bytes_;
  const PictureIndex& index_;
  const IndexStream& stream_;
  Notes& notes_;
  Subpicture subpicture_;  // of the unit that was read last
};

/// A picture without an end is shown until the next one begins, by the format; only the end of the
/// last one is a guess.
void assumeEnds(std::vector<PlacedEntry>& all, Notes& notes) {
  std::size_t next = all.size();  // the first one that starts later
  for (std::size_t i = all.size(); i-- > 0;) {
    ksImportPictureEntry& entry = all[i].entry;
    if (i + 1 < all.size() && all[i + 1].entry.start > entry.start) next = i + 1;
    if (!entry.isEndAssumed) continue;
    const bool isLast = next == all.size();
    entry.end = isLast ? entry.start + kLastLasts : all[next].entry.start;
    if (isLast && entry.damage.empty()) notes.add(ksImportProblem::kEndAssumed, entry.line);
  }
}

}  // namespace

std::vector<PlacedEntry> readEntries(StreamBytes& bytes, const PictureIndex& index,
                                     const IndexStream& stream, Notes& notes) {
  std::vector<PlacedEntry> all = EntryReader(bytes, index, stream, notes).run();
  std::stable_sort(all.begin(), all.end(), [](const PlacedEntry& a, const PlacedEntry& b) {
    return a.entry.start < b.entry.start;
  });
  assumeEnds(all, notes);
  return all;
}

Pair frameOf(const PictureIndex& index, const std::vector<PlacedEntry>& entries) noexcept {
  constexpr Pair kUsual[] = {{720, 480}, {720, 576}, {1280, 720}, {1920, 1080}, {4096, 4096}};
  if (index.size.x > 0) return index.size;
  Pair least;
  for (const PlacedEntry& each : entries) {
    const ksImportRectangle& rectangle = each.entry.rectangle;
    least.x = std::max(least.x, rectangle.left + rectangle.width);
    least.y = std::max(least.y, rectangle.top + rectangle.height);
  }
  const auto* const found =
      std::find_if(std::begin(kUsual), std::prev(std::end(kUsual)),
                   [&](Pair usual) { return usual.x >= least.x && usual.y >= least.y; });
  return *found;
}

}  // namespace kssubtitle::importing
