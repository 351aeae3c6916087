// SubRip files of any content.
#include "fuzz/excluded.h"
#include "fuzz/support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input(data, size);
  if (neverEndsOrGrows(input.text)) return 0;
  if (input.isWide()) {
    checkParser<wchar_t, ksSrtParserU>(input, &ksSrtParserU::ConvertBufToSrtMap);
  } else {
    checkParser<char, ksSrtParser>(input, &ksSrtParser::ConvertBufToSrtMap);
  }
  return 0;
}
