#include "Reports.h"

#include "TextServices.h"

#include <cstdio>
#include <utility>

namespace quill::inline v0 {

namespace {

void write(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

struct Sinks {
  LogSink log;
  AssertionHandler assertion;
  LightAssertionSink light;
};

// Never destroyed: objects that die at exit may still report.
Sinks& sinks() {
  static Sinks& all = *new Sinks;
  return all;
}

}  // namespace

InternalInconsistencyFailure::InternalInconsistencyFailure(const AssertionFailure& failure)
    : std::logic_error(std::string(failure.description)),
      method_(failure.method),
      file_(failure.file),
      line_(failure.line) {
  if (failure.object) object_ = failure.object->classNameAndAddress();
}

InternalInconsistencyFailure::~InternalInconsistencyFailure() = default;

LogSink setLogSink(LogSink sink) { return std::exchange(sinks().log, std::move(sink)); }

AssertionHandler setAssertionHandler(AssertionHandler handler) {
  return std::exchange(sinks().assertion, std::move(handler));
}

LightAssertionSink setLightAssertionSink(LightAssertionSink sink) {
  return std::exchange(sinks().light, std::move(sink));
}

void logLine(std::string_view line) {
  if (const LogSink sink = sinks().log) return sink(line);  // a copy: a sink may replace itself
  write(stderr, std::string(line) + '\n');
}

void assertionFailed(const AssertionFailure& failure) {
  if (const AssertionHandler handler = sinks().assertion) return handler(failure);
  throw InternalInconsistencyFailure(failure);
}

void lightAssertionFailed(std::string_view condition, std::string_view file, int line) {
  std::string text = "MyAssertMessage: ";
  text += condition;
  text += ",  file: ";  // the second argument is an empty string
  text += file;
  text += ", line: ";
  appendInteger(text, line);
  text += ", value: 0\n";
  if (const LightAssertionSink sink = sinks().light) return sink(text);
  write(stdout, text);
}

}  // namespace quill::inline v0
