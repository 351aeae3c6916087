// VobSub indexes and streams of any content.
#include "fuzz/support.h"
#include "kssubtitle/import.h"

namespace {

constexpr std::size_t kEnough = 20;  // pictures of one input
constexpr int kLargest = 1 << 18;    // pixels of a picture; larger ones take too long

bool isDrawn(const ksImportPictureEntry& entry) {
  return entry.rectangle.width * static_cast<long long>(entry.rectangle.height) <= kLargest;
}

void checkEntries(const ksImportPictures& pictures) {
  const auto entries = pictures.entries();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    check(entries[i].end > entries[i].start, "a picture is shown for a time");
    check(i == 0 || entries[i - 1].start <= entries[i].start, "entries are sorted");
    check(entries[i].rectangle.width >= 0 && entries[i].rectangle.height >= 0, "sizes are sizes");
  }
  check(!pictures.Picture(entries.size()), "there is nothing after the last entry");
}

void checkPictures(const ksImportPictures& pictures) {
  for (std::size_t i = 0; i < std::min(kEnough, pictures.entries().size()); ++i) {
    const ksImportPictureEntry& entry = pictures.entries()[i];
    if (!isDrawn(entry)) continue;
    const auto picture = pictures.Picture(i);
    check(entry.damage.empty() == (picture != nullptr),
          "every entry that is not damaged has a picture");
    if (!picture) continue;
    check(picture->width > 0 && picture->width <= 4096 && picture->height > 0 &&
              picture->height <= 4096,
          "the format bounds a picture");
    check(picture->rgba.size() == static_cast<std::size_t>(picture->width * picture->height) * 4,
          "a picture has all of its pixels");
    check(picture->frameWidth > 0 && picture->frameHeight > 0, "the frame has a size");
    check(pictures.Picture(i) == picture, "a picture is kept");
  }
}

/// The entry that is shown at `t`, by a look at all entries; null if none is.
const ksImportPictureEntry* shownAt(const ksImportPictures& pictures, long long t,
                                    bool showsForcedOnly) {
  const ksImportPictureEntry* last = nullptr;
  for (const ksImportPictureEntry& entry : pictures.entries()) {
    if (entry.start <= t && (entry.isForced || !showsForcedOnly)) last = &entry;
  }
  return last != nullptr && t < last->end && last->damage.empty() ? last : nullptr;
}

bool isShownAsModelled(const ksImportPictures& pictures, bool showsForcedOnly) {
  for (std::size_t i = 0; i < std::min(kEnough, pictures.entries().size()); ++i) {
    const long long start = pictures.entries()[i].start;
    for (const long long t : {start - 1, start}) {
      const auto isTooLarge = [&](bool forcedOnly) {
        const ksImportPictureEntry* const entry = shownAt(pictures, t, forcedOnly);
        return entry != nullptr && !isDrawn(*entry);
      };
      if (isTooLarge(false) || isTooLarge(true)) continue;
      const ksImportPictureEntry* const expected = shownAt(pictures, t, showsForcedOnly);
      const auto picture = pictures.PictureAt(t);
      if ((picture != nullptr) != (expected != nullptr)) return false;
      if (picture && picture->start != expected->start) return false;
    }
  }
  return true;
}

/// Whether the index asks for forced pictures only is known to the library alone.
void checkTimes(const ksImportPictures& pictures) {
  check(isShownAsModelled(pictures, false) || isShownAsModelled(pictures, true),
        "the last picture that began is shown until its end");
}

}  // namespace

/// The first two bytes are the size of the index, the next ones the index, the others the stream.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::size_t indexSize = std::min(std::size_t{data[0]} << 8 | data[1], size - 2);
  const std::uint8_t* const stream = data + 2 + indexSize;
  ksImportPictures pictures;
  const bool isOpen = pictures.OpenMemory(data + 2, indexSize, stream,
                                          static_cast<std::size_t>(data + size - stream));
  check(isOpen == pictures.IsOpen() &&
            isOpen == (pictures.report().refusal() == ksImportRefusal::kNone) &&
            isOpen == pictures.report().refusalSentence().empty(),
        "a refusal has a reason");
  check(isOpen || (pictures.streams().empty() && pictures.entries().empty()),
        "refused files have no pictures");
  for (std::size_t i = 0; i < pictures.streams().size(); ++i) {
    check(pictures.Select(i) && pictures.entries().size() == pictures.streams()[i].pictures,
          "a language has as many entries as it says");
    checkEntries(pictures);
    checkPictures(pictures);
    checkTimes(pictures);
  }
  return 0;
}
