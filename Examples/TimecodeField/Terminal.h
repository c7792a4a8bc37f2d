// Terminal: the screen and keyboard that the program was started in. All that depends on the operating system is here.
//
// - While a Terminal lives, keys come one by one and unechoed, the other screen is shown and the cursor is hidden.
// - At its end, and before a signal ends or stops the process, all that is taken back; after a stop it is put on again.
// - At most one lives at a time, on standard input and output.
#pragma once

#include <string>
#include <string_view>

namespace field {

struct TerminalSize {
  int columns = 80;
  int rows = 24;
};

class Terminal {
 public:
  // Whether standard input and output are a terminal that can place its cursor. Never on a system without POSIX.
  static bool isAvailable();

  // Throws std::system_error.
  Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal();

  TerminalSize size() const;

  void show(std::string_view bytes);

  enum class Event { Input, Timeout, Redraw, Closed };

  // Waits for keys and appends their bytes. A time below 0 is for ever. Redraw comes after the window's size changed and
  // when the process goes on after a stop.
  Event wait(std::string* bytes, int milliseconds);
};

}  // namespace field
