// Chooses the parser for a file and forwards the questions to it.
#include "kssubtitle/manager/ksSubtitleManager.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "kssubtitle/parsers/reading/reading_rules.h"
#include "kssubtitle/parsers/sub_fopen.h"

namespace {

using kssubtitle::internal::kWideMark;

// The keys of the parsers: one for each format, and as many for its wide form.
constexpr int kNone = 0;
constexpr int kSubRip = 1;
constexpr int kScript = 2;
constexpr int kWide = 3;  // added to a format's key

/// The format that the extension names, in lower case.
int formatOf(std::string_view path) noexcept {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return kNone;
  const std::string_view extension = path.substr(dot + 1);
  if (extension == "srt") return kSubRip;
  return extension == "ass" || extension == "ssa" ? kScript : kNone;
}

enum class Mark { kAbsent, kPresent, kUnreadable };

/// Whether the file begins with the mark of wide ones; unreadable if it is shorter than that.
Mark markOf(const char* path) {
  std::FILE* const file = sub_fopen(path, "rb");
  if (file == nullptr) return Mark::kUnreadable;
  unsigned char bytes[sizeof kWideMark];
  const std::size_t size = std::fread(bytes, 1, sizeof bytes, file);
  std::fclose(file);
  if (size < sizeof bytes) return Mark::kUnreadable;
  return std::ranges::equal(bytes, kWideMark) ? Mark::kPresent : Mark::kAbsent;
}

}  // namespace

ksSubtitleManager::ksSubtitleManager()
    : parsers{{kSubRip, srtParser.get()},
              {kScript, assParser.get()},
              {kWide + kSubRip, srtParserU.get()},
              {kWide + kScript, assParserU.get()}} {}

ksSubtitleManager::~ksSubtitleManager() = default;

bool ksSubtitleManager::Open(const char* path) {
  currentKey = kNone;
  if (path == nullptr || *path == '\0') return false;
  const Mark mark = markOf(path);
  if (mark == Mark::kUnreadable) return false;
  isUnicode = mark == Mark::kPresent;
  const int format = formatOf(path);
  if (format == kNone) return false;
  currentKey = isUnicode ? kWide + format : format;
  return current()->Open(path);
}

bool ksSubtitleManager::IsOpen() { return currentKey != kNone && current()->IsOpen(); }

long long ksSubtitleManager::DurationTime() {
  return currentKey == kNone ? 0 : current()->DurationTime();
}

SUBTITLE_ST ksSubtitleManager::GetSubTitle(long long t) {
  if (currentKey == kNone) return {};
  return current()->GetSubTitle(t);
}

SUBTITLE_ST_U ksSubtitleManager::GetSubTitleU(long long t) {
  if (currentKey == kNone) return {};
  return current()->GetSubTitleU(t);
}

IParser* ksSubtitleManager::current() { return parsers[currentKey]; }
