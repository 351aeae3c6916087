// Compares numbers for all answers of the import library to a fixed set of questions with those
// that are kept: about every file in tests/data, whole and damaged, and about generated pictures.
// They are the same on every platform.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <set>

#include "tests/import_support.h"
#include "tests/kept_answers.h"
#include "tests/program_stream_writer.h"

namespace {

/// FNV-1a over everything that is added.
class Digest {
 public:
  void add(std::string_view text) {
    for (const char c : text) addByte(static_cast<unsigned char>(c));
    add(static_cast<long long>(text.size()));
  }
  void add(long long number) {
    for (int i = 0; i < 8; ++i) addByte(static_cast<unsigned char>(number >> (8 * i) & 0xFF));
  }
  std::uint64_t value() const { return value_; }

 private:
  void addByte(unsigned char byte) { value_ = (value_ ^ byte) * 0x100000001B3; }

  std::uint64_t value_ = 0xCBF29CE484222325;
};
Digest digest;  // of the input that is asked about
std::string answers;

/// Ends an input.
void finish(std::string_view name) {
  std::ostringstream line;
  line << name << ' ' << std::hex << digest.value() << '\n';
  answers += line.str();
  digest = {};
}

void addReport(const ksImportReport& report) {
  digest.add(report.refusalSentence());
  digest.add(report.format());
  digest.add(report.encoding());
  digest.add(static_cast<long long>(report.encodingSource()));
  digest.add(static_cast<long long>(report.lineEnds()));
  for (const std::string& language : report.languages()) digest.add(language);
  digest.add(report.hasLanguage() ? 1 : 0);
  for (const ksImportNote& note : report.notes()) {
    digest.add(static_cast<long long>(note.problem));
    digest.add(note.line);
  }
}

void addCue(const ksImportCue& cue) {
  for (const long long number :
       {cue.start, cue.end, 1LL * cue.line, 1LL * cue.index, 1LL * cue.alignment,
        1LL * cue.isEndAssumed, 1LL * cue.isDuplicate}) {
    digest.add(number);
  }
  digest.add(cue.text);
}

void addAnswers(ksImportParser& parser) {
  digest.add(parser.DurationTime());
  std::set<long long> times{0};
  for (const ksImportCue& cue : parser.cues()) times.insert({cue.start, cue.end});
  for (const long long t : times) {
    const SUBTITLE_ST narrow = parser.GetSubTitle(t);
    const SUBTITLE_ST_U wide = parser.GetSubTitleU(t);
    digest.add(narrow.start);
    digest.add(narrow.end);
    digest.add(narrow.text.getData());
    for (const wchar_t c : std::wstring_view(wide.text.getData())) digest.add(c);
  }
}

void askText(std::string_view bytes, std::string_view format) {
  for (const auto markup : {ksImportMarkup::kPlain, ksImportMarkup::kHtml}) {
    ksImportOptions options;
    options.markup = markup;
    options.format = format;
    if (markup == ksImportMarkup::kHtml) options.language = "en";
    ksImportParser parser;
    parser.OpenMemory(bytes.data(), bytes.size(), options);
    addReport(parser.report());
    for (const ksImportCue& cue : parser.cues()) addCue(cue);
    addAnswers(parser);
    for (const auto target : {ksImportTarget::kSubRip, ksImportTarget::kWebVtt,
                              ksImportTarget::kAss, ksImportTarget::kText}) {
      digest.add(ksImportWrite(parser.cues(), target, markup));
    }
  }
}

/// `bytes` with a few of them replaced, dropped or doubled.
std::string damaged(std::string bytes, Random& random) {
  for (auto count = random() % 8; count > 0 && !bytes.empty(); --count) {
    const std::size_t at = random() % bytes.size();
    const std::size_t length = random() % 12;
    switch (random() % 3) {
      case 0:
        bytes[at] = static_cast<char>(random());
        break;
      case 1:
        bytes.erase(at, length);
        break;
      default:
        bytes.insert(at, bytes.substr(at, length));
    }
  }
  return bytes;
}

void askFiles(const std::string& directory) {
  std::set<std::filesystem::path> paths;  // in the same order everywhere
  for (const auto& entry : std::filesystem::recursive_directory_iterator(directory)) {
    if (entry.is_regular_file() && entry.path().extension() != ".expected") {
      paths.insert(entry.path());
    }
  }
  for (const std::filesystem::path& path : paths) {
    Random random(1);
    const std::string bytes = contentOf(path);
    askText(bytes, "");
    for (int i = 0; i < 100; ++i) askText(damaged(bytes, random), "");
    for (const ksImportFormat* format : ksImportFormats()) askText(bytes, format->name);
    finish(path.filename().string());
  }
}

void askPictures() {
  Random random(1);
  for (int i = 0; i < 200; ++i) {
    std::string stream;
    std::string index = "size: 720x576\nid: en, index: 0\n";
    for (unsigned picture = 0; picture < 5; ++picture) {
      const unsigned length = 1 + random() % 40;
      const std::string row(length, static_cast<char>('0' + random() % 4));
      UnitParts parts{.rows = {1 + random() % 9, row + "12"}};
      parts.left = random() % 100;
      parts.top = random() % 100;
      parts.stop = random() % 2000;
      char line[80];
      std::snprintf(line, sizeof line, "timestamp: 00:00:%02u:%03u, filepos: %09zx\n", picture * 3,
                    random() % 1000, stream.size());
      index += line;
      stream += packHeader(static_cast<int>(random() % 8));
      stream += subpicturePacket(makeUnit(parts), picture * 3000);
    }
    if (i > 50) stream = damaged(stream, random);
    if (i > 100) index = i % 2 == 0 ? damaged(index, random) : "";
    ksImportPictures pictures;
    pictures.OpenMemory(index.data(), index.size(), stream.data(), stream.size());
    addReport(pictures.report());
    for (std::size_t entry = 0; entry < pictures.entries().size(); ++entry) {
      const ksImportPictureEntry& known = pictures.entries()[entry];
      digest.add(known.start);
      digest.add(known.end);
      digest.add(known.damage);
      const auto read = pictures.Picture(entry);
      if (!read) continue;
      digest.add(read->rectangle.left);
      digest.add(read->rectangle.top);
      digest.add(
          std::string_view(reinterpret_cast<const char*>(read->rgba.data()), read->rgba.size()));
    }
  }
}

}  // namespace

int main(int, char** arguments) {
  askFiles(arguments[1]);
  askPictures();
  finish("pictures");
  return compareWithKept(answers, arguments[2]);
}
