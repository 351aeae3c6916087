// The manager, opening several files in turn, beside a new parser for each.
#include <array>
#include <memory>

#include "fuzz/excluded.h"
#include "fuzz/support.h"

namespace {

struct File {
  std::string path;
  std::string content;
};

/// Consumes the text before the next separator, and the separator.
std::string_view takePiece(std::string_view& rest, char separator) {
  const std::string_view piece = rest.substr(0, rest.find(separator));
  rest.remove_prefix(std::min(rest.size(), piece.size() + 1));
  return piece;
}

File write(const char* name, std::string_view input) {
  static const TempDir dir;
  const std::string content = neverEndsOrGrows(input) ? "" : Input(input).file();
  return {dir.write(name, content), content};
}

/// Null for a file that is too short.
std::unique_ptr<IParser> parserFor(const File& file) {
  const bool isSubRip = file.path.ends_with("srt");
  const bool isWide = file.content.starts_with("\xFF\xFE");
  if (file.content.size() < 2) return nullptr;
  if (isSubRip && isWide) return std::make_unique<ksSrtParserU>();
  if (isSubRip) return std::make_unique<ksSrtParser>();
  if (isWide) return std::make_unique<ksAssParserU>();
  return std::make_unique<ksAssParser>();
}

class Host {
 public:
  void open(const File& file) {
    expected_ = parserFor(file);
    const bool opens = expected_ && expected_->Open(file.path.c_str());
    check(manager_.Open(file.path.c_str()) == opens, "a readable file is opened");
  }

  void openRefused(const char* path) {
    expected_ = nullptr;
    check(!manager_.Open(path), "any other path is refused");
  }

  void compare() {
    check(manager_.IsOpen() == (expected_ != nullptr), "the manager is open with its parser");
    const long long duration = expected_ ? expected_->DurationTime() : 0;
    check(manager_.DurationTime() == duration, "the duration is the parser's");
    for (const long long t : {-1LL, 0LL, 1000LL, 2500LL, duration / 2, duration, duration + 1}) {
      check(isSame(manager_.GetSubTitle(t), expected_ ? expected_->GetSubTitle(t) : SUBTITLE_ST()),
            "the answer is the parser's");
      check(isSame(manager_.GetSubTitleU(t),
                   expected_ ? expected_->GetSubTitleU(t) : SUBTITLE_ST_U()),
            "the wide answer is the parser's");
    }
  }

 private:
  ksSubtitleManager manager_;
  std::unique_ptr<IParser> expected_;  // null while nothing is open
};

}  // namespace

/// The first line says what to open, one character each; the files follow.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMostSteps = 12;
  constexpr std::array<const char*, 4> kRefused{"missing.srt", "/dev/null", "", nullptr};
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view steps = takePiece(input, '\n').substr(0, kMostSteps);
  std::vector<File> files;
  for (const char* name : {"0.srt", "1.ass", "2.ssa", "3.srt"}) {
    files.push_back(write(name, takePiece(input, '\x1E')));
  }
  Host host;
  for (const char step : steps) {
    const std::size_t choice = step & 3;
    (step & 4) != 0 ? host.openRefused(kRefused[choice]) : host.open(files[choice]);
    host.compare();
  }
  return 0;
}
