// The program in a terminal: what it shows for keys, and that it leaves the terminal as it found it. The test plays the
// terminal's side of a pseudo-terminal.
#if defined(__unix__) || defined(__APPLE__)

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

namespace {

const std::string kEnter = "\x1b[?1049h\x1b[?25l", kLeave = "\x1b[?25h\x1b[?1049l";

// Without "ESC [ ... letter".
std::string plain(const std::string& bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] != '\x1b') {
      text += bytes[i];
    } else {
      for (++i; i + 1 < bytes.size() && (bytes[i] < '@' || bytes[i] == '['); ++i) {
      }
    }
  }
  return text;
}

class Session {
 public:
  Session() {
    terminal_ = posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal_ < 0 || grantpt(terminal_) != 0 || unlockpt(terminal_) != 0) return;
    const std::string name = ptsname(terminal_);
    ours_ = open(name.c_str(), O_RDWR | O_NOCTTY);
    resize(80, 24);
    // Attributes that nobody would put there by chance.
    tcgetattr(ours_, &found_);
    found_.c_lflag &= ~static_cast<tcflag_t>(ECHOE);
    found_.c_iflag |= ISTRIP;
    found_.c_cc[VERASE] = 'E' - '@';
    found_.c_cc[VMIN] = 3;
    tcsetattr(ours_, TCSANOW, &found_);
    tcgetattr(ours_, &found_);

    process_ = fork();
    if (process_ != 0) return;
    setsid();
    const int theirs = open(name.c_str(), O_RDWR);
#ifdef TIOCSCTTY
    ioctl(theirs, TIOCSCTTY, 0);
#endif
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(theirs, standard);
    close(theirs);
    close(ours_);
    close(terminal_);
    setenv("TERM", "xterm", 1);
    execl(QUILL_EXAMPLE_PROGRAM, QUILL_EXAMPLE_PROGRAM, "--value=1:02:03:04", ("--save=" + file_).c_str(), nullptr);
    _exit(127);
  }
  ~Session() {
    if (process_ > 0) kill(process_, SIGKILL), waitpid(process_, nullptr, 0);
    if (ours_ >= 0) close(ours_);
    if (terminal_ >= 0) close(terminal_);
    std::filesystem::remove(file_);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  pid_t process() const { return process_; }
  const std::string& output() const { return output_; }
  bool hasSaved() const { return std::filesystem::exists(file_); }

  void resize(unsigned short columns, unsigned short rows) const {
    winsize size = {};
    size.ws_col = columns;
    size.ws_row = rows;
    ioctl(terminal_, TIOCSWINSZ, &size);
  }

  // Forgets what came before, and sends keys.
  void send(const std::string& keys) {
    output_.clear();
    ASSERT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  // Waits until the program has shown a text.
  bool shows(const std::string& text) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (plain(output_).find(text) == std::string::npos) {
      if (std::chrono::steady_clock::now() > end || !readMore()) return false;
    }
    return true;
  }

  // Waits for the end of the process, which is killed when it does not come, and gives its status.
  int end() {
    int status = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (waitpid(process_, &status, WNOHANG) == 0) {
      if (std::chrono::steady_clock::now() > end) kill(process_, SIGKILL);
      readMore();
    }
    process_ = -1;
    while (readMore()) {
    }
    return status;
  }

  bool attributesAreAsFound() const {
    termios now;
    return tcgetattr(ours_, &now) == 0 && now.c_iflag == found_.c_iflag && now.c_oflag == found_.c_oflag &&
           now.c_cflag == found_.c_cflag && now.c_lflag == found_.c_lflag &&
           std::memcmp(now.c_cc, found_.c_cc, sizeof now.c_cc) == 0;
  }

  void hangUp() {
    close(ours_);
    close(terminal_);
    ours_ = terminal_ = -1;
  }

 private:
  // False when nothing came for a while.
  bool readMore() {
    pollfd source = {terminal_, POLLIN, 0};
    char buffer[4096];
    if (poll(&source, 1, process_ > 0 ? 20 : 0) <= 0) return process_ > 0;
    const ssize_t count = read(terminal_, buffer, sizeof buffer);
    if (count > 0) output_.append(buffer, static_cast<std::size_t>(count));
    return count > 0;
  }

  int terminal_ = -1;
  int ours_ = -1;  // a hold on the other side
  termios found_ = {};
  pid_t process_ = -1;
  std::string output_;
  const std::string file_ = testing::TempDir() + "TimecodeFieldTerminal-" + std::to_string(getpid());
};

TEST(TimecodeFieldTerminal, ShowsWhatKeysDo) {
  Session session;
  ASSERT_TRUE(session.shows("01:02:03;04")) << session.output();
  EXPECT_EQ(session.output().find(kEnter), 0u);
  EXPECT_FALSE(session.attributesAreAsFound());

  session.send("\x1b[D59");
  EXPECT_TRUE(session.shows("01:02:59;04"));
  session.send("\x1b[A");
  EXPECT_TRUE(session.shows("01:03:00;04"));
  session.send("+1:00\r");
  EXPECT_TRUE(session.shows("01:03:01;04"));
  session.send("\rabc\r");
  EXPECT_TRUE(session.shows("error: Illegal characters."));
  session.send("\x1b");  // with nothing behind it
  EXPECT_TRUE(session.shows("^^ seconds"));
  session.send("\x1bOC\x1b[5~");
  EXPECT_TRUE(session.shows("01:03:01;14"));
  session.send("m");
  EXPECT_TRUE(session.shows("01:03:01:14"));
  session.send("w");
  EXPECT_TRUE(session.shows("saved in "));
  EXPECT_TRUE(session.hasSaved());

  session.send("");
  session.resize(9, 1);
  EXPECT_TRUE(session.shows("  01:03:0"));
  session.send("q");
  EXPECT_EQ(session.end(), 0);
}

TEST(TimecodeFieldTerminal, IsLeftAsFound) {
  const struct {
    const char* label;
    std::string keys;
    int signal;    // sent after the keys, or 0
    int endsWith;  // a signal, or 0
  } rows[] = {
      {"q", "q", 0, 0},
      {"end of input", "12\x04", 0, 0},
      {"interrupt key", "\x03", 0, SIGINT},
      {"terminated", "12", SIGTERM, SIGTERM},
      {"hung up", "\r+", SIGHUP, SIGHUP},
      {"interrupted", "", SIGINT, SIGINT},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    Session session;
    ASSERT_TRUE(session.shows("all keys, quit")) << session.output();
    session.send(row.keys);
    if (row.signal != 0) kill(session.process(), row.signal);
    const int status = session.end();
    if (row.endsWith == 0)
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    else
      EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == row.endsWith);
    EXPECT_TRUE(session.attributesAreAsFound());
    EXPECT_TRUE(session.output().ends_with(kLeave)) << session.output();
    EXPECT_EQ(session.hasSaved(), row.endsWith == 0);
  }
}

// A stop is not possible here, where nobody could make the process go on; it must then come back.
TEST(TimecodeFieldTerminal, ComesBackAfterAStop) {
  Session session;
  ASSERT_TRUE(session.shows("all keys, quit"));
  session.send("");
  kill(session.process(), SIGTSTP);
  EXPECT_TRUE(session.shows("01:02:03;04"));
  const auto leave = session.output().find(kLeave), enter = session.output().find(kEnter);
  EXPECT_LT(leave, enter);
  EXPECT_NE(enter, std::string::npos);
  EXPECT_FALSE(session.attributesAreAsFound());
  session.send("q");
  EXPECT_EQ(session.end(), 0);
  EXPECT_TRUE(session.attributesAreAsFound());
}

TEST(TimecodeFieldTerminal, EndsWithTheTerminal) {
  Session session;
  ASSERT_TRUE(session.shows("01:02:03;04"));
  session.hangUp();
  const int status = session.end();
  EXPECT_TRUE(WIFEXITED(status) || WTERMSIG(status) == SIGHUP);
}

}  // namespace

#endif
