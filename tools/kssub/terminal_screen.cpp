// The whole terminal, used for a while.
#include "tools/kssub/terminal_screen.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <string_view>
#include <utility>

namespace kssub {
namespace {

constexpr int kEnding[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
constexpr int kOthers[] = {SIGTSTP, SIGCONT, SIGWINCH};

volatile std::sig_atomic_t endingSignalSeen = 0;
volatile std::sig_atomic_t stopSeen = 0;
volatile std::sig_atomic_t changeSeen = 0;  // of the terminal's size, or by others while stopped

void rememberEnd(int signal) { endingSignalSeen = signal; }
void rememberStop(int /*signal*/) { stopSeen = 1; }
void rememberChange(int /*signal*/) { changeSeen = 1; }

void setHandler(int signal, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigaction(signal, &action, nullptr);
}

sigset_t handledSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : kEnding) sigaddset(&set, signal);
  for (const int signal : kOthers) sigaddset(&set, signal);
  return set;
}

Screen::Event eventOf(std::string_view key) {
  if (key == " ") return Screen::Event::kPause;
  if (key == "q" || key == "Q") return Screen::Event::kEnd;
  if (key == "\033[D" || key == "\033OD") return Screen::Event::kBack;
  if (key == "\033[C" || key == "\033OC") return Screen::Event::kForward;
  return Screen::Event::kNone;
}

/// How many of the bytes that a terminal sent are the first key: a control sequence ends with its
/// first letter or '~'.
std::size_t lengthOfKey(std::string_view typed) {
  if (typed.size() < 2 || typed[0] != '\033' || (typed[1] != '[' && typed[1] != 'O')) return 1;
  std::size_t length = 2;
  while (length < typed.size() && static_cast<unsigned char>(typed[length]) < 0x40) ++length;
  return std::min(length + 1, typed.size());
}

}  // namespace

// The signals are blocked except while wait() waits, so that none is missed between a check of the
// flags and the wait.
Screen::Screen() : keys_(open("/dev/tty", O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
  hasKeys_ = keys_ >= 0 && tcgetattr(keys_, &before_) == 0;
  for (volatile std::sig_atomic_t* seen : {&endingSignalSeen, &stopSeen, &changeSeen}) *seen = 0;
  const sigset_t handled = handledSignals();
  sigprocmask(SIG_BLOCK, &handled, &signalsBefore_);
  for (const int signal : kEnding) setHandler(signal, rememberEnd);
  setHandler(SIGTSTP, rememberStop);
  for (const int signal : {SIGCONT, SIGWINCH}) setHandler(signal, rememberChange);
  enter();
}

Screen::~Screen() {
  leave();
  for (const int signal : kEnding) setHandler(signal, SIG_DFL);
  for (const int signal : kOthers) setHandler(signal, SIG_DFL);
  sigprocmask(SIG_SETMASK, &signalsBefore_, nullptr);
  if (keys_ >= 0) close(keys_);
}

TerminalSize Screen::size() const { return terminalSize(STDOUT_FILENO); }

void Screen::enter() {
  if (hasKeys_) {
    termios keywise = before_;
    keywise.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    tcsetattr(keys_, TCSADRAIN, &keywise);
  }
  std::cout << "\033[?1049h\033[?25l\033[2J" << std::flush;
  shown_.clear();
}

void Screen::leave() const {
  std::cout << "\033[?25h\033[?1049l" << std::flush;
  if (hasKeys_) tcsetattr(keys_, TCSADRAIN, &before_);
}

void Screen::show(const std::vector<std::string>& rows) {
  std::string changes;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i < shown_.size() ? rows[i] == shown_[i] : rows[i].empty()) continue;
    changes += "\033[" + std::to_string(i + 1) + ";1H\033[2K" + rows[i];
  }
  if (!changes.empty()) std::cout << changes << std::flush;
  shown_ = rows;
}

Screen::Event Screen::wait(std::chrono::microseconds time) {
  if (!typed_.empty()) return nextKey();
  pollfd keys{keys_, POLLIN, 0};
  const timespec timeout{0, static_cast<long>(time.count() * 1000)};
  const int ready = ppoll(&keys, 1, &timeout, &signalsBefore_);
  if (ready < 0) return eventOfSignals();
  std::array<char, 64> bytes;
  const ssize_t count = ready > 0 ? read(keys_, bytes.data(), bytes.size()) : 0;
  if (ready > 0 && count <= 0) {  // the terminal is gone
    hasKeys_ = false;
    close(std::exchange(keys_, -1));
  }
  if (count > 0) typed_.assign(bytes.data(), static_cast<std::size_t>(count));
  return nextKey();
}

Screen::Event Screen::eventOfSignals() {
  if (endingSignalSeen != 0) return Event::kEnd;
  if (std::exchange(stopSeen, 0) != 0) return Event::kSuspend;
  if (std::exchange(changeSeen, 0) != 0) enter();
  return Event::kNone;
}

Screen::Event Screen::nextKey() {
  const std::size_t length = lengthOfKey(typed_);
  const Event event = eventOf(typed_.substr(0, length));
  typed_.erase(0, length);
  return event;
}

void Screen::suspend() {
  leave();
  setHandler(SIGTSTP, SIG_DFL);
  std::raise(SIGTSTP);
  const sigset_t handled = handledSignals();
  sigprocmask(SIG_SETMASK, &signalsBefore_, nullptr);  // the process stops here
  sigprocmask(SIG_BLOCK, &handled, nullptr);
  setHandler(SIGTSTP, rememberStop);
  enter();
}

int Screen::endingSignal() const { return endingSignalSeen; }

}  // namespace kssub
