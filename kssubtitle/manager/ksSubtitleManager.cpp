// Chooses the parser for a file and forwards the questions to it.
#include "kssubtitle/manager/ksSubtitleManager.h"

#include <cstdio>
#include <string_view>

#include "kssubtitle/parsers/sub_fopen.h"

namespace {

enum Format { kUnknown = 0, kSubRip = 1, kScript = 2 };

constexpr int kWideOffset = 3;

/// The format that the extension names, in lower case.
Format formatOf(std::string_view path) noexcept {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return kUnknown;
  const std::string_view extension = path.substr(dot + 1);
  if (extension == "srt") return kSubRip;
  return extension == "ass" || extension == "ssa" ? kScript : kUnknown;
}

enum class Mark { kNone, kWide, kUnreadable };

/// Whether the file begins with FF FE; unreadable if it has no two bytes.
Mark markOf(const char* path) {
  std::FILE* const file = sub_fopen(path, "rb");
  if (file == nullptr) return Mark::kUnreadable;
  unsigned char bytes[2];
  const std::size_t size = std::fread(bytes, 1, sizeof bytes, file);
  std::fclose(file);
  if (size < sizeof bytes) return Mark::kUnreadable;
  return bytes[0] == 0xFF && bytes[1] == 0xFE ? Mark::kWide : Mark::kNone;
}

}  // namespace

ksSubtitleManager::ksSubtitleManager() {
  srtParser = std::make_unique<ksSrtParser>();
  assParser = std::make_unique<ksAssParser>();
  srtParserU = std::make_unique<ksSrtParserU>();
  assParserU = std::make_unique<ksAssParserU>();
}

ksSubtitleManager::~ksSubtitleManager() {
  srtParser.reset();
  assParser.reset();
  srtParserU.reset();
  assParserU.reset();
}

bool ksSubtitleManager::Open(const char* path) {
  parsers = {{kSubRip, srtParser.get()},
             {kScript, assParser.get()},
             {kWideOffset + kSubRip, srtParserU.get()},
             {kWideOffset + kScript, assParserU.get()}};
  currentKey = 0;
  if (path == nullptr || *path == '\0') return false;
  const Mark mark = markOf(path);
  if (mark == Mark::kUnreadable) return false;
  isUnicode = mark == Mark::kWide;
  const Format format = formatOf(path);
  if (format == kUnknown) return false;
  currentKey = (isUnicode ? kWideOffset : 0) + format;
  return current()->Open(path);
}

bool ksSubtitleManager::IsOpen() { return currentKey != 0 && current()->IsOpen(); }

long long ksSubtitleManager::DurationTime() {
  return currentKey == 0 ? 0 : current()->DurationTime();
}

SUBTITLE_ST ksSubtitleManager::GetSubTitle(long long t) {
  if (currentKey == 0) return {};
  return current()->GetSubTitle(t);
}

SUBTITLE_ST_U ksSubtitleManager::GetSubTitleU(long long t) {
  if (currentKey == 0) return {};
  return current()->GetSubTitleU(t);
}

IParser* ksSubtitleManager::current() { return parsers[currentKey]; }
