// Events from a script's "Dialogue" lines.
#include "kssubtitle/parsers/ass/event_line.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "kssubtitle/parsers/ass/ksAssParser.h"
#include "kssubtitle/parsers/times.h"

namespace kssubtitle::internal {
namespace {

/// The Layer column, which SSA v4 does not have: "Marked=" is there. Deliberate: in a
/// script that is not ASS v4+ an equals sign anywhere in the line cuts the line after it.
template <typename Char>
int readLayer(ColumnReader<Char>& reader, FormatLevel level) {
  if (level == FormatLevel::kAssV4Plus) return reader.integer();
  reader.text(Char{'='});
  reader.integer();
  return 0;
}

template <typename Char>
long long readTime(ColumnReader<Char>& reader) {
  int fields[4];
  if (!reader.take("0:00:00.00,", fields)) {  // the usual form, read at once
    fields[0] = reader.integer(Char{':'});
    fields[1] = reader.integer(Char{':'});
    fields[2] = reader.integer(Char{'.'});
    fields[3] = reader.integer();
  }
  return milliseconds32(fields[0], fields[1], fields[2], times10(fields[3]));
}

/// Assigns without a text in between.
template <typename Char>
void assign(ksBasicString<Char>& text, std::basic_string_view<Char> column) {
  text.clear();
  text.append(column.data(), static_cast<int>(column.size()));
}

template <typename Char>
void assignStyle(ksBasicString<Char>& style, std::basic_string_view<Char> column) {
  constexpr int kLength = 7;
  constexpr Char kDefault[] = {'D', 'e', 'f', 'a', 'u', 'l', 't', 0};
  assign(style, column);
  style.TrimLeft(Char{'*'});
  if (style.length() == kLength && style != kDefault &&
      ksBasicString<Char>::compareNoCase(style.getData(), kDefault, kLength) == 0) {
    style = kDefault;
  }
}

/// Deliberate: an effect that begins as the text does, or vice versa, is not one.
template <typename Char>
std::basic_string_view<Char> effectBeside(std::basic_string_view<Char> effect,
                                          std::basic_string_view<Char> text) noexcept {
  const std::size_t common = std::min(effect.size(), text.size());
  return effect.substr(0, common) == text.substr(0, common) ? effect.substr(0, 0) : effect;
}

}  // namespace

template <typename Char, typename Event>
void readEventLine(ColumnReader<Char>& reader, FormatLevel level, OverrideTagRemover<Char>& tags,
                   Event& event) {
  event.layer = readLayer(reader, level);
  event.startTime = readTime(reader);
  event.endTime = readTime(reader);
  assignStyle(event.style, reader.text());
  assign(event.name, reader.text());
  for (int margin = 0; margin < 3; ++margin) reader.text();
  const auto effect = reader.text();
  assign(event.effect, effectBeside(effect, reader.rest()));
  const auto text = tags.clean(reader.rest());
  event.text += Char{'\n'};
  event.text.append(text.data(), static_cast<int>(text.size()));
}

template void readEventLine(ColumnReader<char>&, FormatLevel, OverrideTagRemover<char>&,
                            ASS_SESSION_ST&);
template void readEventLine(ColumnReader<wchar_t>&, FormatLevel, OverrideTagRemover<wchar_t>&,
                            ASS_SESSION_ST_U&);

}  // namespace kssubtitle::internal
