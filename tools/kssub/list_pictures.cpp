// The command `list` for files of pictures: their times, places and sizes.
#include "tools/kssub/list_pictures.h"

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "tools/kssub/open_pictures.h"
#include "tools/kssub/report_text.h"
#include "tools/kssub/terminal_text.h"
#include "tools/kssub/times.h"

namespace kssub {
namespace {

using Entry = ksImportPictureEntry;
using Value = decltype(Field::value);

std::string formOf(const Entry& entry) {
  if (!entry.damage.empty()) return "damaged: " + std::string(entry.damage);
  const ksImportRectangle& where = entry.rectangle;
  return std::to_string(where.width) + " x " + std::to_string(where.height) + " at " +
         std::to_string(where.left) + "," + std::to_string(where.top) +
         (entry.isForced ? ", forced" : "");
}

void printRow(std::size_t width, const std::string& start, const std::string& end,
              const std::string& form) {
  const int column = static_cast<int>(width);
  std::cout << std::setw(column) << start << "  " << std::setw(column) << end << "  " << form
            << '\n';
}

void printTable(std::span<const Entry> entries) {
  std::size_t width = 0;
  for (const Entry& entry : entries) {
    width = std::max({width, formatTime(entry.start).size(), formatTime(entry.end).size()});
  }
  if (!entries.empty()) printRow(width, "start", "end", "picture");
  for (const Entry& entry : entries) {
    printRow(width, formatTime(entry.start), formatTime(entry.end), formOf(entry));
  }
}

std::string counted(std::size_t pictures) {
  return std::to_string(pictures) + (pictures == 1 ? " picture" : " pictures");
}

void printSummary(const ksImportPictures& pictures) {
  std::cout << counted(pictures.entries().size());
  const auto streams = pictures.streams();
  if (!streams.empty()) std::cout << " (" << languageOf(streams[pictures.selected()]) << ")";
  std::cout << "; " << summaryOf(pictures.report()) << '\n';
  for (std::size_t i = 0; i < streams.size(); ++i) {
    if (i == pictures.selected()) continue;
    std::cout << "also " << counted(streams[i].pictures) << " (" << languageOf(streams[i]) << ")\n";
  }
}

/// Only the times of a damaged picture are known.
void printRecords(std::span<const Entry> entries, Output output) {
  RecordWriter writer(std::cout, output);
  for (const Entry& entry : entries) {
    const bool isSound = entry.damage.empty();
    const auto known = [&](auto value) { return isSound ? Value(value) : Value(); };
    const auto number = [&](int n) { return known(static_cast<long long>(n)); };
    const auto& [left, top, width, height] = entry.rectangle;
    writer.write({{"start", entry.start},
                  {"end", entry.end},
                  {"left", number(left)},
                  {"top", number(top)},
                  {"width", number(width)},
                  {"height", number(height)},
                  {"forced", known(entry.isForced)},
                  {"damage", isSound ? Value() : std::string(entry.damage)}});
  }
}

}  // namespace

void listPictures(const PictureListRequest& request) {
  const FileRequest& file = request.file;
  const ksImportPictures pictures = openPictures(file.path, file.options, request.stream);
  if (request.output == Output::kTable) {
    printTable(pictures.entries());
    printSummary(pictures);
  } else {
    printRecords(pictures.entries(), request.output);
  }
  if (!request.withNotes) return;
  for (const std::string& note : noteLines(file.path, pictures.report())) {
    std::cerr << terminalText(note) << '\n';
  }
}

}  // namespace kssub
