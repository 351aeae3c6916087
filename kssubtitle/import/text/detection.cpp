// The encoding that the statistics of a text's bytes suggest.
#include <uchardet/uchardet.h>

#include <algorithm>
#include <memory>
#include <new>

#include "kssubtitle/import/text/ascii.h"
#include "kssubtitle/import/text/encodings.h"

namespace kssubtitle::importing {
namespace {

/// The detector reads about 6 MB a second, so it gets no more than it needs.
constexpr std::size_t kShown = 65536;

using Detector = std::unique_ptr<uchardet, decltype(&uchardet_delete)>;

bool isHigh(char c) noexcept { return (static_cast<unsigned char>(c) & 0x80) != 0; }

/// `line` without its tags.
std::string withoutTags(std::string_view line) {
  std::string text;
  for (std::size_t end = 0;; line.remove_prefix(end + 1)) {
    const std::size_t begin = line.find('<');
    end = begin == line.npos ? line.npos : line.find('>', begin);
    if (end == line.npos) return text.append(line);
    text += line.substr(0, begin);
  }
}

void show(uchardet* detector, std::string_view text) {
  if (uchardet_handle_data(detector, text.data(), text.size()) != 0) throw std::bad_alloc();
}

/// Whether `bytes` are SAMI, which has more tags than text in its lines.
bool isSami(std::string_view bytes) noexcept {
  constexpr std::size_t kLooked = 4096;
  const std::string_view head = bytes.substr(0, std::min(bytes.size(), kLooked));
  return findNoCase(head, "<sami") != head.npos || findNoCase(head, "<sync") != head.npos;
}

/// Shows the detector the lines that are not ASCII, in SAMI without tags, which would outweigh the
/// text there.
void showText(uchardet* detector, std::string_view bytes) {
  const bool hasTags = isSami(bytes);
  std::size_t room = kShown;
  while (!bytes.empty() && room > 0) {
    const auto* const high = std::find_if(bytes.begin(), bytes.end(), isHigh);
    if (high == bytes.end()) return;
    const auto at = static_cast<std::size_t>(high - bytes.begin());
    const std::size_t begin = bytes.find_last_of("\r\n", at) + 1;
    const std::size_t end = std::min(bytes.find_first_of("\r\n", at), bytes.size() - 1) + 1;
    const std::string_view line = bytes.substr(begin, std::min(end - begin, room));
    if (hasTags) {
      show(detector, withoutTags(line));
    } else {
      show(detector, line);
    }
    room -= line.size();
    bytes.remove_prefix(end);
  }
}

struct Meaning {
  std::string_view written;
  std::string_view meant;
};

constexpr bool isC1Control(char c) noexcept {
  return static_cast<unsigned char>(c) >= 0x80 && static_cast<unsigned char>(c) < 0xA0;
}

// Where these standards have control characters, which no text contains, Windows has letters and
// quotation marks.
constexpr Meaning kMeaningsWithC1[] = {
    {"ISO-8859-2", "windows-1250"},
    {"ISO-8859-7", "windows-1253"},
    {"ISO-8859-15", "windows-1252"},
};

/// The code page that `name` means for a text of these bytes.
std::string codePageOfBytes(std::string_view bytes, std::string name) {
  for (const Meaning& entry : kMeaningsWithC1) {
    const bool isMeant =
        entry.written == name && std::any_of(bytes.begin(), bytes.end(), isC1Control);
    if (isMeant) return std::string(entry.meant);
  }
  return name;
}

// Subtitles are written with the code pages of Windows, which extend these standards.
constexpr Meaning kMeanings[] = {
    {"ISO-8859-1", "windows-1252"},
    {"ISO-8859-9", "windows-1254"},
    {"ISO-8859-13", "windows-1257"},
    {"TIS-620", "windows-874"},
    {"ISO-8859-11", "windows-874"},
    {"GB2312", "GB18030"},
    {"GBK", "GB18030"},
    {"EUC-KR", "CP949"},
    {"UHC", "CP949"},
    {"KS_C_5601-1987", "CP949"},
    {"Shift_JIS", "CP932"},
    {"SJIS", "CP932"},
};

constexpr std::string_view kSubtitleEncodings[] = {
    "UTF-8",        "windows-1250", "windows-1251", "windows-1252", "windows-1253", "windows-1254",
    "windows-1255", "windows-1256", "windows-1257", "windows-1258", "windows-874",  "KOI8-R",
    "ISO-8859-2",   "ISO-8859-5",   "ISO-8859-7",   "ISO-8859-15",  "GB18030",      "Big5",
    "CP932",        "EUC-JP",       "CP949",
};

}  // namespace

std::string usualCodePage(std::string_view name) {
  for (const Meaning& entry : kMeanings) {
    if (equalNoCase(entry.written, name)) return std::string(entry.meant);
  }
  for (const std::string_view known : kSubtitleEncodings) {
    if (equalNoCase(known, name)) return std::string(known);
  }
  return std::string(name);
}

std::string detectedEncoding(std::string_view bytes) {
  const Detector detector(uchardet_new(), &uchardet_delete);
  if (!detector) throw std::bad_alloc();
  showText(detector.get(), bytes);
  uchardet_data_end(detector.get());
  std::string name = codePageOfBytes(bytes, usualCodePage(uchardet_get_charset(detector.get())));
  const bool isUsed = std::find(std::begin(kSubtitleEncodings), std::end(kSubtitleEncodings),
                                name) != std::end(kSubtitleEncodings);
  return isUsed ? name : std::string();
}

}  // namespace kssubtitle::importing
