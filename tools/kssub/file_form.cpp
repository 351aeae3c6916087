// The outer form of a subtitle file: found by reading its bytes once, apart from the library.
#include "tools/kssub/file_form.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <span>
#include <string_view>
#include <system_error>

#include "tools/kssub/file_handle.h"
#include "tools/kssub/terminal_text.h"

namespace kssub {
namespace {

constexpr std::size_t kBlockSize = 1 << 16;  // even, so that no 16-bit unit is torn
constexpr std::size_t kProbeSize = 256;
constexpr std::size_t kMarkSize = 2;

using Bytes = std::span<const unsigned char>;

[[noreturn]] void throwSystemError(const std::string& path, int error) {
  throw FileError(path, std::generic_category().message(error));
}

FileHandle openFile(const std::string& path) {
  std::error_code ignored;
  const auto status = std::filesystem::status(path, ignored);
  // A pipe would block, a device might never end.
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw FileError(path, "not a regular file");
  }
  FileHandle file(std::fopen(path.c_str(), "rb"));
  if (!file) throwSystemError(path, errno);
  return file;
}

Format formatOf(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return Format::kUnknown;
  const std::string_view extension = path.substr(dot + 1);
  if (extension == "srt") return Format::kSubRip;
  return extension == "ass" || extension == "ssa" ? Format::kAss : Format::kUnknown;
}

Mark markOf(Bytes head) {
  const auto beginsWith = [head](std::initializer_list<unsigned char> mark) {
    return head.size() >= mark.size() && std::equal(mark.begin(), mark.end(), head.begin());
  };
  if (beginsWith({0xFF, 0xFE, 0, 0})) return Mark::kUtf32LittleEndian;
  if (beginsWith({0xFF, 0xFE})) return Mark::kUtf16LittleEndian;
  if (beginsWith({0xFE, 0xFF})) return Mark::kUtf16BigEndian;
  return beginsWith({0xEF, 0xBB, 0xBF}) ? Mark::kUtf8 : Mark::kNone;
}

/// The mark of a wide file alone does not tell: 8-bit text may stand behind it. UTF-16 text holds
/// zero bytes in its digits and line feeds, 8-bit text holds none. As the library looks.
bool holdsZeroBytes(Bytes head) {
  const Bytes text = head.subspan(std::min(head.size(), kMarkSize));
  const Bytes probe = text.subspan(0, std::min(text.size(), kProbeSize));
  return std::ranges::find(probe, 0) != probe.end();
}

class LineEndCounter {
 public:
  explicit LineEndCounter(FileForm& form) : form_(form) {}

  void add(int unit) {
    if (unit == '\n') {
      ++form_.lineFeeds;
      if (previous_ == '\r') ++form_.crLfs;
    } else if (previous_ == '\r') {
      ++form_.loneCrs;
    }
    if (unit == 0) form_.holdsZeros = true;
    previous_ = unit;
  }

  void finish() {
    if (previous_ == '\r') ++form_.loneCrs;
    form_.endsInLineFeed = previous_ == '\n';
  }

 private:
  FileForm& form_;
  int previous_ = 0;
};

void addUnits(LineEndCounter& counter, Bytes block, bool isUtf16) {
  if (!isUtf16) {
    for (const unsigned char byte : block) counter.add(byte);
    return;
  }
  for (std::size_t i = 0; i + 1 < block.size(); i += 2) counter.add(block[i] | block[i + 1] << 8);
}

constexpr unsigned long long kMostLines = 20000;

/// Why the text is misread as a whole, which voids every other remark; empty if nothing tells so.
std::string misreadingOf(const FileForm& form) {
  if (form.mark == Mark::kUtf32LittleEndian) {
    return "it begins with the mark of UTF-32, but is read as UTF-16";
  }
  if (form.mark == Mark::kUtf16BigEndian) {
    return "it begins with a big-endian mark, but is read as 8-bit text";
  }
  if (form.holdsZeros && !form.isWide) {
    return "it holds zero bytes, as UTF-16 does, but is read as 8-bit text";
  }
  return {};
}

std::string effectOfCrLfs(const FileForm& form) {
  const bool isSubRip = form.format == Format::kSubRip;
  if (form.crLfs == form.lineFeeds) {
    return isSubRip ? "its lines end in CR LF, so the whole file becomes one cue with the last "
                      "cue's times"
                    : "its lines end in CR LF, so texts end in CR and the script is read as one of "
                      "unknown type";
  }
  return isSubRip ? "some lines end in CR LF: a number on such a line begins no cue"
                  : "some lines end in CR LF: a text on such a line ends in CR, a script type is "
                    "not recognised";
}

/// What in `form` is known to give odd answers, in one line; empty if there is nothing.
std::string remarksOn(const FileForm& form) {
  std::string line = misreadingOf(form);
  if (!line.empty()) return line;
  const auto remark = [&line](bool applies, std::string_view text) {
    if (applies) line.append(line.empty() ? "" : "; ").append(text);
  };
  remark(form.loneCrs > 0, "it holds lone CRs, which end no line");
  remark(form.crLfs > 0, effectOfCrLfs(form));
  remark(form.mark == Mark::kUtf8 && form.format != Format::kAss,
         "it begins with a UTF-8 mark, so its first line is misread");
  remark(!form.endsInLineFeed && form.format != Format::kSubRip,
         "it does not end in a line feed, so its last line is lost");
  return line;
}

}  // namespace

FileError::FileError(const std::string& path, const std::string& reason)
    : std::runtime_error(terminalText(path) + ": cannot open: " + reason) {}

FileForm examine(const std::string& path) {
  const FileHandle file = openFile(path);
  FileForm form;
  form.format = formatOf(path);
  LineEndCounter counter(form);
  std::array<unsigned char, kBlockSize> buffer;
  bool isUtf16 = false;
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    const Bytes block(buffer.data(), count);
    if (form.size == 0) {
      form.mark = markOf(block);
      form.isWide = form.mark == Mark::kUtf16LittleEndian || form.mark == Mark::kUtf32LittleEndian;
      isUtf16 = form.isWide && holdsZeroBytes(block);
    }
    form.size += count;
    addUnits(counter, block, isUtf16);
  }
  if (std::ferror(file.get()) != 0) throwSystemError(path, errno);
  counter.finish();
  return form;
}

void printRemarks(const std::string& path, const FileForm& form) {
  const std::string remarks = remarksOn(form);
  if (remarks.empty()) return;
  std::cerr << "kssub: " << terminalText(path) << ": note: " << remarks << '\n';
}

std::string refusalOf(const FileForm& form) {
  if (form.size == 0) return "the file is empty";
  if (form.lineFeeds > kMostLines) {
    return "it has more than " + std::to_string(kMostLines) + " lines";
  }
  if (form.format == Format::kUnknown) {
    return "the extension is none of .srt, .ass and .ssa (in lower case)";
  }
  if (form.size == 1) return "the file is a single byte";
  return "it is refused";
}

}  // namespace kssub
