// A file of pictures, as the import library reads it.
#pragma once

#include <optional>
#include <string>

#include "kssubtitle/import/ksImportPictures.h"

namespace CLI {
class App;
}

namespace kssub {

/// Adds --stream, into `stream`.
void addStream(CLI::App& app, std::optional<int>& stream);

/// Opens the VobSub index or stream at `path`, and selects the language that has the number
/// `stream` there, if one is given. Throws std::runtime_error, whose text names the file.
ksImportPictures openPictures(const std::string& path, const ksImportOptions& options,
                              std::optional<int> stream);

/// "en, index 0", or what is known of that.
std::string languageOf(const ksImportPictureStream& stream);

}  // namespace kssub
