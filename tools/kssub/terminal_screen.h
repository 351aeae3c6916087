// The whole terminal, used for a while.
#pragma once

#include <termios.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "tools/kssub/terminal_columns.h"

namespace kssub {

/// Uses the alternate screen of the terminal that is standard output, and the keys of the
/// controlling terminal, which is the same one even if standard input is a file. The terminal is
/// restored however the process ends or stops, except by SIGKILL or SIGSTOP. Only one object may
/// exist at a time.
class Screen {
 public:
  enum class Event { kNone, kPause, kBack, kForward, kSuspend, kEnd };

  Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  ~Screen();

  TerminalSize size() const;
  /// Shows `rows`, which fit the terminal, from the top. Writes only those that have changed.
  void show(const std::vector<std::string>& rows);
  /// Waits for a key or a signal, but at most `time`.
  Event wait(std::chrono::microseconds time);
  /// Restores the terminal and stops the process until it is continued.
  void suspend();
  /// The signal that caused Event::kEnd, to be raised after destruction; 0 if it was a key.
  int endingSignal() const;

 private:
  void enter();
  void leave() const;
  Event eventOfSignals();
  Event nextKey();

  int keys_;                // a file descriptor; -1 if there is none
  termios before_{};        // the state to restore
  bool hasKeys_ = false;    // before_ is valid
  sigset_t signalsBefore_;  // the mask to restore
  std::string typed_;       // keys that are not yet processed
  std::vector<std::string> shown_;
};

}  // namespace kssub
