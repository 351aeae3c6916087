// The command `list` of a file of pictures.
#pragma once

#include <optional>

#include "tools/kssub/json_tsv.h"
#include "tools/kssub/subtitle_file.h"

namespace kssub {

struct PictureListRequest {
  const FileRequest& file;
  std::optional<int> stream;  ///< The number of a language in the file.
  Output output = Output::kTable;
  bool withNotes = false;
};

/// Prints when, where and how large each picture of a language is, and the other languages. Throws
/// std::runtime_error.
void listPictures(const PictureListRequest& request);

}  // namespace kssub
