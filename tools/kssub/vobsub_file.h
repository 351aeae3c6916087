// An open VobSub index with its ".sub" file, made safe against the reader's traps.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kssubtitle/parsers/vobsub/ksIdxParser.h"
#include "tools/kssub/subpicture.h"

namespace kssub {

class VobSubFile {
 public:
  using Entry = SUB_SESSION_ST;
  using Unit = std::vector<unsigned char>;

  /// Opens the index at `path` and the ".sub" file of the same name, and says on standard error
  /// what in its form is known to give odd answers. Throws FileError if that fails.
  explicit VobSubFile(const std::string& path);

  /// In the order of the index.
  const std::vector<Entry>& entries() const { return entries_; }
  Palette palette() const;

  /// The entry whose picture a player shows at `time`.
  std::optional<Entry> entryNear(long long time) const;
  /// Its unit, asked for by the time as a player does. Requires: entryNear(time) finds an entry.
  /// Throws BrokenUnit, and FileError if the ".sub" file cannot be opened any more.
  Unit unitNear(long long time);
  /// The unit of exactly this entry. Throws as unitNear().
  Unit unitOf(const Entry& entry);

 private:
  void place(const std::vector<Entry>& visible);
  Unit fetch(long long time);
  void requireWhole(long long position, std::size_t unitSize) const;

  ksIdxParser parser_;
  std::vector<Entry> entries_;
  std::string subPath_;
};

}  // namespace kssub
