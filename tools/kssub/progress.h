// A progress bar on a terminal.
#pragma once

#include <cstddef>

namespace kssub {

/// Tells on standard error how much is done, in one line that is gone in the end; nothing if that
/// is no terminal or there is but one thing to do.
class Progress {
 public:
  explicit Progress(std::size_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { hide(); }

  void show(std::size_t done);
  /// Until it is shown again, so that other lines can be printed.
  void hide();

 private:
  std::size_t total_;
  bool isOn_;
  bool isShown_ = false;
};

}  // namespace kssub
