// Opens VobSub files through the import library.
#pragma once

#include <optional>
#include <string>

#include "kssubtitle/import/ksImportPictures.h"

namespace CLI {
class App;
}

namespace kssub {

/// Adds the option --stream.
void addStream(CLI::App& app, std::optional<int>& stream);

/// Opens the VobSub index or stream at `path` and selects the language whose index in the file is
/// `stream`, if given. Throws std::runtime_error, naming the file.
ksImportPictures openPictures(const std::string& path, const ksImportOptions& options,
                              std::optional<int> stream);

/// "en, index 0", or as much of that as is known.
std::string languageOf(const ksImportPictureStream& stream);

}  // namespace kssub
