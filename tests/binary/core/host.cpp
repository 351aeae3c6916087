// A host that relies on what its own compiler makes of the headers: inline and defaulted members,
// copies, virtual tables, type information. Exits with 0 if the library fits.
#include <kssubtitle/kssubtitle.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace {

template <typename Char>
bool usesTexts(const Char* two) {
  using Text = ksBasicString<Char>;
  std::vector<Text> texts(2);
  texts.push_back(std::basic_string<Char>(two));
  Text copy(texts.back());
  texts[0] = std::move(copy);
  copy = texts[1] = two;
  const std::unique_ptr<Text[]> array(new Text[2]);
  array[1] = texts[0] + copy;
  try {
    static_cast<void>(copy.substr(5, 1));
  } catch (const std::out_of_range&) {
    return texts[0] == texts[2] && array[1].split(two + 1).size() == 2 && array[0].isEmpty();
  }
  return false;
}

template <typename Parser>
struct HostParser : Parser {
  SUBTITLE_ST GetSubTitle(long long t) override { return {t, t, "host"}; }
};

template <typename Parser>
bool usesParser() {
  auto own = std::make_unique<HostParser<Parser>>();
  static_cast<void>(own->sessions[7]);
  Parser copy = *own;
  copy = HostParser<Parser>(*own);
  const std::unique_ptr<IParser> parser = std::move(own);
  return dynamic_cast<Parser*>(parser.get()) != nullptr && parser->GetSubTitle(3).text == "host" &&
         dynamic_cast<ksIdxParser*>(parser.get()) == nullptr && copy.sessions.count(7) == 1 &&
         !parser->IsOpen() && parser->GetSubTitleU(3).text.isEmpty();
}

}  // namespace

int main() {
  const ksIdxParser index;
  const ksIdxParserU indexU;
  const bool fits = usesTexts("ab") && usesTexts(L"ab") && usesParser<ksSrtParser>() &&
                    usesParser<ksSrtParserU>() && usesParser<ksAssParser>() &&
                    usesParser<ksAssParserU>() && !ksIdxParser(index).opened &&
                    !ksIdxParserU(indexU).opened && !ksSubtitleManager().IsOpen();
  return fits ? 0 : 1;
}
