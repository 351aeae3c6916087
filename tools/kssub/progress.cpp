// A progress bar on a terminal.
#include "tools/kssub/progress.h"

#include <unistd.h>

#include <iostream>
#include <string>

namespace kssub {

Progress::Progress(std::size_t total)
    : total_(total), isOn_(total > 1 && isatty(STDERR_FILENO) != 0) {}

void Progress::show(std::size_t done) {
  constexpr std::size_t kWidth = 40;
  if (!isOn_) return;
  const std::size_t filled = kWidth * done / total_;
  std::cerr << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, '.') << "] "
            << std::to_string(done) + " of " + std::to_string(total_) + " files" << std::flush;
  isShown_ = true;
}

void Progress::hide() {
  if (!isShown_) return;
  std::cerr << "\r\033[K" << std::flush;
  isShown_ = false;
}

}  // namespace kssub
