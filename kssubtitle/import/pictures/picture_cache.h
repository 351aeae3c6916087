// The most recently used pictures.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <list>
#include <memory>
#include <utility>

#include "kssubtitle/import/ksImportPictures.h"

namespace kssubtitle::importing {

/// Keeps a bounded number of pictures, and the most recent one whatever its size.
class PictureCache {
 public:
  using Picture = std::shared_ptr<const ksImportPicture>;

  /// The picture of that index, which becomes the most recent one; null if it is not kept.
  Picture find(std::size_t index) noexcept {
    const auto found = std::find_if(slots_.begin(), slots_.end(),
                                    [&](const Slot& slot) { return slot.index == index; });
    if (found == slots_.end()) return nullptr;
    slots_.splice(slots_.begin(), slots_, found);
    return slots_.front().picture;
  }

  void add(std::size_t index, Picture picture) {
    slots_.push_front({index, std::move(picture)});
    std::size_t bytes = 0;
    const auto full = std::find_if(std::next(slots_.begin()), slots_.end(), [&](const Slot& slot) {
      return (bytes += slot.picture->rgba.size()) > kMostBytes;
    });
    slots_.erase(full, slots_.end());
    slots_.resize(std::min(slots_.size(), kMostPictures));
  }

  void clear() noexcept { slots_.clear(); }

 private:
  struct Slot {
    std::size_t index = 0;
    Picture picture;
  };

  static constexpr std::size_t kMostPictures = 32;
  static constexpr std::size_t kMostBytes = std::size_t{16} << 20;  // beside the most recent one
  std::list<Slot> slots_;                                           // the most recent one first
};

}  // namespace kssubtitle::importing
