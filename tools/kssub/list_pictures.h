// The command `list` for files of pictures.
#pragma once

#include <optional>

#include "tools/kssub/json_tsv.h"
#include "tools/kssub/subtitle_file.h"

namespace kssub {

struct PictureListRequest {
  const FileRequest& file;
  std::optional<int> stream;  ///< The index of a language in the file.
  Output output = Output::kTable;
  bool withNotes = false;
};

/// Prints the times, place and size of each picture of a language, and which other languages there
/// are. Throws std::runtime_error.
void listPictures(const PictureListRequest& request);

}  // namespace kssub
