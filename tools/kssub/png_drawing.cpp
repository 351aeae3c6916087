// Writes a drawing as PNG, by cairo.
#include <cairo.h>

#include <cmath>
#include <memory>
#include <stdexcept>

#include "tools/kssub/drawing.h"

namespace kssub {
namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;
using Context = std::unique_ptr<cairo_t, decltype(&cairo_destroy)>;

void require(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS) {
    throw std::runtime_error(std::string("cannot draw: ") + cairo_status_to_string(status));
  }
}

/// Draws each shape.
class Painter {
 public:
  explicit Painter(cairo_t* context) : context_(context) {
    cairo_select_font_face(context, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, kFontSize);
  }

  void operator()(const Rectangle& shape) const {
    choose(shape.role);
    cairo_rectangle(context_, shape.x, shape.y, shape.width, shape.height);
    cairo_fill(context_);
  }
  void operator()(const Pointer& shape) const {
    choose(shape.role);
    cairo_move_to(context_, shape.x, shape.y);
    cairo_rel_line_to(context_, kPointerSize / 2, -kPointerSize);
    cairo_rel_line_to(context_, -kPointerSize, 0);
    cairo_fill(context_);
  }
  void operator()(const Label& shape) const {
    choose(shape.role);
    cairo_text_extents_t extents{};
    cairo_text_extents(context_, shape.text.c_str(), &extents);
    cairo_move_to(context_, shape.x - extents.x_advance * shareBefore(shape.anchor), shape.y);
    cairo_show_text(context_, shape.text.c_str());
  }

 private:
  static double shareBefore(Anchor anchor) {
    if (anchor == Anchor::kStart) return 0;
    return anchor == Anchor::kMiddle ? 0.5 : 1;
  }

  void choose(Role role) const {
    const auto [red, green, blue] = paintOf(role).onLight;
    cairo_set_source_rgb(context_, red / 255.0, green / 255.0, blue / 255.0);
  }

  cairo_t* context_;
};

/// Called from C, which exceptions must not cross.
cairo_status_t append(void* out, const unsigned char* bytes, unsigned size) noexcept {
  try {
    static_cast<std::string*>(out)->append(bytes, bytes + size);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::bad_alloc&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

}  // namespace

std::string pngOf(const Drawing& drawing) {
  const Surface surface(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(drawing.width)),
                                 static_cast<int>(std::ceil(drawing.height))),
      cairo_surface_destroy);
  const Context context(cairo_create(surface.get()), cairo_destroy);
  const Painter painter(context.get());
  for (const auto& shape : drawing.shapes) std::visit(painter, shape);
  require(cairo_status(context.get()));
  std::string png;
  require(cairo_surface_write_to_png_stream(surface.get(), append, &png));
  return png;
}

}  // namespace kssub
