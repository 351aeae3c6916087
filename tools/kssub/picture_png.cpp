// Writes pictures as PNG files, by libpng.
#include "tools/kssub/picture_png.h"

#include <png.h>

#include <cerrno>
#include <system_error>

#include "tools/kssub/output_file.h"

namespace kssub {
void writePng(const std::string& path, const ksImportPicture& picture) {
  OutputFile file(path);
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(picture.width);
  png.height = static_cast<png_uint_32>(picture.height);
  png.format = PNG_FORMAT_RGBA;
  errno = 0;
  if (png_image_write_to_stdio(&png, file.stream(), 0, picture.rgba.data(), 0, nullptr) == 0) {
    file.fail(errno != 0 ? std::generic_category().message(errno) : png.message);
  }
  file.finish();
}

}  // namespace kssub
