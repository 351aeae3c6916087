// Draws when the subtitles of a film are shown.
#include "tools/kssub/timeline_drawing.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>
#include <utility>

#include "tools/kssub/times.h"

namespace kssub {
namespace {

constexpr double kMargin = 16;
constexpr double kPlotLeft = 92;
constexpr double kPlotWidth = 960;
constexpr double kWidth = kPlotLeft + kPlotWidth + 2 * kMargin;
constexpr double kLine = 18;  // a line of text
constexpr double kBarHeight = 10;
constexpr double kLaneHeight = kBarHeight + 1;
constexpr double kRowPadding = 2;
constexpr double kRowGap = 4;
constexpr double kMostHeight = 16000;
constexpr std::size_t kMostLanes = 6;
constexpr long long kMostRows = 1000;

/// The length of a row and the distance of its ticks, in milliseconds.
struct Scale {
  long long row;
  long long tick;
};

constexpr Scale kScales[] = {{15'000, 3'000},      {30'000, 5'000},     {60'000, 10'000},
                             {120'000, 20'000},    {300'000, 60'000},   {600'000, 120'000},
                             {1'800'000, 300'000}, {3'600'000, 600'000}};

Scale coarser(const Scale& scale) {
  for (const Scale& next : kScales) {
    if (next.row > scale.row) return next;
  }
  return {scale.row * 6, scale.row};
}

bool isShown(const Bar& bar) { return bar.end > std::max(bar.start, 0LL); }

/// The lane of each bar in its track: the first free one, or the last if none is free.
std::vector<std::size_t> lanesOf(const std::vector<Bar>& bars) {
  std::vector<std::size_t> lanes;
  std::vector<long long> ends;  // of the last bar in each lane
  for (const Bar& bar : bars) {
    const auto isFree = [&](long long end) { return end <= bar.start; };
    auto lane = static_cast<std::size_t>(std::ranges::find_if(ends, isFree) - ends.begin());
    if (lane == ends.size() && lane < kMostLanes && isShown(bar)) ends.push_back(bar.end);
    lane = std::min(lane, ends.empty() ? 0 : ends.size() - 1);
    if (isShown(bar)) ends[lane] = std::max(ends[lane], bar.end);
    lanes.push_back(lane);
  }
  return lanes;
}

/// The part of a track that is in one row.
struct Cell {
  std::size_t lanes = 0;
  std::vector<std::pair<const Bar*, std::size_t>> bars;  // with their lanes
  std::vector<const NoteMark*> marks;

  double spaceForMarks() const { return marks.empty() ? 0 : kPointerSize; }
  double height() const {
    return static_cast<double>(std::max<std::size_t>(lanes, 1)) * kLaneHeight + spaceForMarks();
  }
};

/// The rows that are not empty, by number, with a cell for each track.
using Rows = std::map<long long, std::vector<Cell>>;

double heightOf(const std::vector<Cell>& cells) {
  double height = 2 * kRowPadding + kRowPadding * static_cast<double>(cells.size() - 1);
  for (const Cell& cell : cells) height += cell.height();
  return height;
}

/// Distributes tracks over rows of equal length.
class RowLayout {
 public:
  RowLayout(const std::vector<Track>& tracks, long long rowLength)
      : tracks_(tracks), rowLength_(rowLength) {}

  /// std::nullopt if there would be too many rows.
  std::optional<Rows> rows() {
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
      if (!layOutBars(i)) return std::nullopt;
      for (const NoteMark& mark : tracks_[i].marks) {
        cell(std::max(mark.time, 0LL) / rowLength_, i).marks.push_back(&mark);
      }
    }
    double height = 0;
    for (const auto& [number, cells] : rows_) height += heightOf(cells) + kRowGap + kLine;
    if (height > kMostHeight) return std::nullopt;
    return std::move(rows_);
  }

 private:
  bool layOutBars(std::size_t track) {
    const std::vector<Bar>& bars = tracks_[track].bars;
    const std::vector<std::size_t> lanes = lanesOf(bars);
    for (std::size_t i = 0; i < bars.size(); ++i) {
      if (!isShown(bars[i])) continue;
      const long long first = std::max(bars[i].start, 0LL) / rowLength_;
      const long long last = (bars[i].end - 1) / rowLength_;
      if (last - first >= kMostRows) return false;
      for (long long row = first; row <= last; ++row) {
        Cell& place = cell(row, track);
        place.bars.emplace_back(&bars[i], lanes[i]);
        place.lanes = std::max(place.lanes, lanes[i] + 1);
      }
    }
    return true;
  }

  Cell& cell(long long row, std::size_t track) {
    return rows_.try_emplace(row, tracks_.size()).first->second[track];
  }

  const std::vector<Track>& tracks_;
  long long rowLength_;
  Rows rows_;
};

/// The shortest rows of which one holds everything; at most a minute.
Scale finestFor(const std::vector<Track>& tracks) {
  long long end = 0;
  for (const Track& track : tracks) {
    for (const Bar& bar : track.bars) end = std::max(end, bar.end);
  }
  Scale scale = kScales[0];
  while (scale.row < end && scale.row < 60'000) scale = coarser(scale);
  return scale;
}

Role roleOf(const Bar& bar) { return bar.speed ? roleOfSpeed(*bar.speed) : Role::kPicture; }

std::string withoutMilliseconds(long long time) {
  const std::string text = formatTime(time);
  return text.substr(0, text.find('.'));
}

/// Draws from top to bottom.
class TimelineDrawer {
 public:
  TimelineDrawer(const std::vector<Track>& tracks, const Scale& scale)
      : tracks_(tracks), scale_(scale) {}

  Drawing draw(const Rows& rows) {
    drawing_.shapes.emplace_back(Rectangle{Role::kBackground, 0, 0, 0, 0, {}});
    drawTitles();
    drawLegend();
    drawTicks();
    long long next = 0;
    for (const auto& [number, cells] : rows) {
      drawGap(next, number);
      drawRow(number, cells);
      next = number + 1;
    }
    drawing_.width = kWidth;
    drawing_.height = y_ + kMargin;
    auto& background = std::get<Rectangle>(drawing_.shapes.front());
    background.width = drawing_.width;
    background.height = drawing_.height;
    return std::move(drawing_);
  }

 private:
  void rectangle(Role role, double x, double y, double width, double height,
                 std::string hint = "") {
    drawing_.shapes.emplace_back(Rectangle{role, x, y, width, height, std::move(hint)});
  }
  void label(Role role, double x, double y, std::string text, Anchor anchor = Anchor::kStart) {
    drawing_.shapes.emplace_back(Label{role, x, y, anchor, std::move(text)});
  }

  void drawTitles() {
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
      y_ += kLine;
      const std::string number = tracks_.size() > 1 ? numberOf(i) + "  " : "";
      label(Role::kText, kMargin, y_, number + tracks_[i].name + " \u2013 " + tracks_[i].summary);
    }
    y_ += kLine / 2;
  }

  static std::string numberOf(std::size_t track) { return std::to_string(track + 1); }

  void drawLegend() {
    constexpr double kSquare = 10;
    double x = kMargin;
    y_ += kLine;
    const auto add = [&](Role role, const char* text, double width) {
      if (role == Role::kNote) {
        drawing_.shapes.emplace_back(Pointer{role, x + kSquare / 2, y_ - 1, {}});
      } else {
        rectangle(role, x, y_ - kSquare + 1, kSquare, kSquare);
      }
      label(Role::kFaintText, x + kSquare + 5, y_, text);
      x += width;
    };
    if (any([](const Bar& bar) { return bar.speed.has_value(); })) {
      for (const auto& [role, most, text] : kSpeedColours) {
        add(role, text, role == Role::kCalm ? 210 : 90);
      }
      add(Role::kTooFast, kTooFastCaption, 90);
    }
    if (any([](const Bar& bar) { return !bar.speed; })) add(Role::kPicture, "a picture", 100);
    const bool hasMarks =
        std::ranges::any_of(tracks_, [](const Track& track) { return !track.marks.empty(); });
    if (hasMarks) add(Role::kNote, "a note on the file", 0);
    y_ += kLine / 2;
  }

  template <typename Predicate>
  bool any(Predicate predicate) const {
    return std::ranges::any_of(
        tracks_, [&](const Track& track) { return std::ranges::any_of(track.bars, predicate); });
  }

  void drawTicks() {
    y_ += kLine;
    for (long long tick = 0; tick <= scale_.row; tick += scale_.tick) {
      label(Role::kFaintText, kPlotLeft + widthOf(tick), y_, nameOf(tick), Anchor::kMiddle);
    }
    y_ += kRowGap;
  }

  std::string nameOf(long long tick) const {
    constexpr long long kMinute = 60'000;
    if (scale_.tick < kMinute) return std::to_string(tick / 1000) + " s";
    return std::to_string(tick / kMinute) + " min";
  }

  /// The width of a length of time.
  double widthOf(long long time) const {
    return static_cast<double>(time) / static_cast<double>(scale_.row) * kPlotWidth;
  }

  /// Up to two empty rows are drawn; more become a line of text.
  void drawGap(long long from, long long to) {
    if (to - from < 3) {
      for (; from < to; ++from) drawRow(from, std::vector<Cell>(tracks_.size()));
      return;
    }
    y_ += kLine - kRowGap;
    label(Role::kFaintText, kPlotLeft, y_,
          "nothing from " + withoutMilliseconds(from * scale_.row) + " to " +
              withoutMilliseconds(to * scale_.row));
    y_ += 2 * kRowGap;
  }

  void drawRow(long long number, const std::vector<Cell>& cells) {
    const double height = heightOf(cells);
    rectangle(Role::kBand, kPlotLeft, y_, kPlotWidth, height);
    for (long long tick = scale_.tick; tick < scale_.row; tick += scale_.tick) {
      rectangle(Role::kGrid, kPlotLeft + widthOf(tick) - 0.5, y_, 1, height);
    }
    double top = y_ + kRowPadding;
    const double baseLine = top + cells.front().spaceForMarks() + kBarHeight;
    label(Role::kFaintText, kMargin, baseLine, withoutMilliseconds(number * scale_.row));
    for (std::size_t i = 0; i < cells.size(); ++i) {
      drawCell(number * scale_.row, cells[i], top);
      if (cells.size() > 1) drawNumber(i, top + cells[i].spaceForMarks() + kBarHeight);
      top += cells[i].height() + kRowPadding;
    }
    y_ += height + kRowGap;
  }

  void drawNumber(std::size_t track, double baseLine) {
    label(Role::kFaintText, kPlotLeft - 5, baseLine, numberOf(track), Anchor::kEnd);
  }

  void drawCell(long long rowStart, const Cell& cell, double top) {
    for (const NoteMark* mark : cell.marks) {
      const double x = kPlotLeft + widthOf(std::max(mark->time, 0LL) - rowStart);
      drawing_.shapes.emplace_back(Pointer{Role::kNote, x, top + kPointerSize - 1, mark->hint});
    }
    top += cell.spaceForMarks();
    for (const auto& [bar, lane] : cell.bars) {
      drawBar(rowStart, *bar, top + static_cast<double>(lane) * kLaneHeight);
    }
  }

  /// The part of the bar in this row, a pixel short to separate bars that touch.
  void drawBar(long long rowStart, const Bar& bar, double top) {
    const double left = widthOf(std::max(bar.start, rowStart) - rowStart);
    const double right = widthOf(std::min(bar.end - rowStart, scale_.row));
    rectangle(roleOf(bar), kPlotLeft + left, top, std::max(right - left - 1, 1.0), kBarHeight,
              bar.hint);
  }

  const std::vector<Track>& tracks_;
  Scale scale_;
  Drawing drawing_;
  double y_ = 0;  // where to draw next
};

}  // namespace

Drawing drawTimeline(const std::vector<Track>& tracks) {
  constexpr long long kLongestRow = 1LL << 62;
  for (Scale scale = finestFor(tracks); scale.row < kLongestRow / 6; scale = coarser(scale)) {
    std::optional<Rows> rows = RowLayout(tracks, scale.row).rows();
    if (rows) return TimelineDrawer(tracks, scale).draw(*rows);
  }
  throw std::runtime_error("too many files for one picture");
}

}  // namespace kssub
