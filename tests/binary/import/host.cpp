// A host that relies on what its own compiler makes of the import library's headers: defaulted
// members, moves, spans, virtual tables, type information. Exits with 0 if the library fits.
#include <kssubtitle/import.h>

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::string_view kFilm = "1\n00:00:01,000 --> 00:00:02,000\n<i>A</i> & B\n\nC\n";

struct HostParser : ksImportParser {
  long long DurationTime() override { return ksImportParser::DurationTime() + 1; }
};

bool usesParser() {
  ksImportOptions options;
  options.format = "subrip";
  options.markup = ksImportMarkup::kHtml;
  const ksImportOptions copy = options;
  auto own = std::make_unique<HostParser>();
  const bool isOpen = own->OpenMemory(kFilm.data(), kFilm.size(), copy);
  HostParser moved = std::move(*own);
  *own = std::move(moved);
  const std::unique_ptr<IParser> parser = std::move(own);
  const auto* const back = dynamic_cast<ksImportParser*>(parser.get());
  return isOpen && back != nullptr && back->cues().size() == 1 && parser->DurationTime() == 2001 &&
         parser->GetSubTitle(1000).text == "\n<i>A</i> &amp; B\nC" &&
         parser->GetSubTitleU(2000).text.length() == 19 && !parser->Open("/");
}

bool usesReport() {
  ksImportParser parser;
  parser.OpenMemory(kFilm.data(), kFilm.size());
  ksImportReport report = std::move(const_cast<ksImportReport&>(parser.report()));
  const std::vector<ksImportCondition> unmet = ksWhyFixedReadersDiffer("");
  return report.format() == "subrip" && report.notes().empty() && unmet.size() == 1 &&
         unmet[0].code == ksImportConditionCode::kReadable &&
         !ksImportSentence(ksImportProblems().front()).empty();
}

bool writes() {
  std::vector<ksImportCue> cues(1);
  cues[0].end = 1000;
  cues[0].text = "A";
  return ksImportWrite(cues, ksImportTarget::kSubRip) == "1\n00:00:00,000 --> 00:00:01,000\nA\n";
}

bool usesPictures() {
  ksImportPictures pictures;
  ksImportPictures moved = std::move(pictures);
  const ksImportPicture picture;
  return !moved.IsOpen() && moved.PictureAt(0) == nullptr && picture.rgba.empty();
}

}  // namespace

int main() { return usesParser() && usesReport() && writes() && usesPictures() ? 0 : 1; }
