// The style that a script's "Style" lines leave for a renderer.
#include "kssubtitle/parsers/ass/style_line.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "kssubtitle/parsers/ass/ksAssParser.h"

namespace kssubtitle::internal {
namespace {

constexpr std::uint8_t kSsaBackAlpha = 0x80;

/// The alignment of SSA v4 (1 to 3, plus 4 for the top, plus 8 for the middle) in the numbering of
/// a numeric keypad.
int keypadAlignment(int alignment) noexcept {
  const int column = alignment & 3;
  if ((alignment & 4) != 0) return column + 6;
  if ((alignment & 8) != 0) return column + 3;
  return column;
}

template <typename Parser>
void splitColours(Parser& parser) noexcept {
  for (int i = 0; i < 4; ++i) {
    parser.alphas[i] = static_cast<std::uint8_t>(parser.colours[i] >> 24);
    parser.colours[i] &= 0x00FFFFFF;
  }
}

template <typename Parser>
void applySsaRules(Parser& parser, int alphaLevel) noexcept {
  parser.colours[2] = parser.colours[3];
  std::fill_n(parser.alphas, 3, static_cast<std::uint8_t>(std::clamp(alphaLevel, 0, 255)));
  parser.alphas[3] = kSsaBackAlpha;
  parser.alignment = keypadAlignment(parser.alignment);
}

}  // namespace

// Deliberate: the colour columns are not skipped, so that from `bold` on (`borderStyle` in SSA v4)
// each member takes the column in its place: the primary colour's for `bold`, and so on.
template <typename Char, typename Parser>
void readStyleLine(ColumnReader<Char>& reader, FormatLevel level, Parser& parser) {
  reader.text();  // the style's name
  parser.fontName = std::basic_string<Char>(reader.text());
  parser.fontSize = reader.real();
  if (level == FormatLevel::kAssV4Plus) {
    parser.bold = reader.integer() != 0;
    parser.italic = reader.integer() != 0;
    parser.fontScaleX = reader.real();
    parser.fontScaleY = reader.real();
    parser.fontSpacing = reader.real();
    parser.fontAngle = reader.real();
  }
  if (level != FormatLevel::kUnknown) parser.borderStyle = reader.integer();
  parser.outlineWidth = reader.real();
  parser.shadowDepth = reader.real();
  parser.alignment = reader.integer();
  parser.marginLeft = reader.integer();
  parser.marginRight = reader.integer();
  parser.marginTop = parser.marginBottom = reader.integer();
  const int alphaLevel = level == FormatLevel::kAssV4Plus ? 0 : reader.integer();
  parser.charset = reader.integer();
  if (level == FormatLevel::kAssV4Plus) {
    splitColours(parser);
  } else {
    applySsaRules(parser, alphaLevel);
  }
}

template void readStyleLine(ColumnReader<char>&, FormatLevel, ksAssParser&);
template void readStyleLine(ColumnReader<wchar_t>&, FormatLevel, ksAssParserU&);

}  // namespace kssubtitle::internal
