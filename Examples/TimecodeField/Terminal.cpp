// The signal handlers touch nothing but the state below, through functions that POSIX allows in them. They give the
// terminal back; taking it over is left to the program itself, because that has to wait while the process is in the
// background, and a handler that waits would keep the signals waiting that are to end it. A handler may come between any
// two steps of either, so both can be done twice.
#include "Terminal.h"

#if (defined(__unix__) || defined(__APPLE__)) && !defined(__EMSCRIPTEN__)

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <system_error>

namespace field {

namespace {

constexpr std::string_view kEnter = "\x1b[?1049h\x1b[?25l\x1b[2J";
constexpr std::string_view kLeave = "\x1b[0m\x1b[?25h\x1b[?1049l";

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGABRT, SIGTSTP, SIGCONT, SIGWINCH};
constexpr std::size_t kSignalCount = std::size(kSignals);

termios attributesFound;
termios attributesWanted;
struct sigaction actionsFound[kSignalCount];
int wakeUp[2] = {-1, -1};                  // a pipe: a byte in it says that the screen is to be drawn again
volatile std::sig_atomic_t isEntered = 0;  // the terminal is, or is just being, taken over
volatile std::sig_atomic_t mustEnter = 0;  // it is to be taken over again

// Writes all of it unless the terminal is gone.
bool writeAll(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (written < 0 && errno == EAGAIN) {
      pollfd output = {STDOUT_FILENO, POLLOUT, 0};
      poll(&output, 1, -1);
    } else if (written < 0 && errno != EINTR) {
      return false;
    }
  }
  return true;
}

void setAttributes(const termios& attributes) {
  while (tcsetattr(STDIN_FILENO, TCSANOW, &attributes) != 0 && errno == EINTR) {
  }
}

// In the background the terminal is somebody else's. One that knows no groups of processes is ours.
bool isInForeground() {
  const pid_t group = tcgetpgrp(STDIN_FILENO);
  return group < 0 || group == getpgrp();
}

void enter() {
  isEntered = 1;
  setAttributes(attributesWanted);  // stops a background process until it is in front again
  writeAll(kEnter);
}

void leave() {
  if (isEntered && isInForeground()) {
    writeAll(kLeave);
    setAttributes(attributesFound);
  }
  isEntered = 0;
}

// All other signals wait while a handler runs.
struct sigaction actionWith(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigfillset(&action.sa_mask);
  return action;
}

void wake() {
  const ssize_t ignored = write(wakeUp[1], "", 1);
  static_cast<void>(ignored);
}

extern "C" {

static void endOnSignal(int signal) {
  leave();
  const struct sigaction action = actionWith(SIG_DFL);
  sigaction(signal, &action, nullptr);
  raise(signal);  // ends the process when the handler returns
}

static void stopOnSignal(int signal) {
  const int error = errno;
  leave();
  const struct sigaction action = actionWith(SIG_DFL);
  struct sigaction handling;
  sigaction(signal, &action, &handling);
  raise(signal);
  sigset_t only, before;
  sigemptyset(&only);
  sigaddset(&only, signal);
  sigprocmask(SIG_UNBLOCK, &only, &before);  // stops here, until the process goes on
  sigprocmask(SIG_SETMASK, &before, nullptr);
  sigaction(signal, &handling, nullptr);
  mustEnter = 1;
  wake();
  errno = error;
}

static void drawAgainOnSignal(int signal) {
  const int error = errno;
  if (signal == SIGCONT) mustEnter = 1;  // the shell may have changed the terminal
  wake();
  errno = error;
}

}  // extern "C"

void (*handlerFor(int signal))(int) {
  if (signal == SIGTSTP) return stopOnSignal;
  if (signal == SIGCONT || signal == SIGWINCH) return drawAgainOnSignal;
  return endOnSignal;
}

void closeWakeUp() {
  close(wakeUp[0]);
  close(wakeUp[1]);
}

}  // namespace

bool Terminal::isAvailable() {
  const char* const type = std::getenv("TERM");
  return isatty(STDIN_FILENO) && isatty(STDOUT_FILENO) && type && *type != '\0' && std::strcmp(type, "dumb") != 0;
}

Terminal::Terminal() {
  if (tcgetattr(STDIN_FILENO, &attributesFound) != 0 || pipe(wakeUp) != 0) {
    throw std::system_error(errno, std::generic_category(), "terminal");
  }
  for (const int end : wakeUp) {
    fcntl(end, F_SETFL, O_NONBLOCK);
    fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  attributesWanted = attributesFound;
  // The keys that send signals keep doing so.
  attributesWanted.c_iflag &= ~static_cast<tcflag_t>(BRKINT | ICRNL | IGNCR | INLCR | INPCK | ISTRIP | IXON);
  attributesWanted.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | IEXTEN);
  attributesWanted.c_cc[VMIN] = 1;
  attributesWanted.c_cc[VTIME] = 0;
  for (std::size_t i = 0; i < kSignalCount; ++i) {
    const struct sigaction action = actionWith(handlerFor(kSignals[i]));
    sigaction(kSignals[i], &action, &actionsFound[i]);
    // What the one who started the process had it ignore stays ignored.
    if (actionsFound[i].sa_handler == SIG_IGN) sigaction(kSignals[i], &actionsFound[i], nullptr);
  }
  enter();
}

Terminal::~Terminal() {
  leave();
  for (std::size_t i = 0; i < kSignalCount; ++i) sigaction(kSignals[i], &actionsFound[i], nullptr);
  closeWakeUp();
}

TerminalSize Terminal::size() const {
  winsize window = {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) != 0 || window.ws_col == 0 || window.ws_row == 0) {
    return {};
  }
  return {window.ws_col, window.ws_row};
}

// A stop waits meanwhile: what is drawn must not come out on the shell's screen.
void Terminal::show(std::string_view bytes) {
  sigset_t stop, before;
  sigemptyset(&stop);
  sigaddset(&stop, SIGTSTP);
  sigprocmask(SIG_BLOCK, &stop, &before);
  if (mustEnter) {
    mustEnter = 0;
    enter();
  }
  writeAll(bytes);
  sigprocmask(SIG_SETMASK, &before, nullptr);
}

Terminal::Event Terminal::wait(std::string* bytes, int milliseconds) {
  pollfd sources[] = {{STDIN_FILENO, POLLIN, 0}, {wakeUp[0], POLLIN, 0}};
  const int ready = poll(sources, std::size(sources), milliseconds);
  if (ready == 0) return Event::Timeout;
  if (ready < 0) return errno == EINTR ? Event::Redraw : Event::Closed;
  char buffer[4096];
  if (sources[1].revents != 0) {
    while (read(wakeUp[0], buffer, sizeof buffer) > 0) {
    }
    return Event::Redraw;
  }
  const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return Event::Redraw;
  if (count <= 0) return Event::Closed;
  bytes->append(buffer, static_cast<std::size_t>(count));
  return Event::Input;
}

}  // namespace field

#else

namespace field {

bool Terminal::isAvailable() { return false; }

Terminal::Terminal() = default;
Terminal::~Terminal() = default;

TerminalSize Terminal::size() const { return {}; }
void Terminal::show(std::string_view) {}
Terminal::Event Terminal::wait(std::string*, int) { return Event::Closed; }

}  // namespace field

#endif
