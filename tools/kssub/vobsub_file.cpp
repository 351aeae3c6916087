// An open VobSub index with its ".sub" file.
#include "tools/kssub/vobsub_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "tools/kssub/file_form.h"

namespace kssub {
namespace {

constexpr long long kFirstTime = 1;  // the least that the library looks for
constexpr long long kWindow = 499;   // how far from an entry's start the library finds it

/// Whether the library's reader would take up this line again and again.
bool neverEnds(std::string_view line) {
  const std::size_t first = line.find_first_not_of(' ');
  return !line.empty() && (first == std::string_view::npos || line[first] == ';');
}

/// A zero byte hides the rest of a line, or joins it to the next, and so what it really begins
/// with.
void requireSafeLines(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    const std::string place = "line " + std::to_string(++number);
    if (line.find('\0') != line.npos) throw FileError(path, place + " holds zero bytes");
    if (neverEnds(line)) throw FileError(path, place + " is of spaces only or begins with ';'");
  }
}

void openParser(ksIdxParser& parser, const std::string& path, const FileForm& form) {
  try {
    if (!parser.Open(path.c_str())) throw FileError(path, refusalOf(form));
  } catch (const std::out_of_range&) {
    throw FileError(path, "a 'timestamp' or 'custom colors' line is cut short");
  }
}

}  // namespace

VobSubFile::VobSubFile(const std::string& path)
    : subPath_(std::filesystem::path(path).replace_extension(".sub").string()) {
  const FileForm form = examine(path);
  if (form.format != Format::kVobSub) throw FileError(path, "the extension is not .idx");
  requireSafeLines(path);
  openParser(parser_, path, form);
  printRemarks(path, form);
  requireReadable(subPath_);
  parser_.subFilePath = subPath_.c_str();
  for (const auto& [key, entry] : std::as_const(parser_.sessions)) entries_.push_back(entry);
}

Palette VobSubFile::palette() const {
  Palette palette{std::to_array(parser_.palette), std::nullopt};
  if (parser_.useCustomColors) {
    palette.custom = {std::to_array(parser_.customColors), parser_.trIdx};
  }
  return palette;
}

std::optional<VobSubFile::Entry> VobSubFile::entryNear(long long time) const {
  if (time < 0) return std::nullopt;
  const auto isNear = [t = std::max(time, kFirstTime)](const Entry& entry) {
    return entry.startTime >= t - kWindow && entry.startTime - kWindow <= t;
  };
  const auto found = std::ranges::find_if(entries_, isNear);
  return found == entries_.end() ? std::nullopt : std::optional(*found);
}

VobSubFile::Unit VobSubFile::unitNear(long long time) {
  place(entries_);
  return fetch(std::max(time, kFirstTime));
}

// Two entries less than half a second apart give the same answer by time: the one wanted is made
// the only one that the reader knows, under a time that it does find.
VobSubFile::Unit VobSubFile::unitOf(const Entry& entry) {
  place({{kFirstTime, entry.filePos}});
  return fetch(kFirstTime);
}

/// Makes these the entries that the reader knows, under keys without gaps: a lookup fills each gap
/// with an empty entry, which times near 0 would find.
void VobSubFile::place(const std::vector<Entry>& visible) {
  parser_.sessions.clear();
  int key = 0;
  for (const Entry& entry : visible) parser_.sessions[key++] = entry;
}

VobSubFile::Unit VobSubFile::fetch(long long time) {
  const long long position = parser_.GetFilePos(time);
  int size = 0;
  int controlOffset = 0;  // the unit itself tells it as well
  errno = 0;              // the reader's null alone does not tell whether the file could be opened
  const std::unique_ptr<unsigned char[]> unit(parser_.GetPacket(time, size, controlOffset));
  if (!unit && errno != 0) throw FileError(subPath_, std::generic_category().message(errno));
  if (!unit) {
    throw BrokenUnit("no unit of the first subpicture stream begins at byte " +
                     std::to_string(position) + " of the .sub file");
  }
  requireWhole(position, static_cast<std::size_t>(size));
  return {unit.get(), unit.get() + size};
}

/// The reader fills up a unit that the file cuts short. This finds a plain cut; a pack that is
/// missing among those of other streams goes unnoticed.
void VobSubFile::requireWhole(long long position, std::size_t unitSize) const {
  constexpr std::size_t kHeader = 24;  // at least, of a pack
  constexpr std::size_t kMostPayload = 2048 - kHeader;
  const std::size_t packs = (unitSize + kMostPayload - 1) / kMostPayload;
  const std::size_t end = static_cast<std::size_t>(position) + packs * kHeader + unitSize;
  if (end > std::filesystem::file_size(subPath_)) throw BrokenUnit("the .sub file ends inside it");
}

}  // namespace kssub
