// The file that belongs to another one.
#pragma once

#include <string>
#include <string_view>

namespace kssubtitle::importing {

/// The path of the file beside `path` that has the same name but for its extension, which is
/// `extension` (such as ".sub") in any case. Where there are several, that in the case given comes
/// first, then the first by its bytes. If there is none, the path that it would have.
std::string siblingOf(const std::string& path, std::string_view extension);

}  // namespace kssubtitle::importing
