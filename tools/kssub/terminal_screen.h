// The whole terminal, taken over for a while.
#pragma once

#include <termios.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "tools/kssub/terminal_columns.h"

namespace kssub {

/// The terminal that is standard output: its alternate screen, and the keys of the terminal that
/// controls the process, which is the same one, also while standard input is a file. However the
/// process ends or stops while this exists, by any signal but SIGKILL and SIGSTOP, the terminal is
/// as it was. One object at a time.
class Screen {
 public:
  enum class Event { kNone, kPause, kBack, kForward, kSuspend, kEnd };

  Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  ~Screen();

  TerminalSize size() const;
  /// Shows `rows`, at most as many as there are and none wider than the terminal, from the top on.
  /// Writes only those that are not there yet.
  void show(const std::vector<std::string>& rows);
  /// Waits for a key or a signal, at most for `time`.
  Event wait(std::chrono::microseconds time);
  /// Gives the terminal back and stops the process until it is told to go on.
  void suspend();
  /// The signal behind an Event::kEnd, to be raised when this is destroyed; 0 if it was a key.
  int endingSignal() const;

 private:
  void enter();
  void leave() const;
  Event eventOfSignals();
  Event nextKey();

  int keys_;                // a file descriptor; -1: there are none
  termios before_{};        // how the keys' terminal was
  bool hasKeys_ = false;    // before_ is valid
  sigset_t signalsBefore_;  // those that were blocked
  std::string typed_;       // keys that nobody asked for yet
  std::vector<std::string> shown_;
};

}  // namespace kssub
