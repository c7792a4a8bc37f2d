// Captures what the library reports while it lives; the sinks of before come back when it dies.
//
// Assertions are recorded either way: Thrown then raises as the default handler does, Returned goes on with the
// fallback. What a test leaves unread counts as nothing: ask isQuiet() where no report may come.
#pragma once

#include "../Platform/Reports.h"

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace quill {

struct RecordedAssertion {
  std::string method, file, description;
  const Object* object;  // may be dead by the time it is read
  int line;
};

class ReportRecorder {
 public:
  enum Assertions { Thrown, Returned };

  explicit ReportRecorder(Assertions kind = Thrown)
      : log_(setLogSink([this](std::string_view line) { logs.emplace_back(line); })),
        assertion_(setAssertionHandler([this, kind](const AssertionFailure& failure) {
          assertions.push_back({std::string(failure.method), std::string(failure.file),
                                std::string(failure.description), failure.object, failure.line});
          if (kind == Thrown) throw InternalInconsistencyFailure(failure);
        })),
        light_(setLightAssertionSink([this](std::string_view line) { lights.emplace_back(line); })) {}
  ReportRecorder(const ReportRecorder&) = delete;
  ReportRecorder& operator=(const ReportRecorder&) = delete;
  ~ReportRecorder() { setLogSink(log_), setAssertionHandler(assertion_), setLightAssertionSink(light_); }

  bool isQuiet() const { return logs.empty() && assertions.empty() && lights.empty(); }

  void clear() { logs.clear(), assertions.clear(), lights.clear(); }

  // Every report in a line of its own, for a failed test's message.
  friend std::ostream& operator<<(std::ostream& stream, const ReportRecorder& reports) {
    for (const auto& log : reports.logs) stream << "log: " << log << '\n';
    for (const auto& a : reports.assertions)
      stream << "assertion: " << a.method << ' ' << a.file << ':' << a.line << ' ' << a.description << '\n';
    for (const auto& light : reports.lights) stream << "light: " << light;
    return stream;
  }

  std::vector<std::string> logs;
  std::vector<RecordedAssertion> assertions;
  std::vector<std::string> lights;  // each with its newline

 private:
  LogSink log_;
  AssertionHandler assertion_;
  LightAssertionSink light_;
};

}  // namespace quill
