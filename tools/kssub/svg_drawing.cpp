// Writes a drawing as SVG (W3C SVG 2).
#include <cstdio>

#include "tools/kssub/drawing.h"

namespace kssub {

namespace {

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

std::string attribute(const char* name, double value) {
  return std::string(" ") + name + "=\"" + number(value) + '"';
}

std::string styleClass(Role role) { return std::string(" class=\"") + paintOf(role).name + '"'; }

/// XML (W3C XML 1.0, 2.2) excludes the noncharacters U+FFFE and U+FFFF even when escaped.
std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    const bool isNoncharacter = (c == '\xBE' || c == '\xBF') && out.ends_with("\xEF\xBF");
    if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else {
      out += isNoncharacter ? '\xBD' : c;
    }
  }
  return out;
}

std::string closed(const char* element, const std::string& hint) {
  if (hint.empty()) return "/>\n";
  return "><title>" + escaped(hint) + "</title></" + element + ">\n";
}

struct ElementOf {
  std::string operator()(const Rectangle& shape) const {
    return "<rect" + styleClass(shape.role) + attribute("x", shape.x) + attribute("y", shape.y) +
           attribute("width", shape.width) + attribute("height", shape.height) +
           closed("rect", shape.hint);
  }
  std::string operator()(const Pointer& shape) const {
    const std::string half = number(kPointerSize / 2);
    return "<path" + styleClass(shape.role) + " d=\"M" + number(shape.x) + ' ' + number(shape.y) +
           'l' + half + ' ' + number(-kPointerSize) + 'h' + number(-kPointerSize) + "z\"" +
           closed("path", shape.hint);
  }
  std::string operator()(const Label& shape) const {
    constexpr const char* kAnchors[] = {"start", "middle", "end"};
    return "<text" + styleClass(shape.role) + attribute("x", shape.x) + attribute("y", shape.y) +
           " text-anchor=\"" + kAnchors[static_cast<int>(shape.anchor)] + "\">" +
           escaped(shape.text) + "</text>\n";
  }
};

/// The colours as CSS.
std::string rules(std::array<unsigned char, 3> Paint::*colour) {
  std::string out;
  for (const Paint& paint : kPaints) {
    const auto [red, green, blue] = paint.*colour;
    char value[8];
    std::snprintf(value, sizeof value, "#%02x%02x%02x", red, green, blue);
    out += std::string(".") + paint.name + "{fill:" + value + '}';
  }
  return out + '\n';
}

}  // namespace

std::string svgOf(const Drawing& drawing) {
  std::string out =
      R"(<svg xmlns="http://www.w3.org/2000/svg")" + attribute("width", drawing.width) +
      attribute("height", drawing.height) + R"( viewBox="0 0 )" + number(drawing.width) + ' ' +
      number(drawing.height) + R"(" font-family="sans-serif")" + attribute("font-size", kFontSize) +
      ">\n<style>\n" + rules(&Paint::onLight) + "@media (prefers-color-scheme: dark) {\n" +
      rules(&Paint::onDark) + "}\n</style>\n";
  for (const auto& shape : drawing.shapes) out += std::visit(ElementOf(), shape);
  return out + "</svg>\n";
}

}  // namespace kssub
