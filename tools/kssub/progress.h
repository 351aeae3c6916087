// A progress bar on a terminal.
#pragma once

#include <cstddef>

namespace kssub {

/// Shows progress on standard error, in a line that disappears at the end. Shows nothing if that is
/// not a terminal or there is only one thing to do.
class Progress {
 public:
  explicit Progress(std::size_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { hide(); }

  void show(std::size_t done);
  /// Makes room for other output until show() is called again.
  void hide();

 private:
  std::size_t total_;
  bool isOn_;
  bool isShown_ = false;
};

}  // namespace kssub
