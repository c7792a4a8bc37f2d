// Reports: the three ways in which the library says that something is wrong.
//
// - A log line: an operation could not act and went on with a fallback. Default: one line on standard error.
// - An assertion: a caller broke a contract. Default: throws InternalInconsistencyFailure; where a handler returns,
//   the operation goes on with the fallback that it documents.
// - A light assertion: an internal check did not hold; execution always continues. Default: one line on standard output.
//
// Each has one sink for the process. Setting a sink answers the one before; an empty sink brings the default back.
// The sinks are not synchronised: set them before other threads use the library.
#pragma once

#include "Object.h"

#include <functional>
#include <stdexcept>
#include <string_view>

namespace quill::inline v0 {

// Where and why an assertion failed.
struct AssertionFailure {
  std::string_view method;  // "-[QKVideoTimecode videoFrameRate]"
  const Object* object;     // null for a class operation, or an object that is not made yet
  std::string_view file;    // without extension
  int line;
  std::string_view description;
};

// What the default assertion handler throws: what() is the description.
class QUILL_EXPORT InternalInconsistencyFailure : public std::logic_error {
 public:
  explicit InternalInconsistencyFailure(const AssertionFailure& failure);
  ~InternalInconsistencyFailure() override;

  const std::string& method() const { return method_; }
  // "<QKVideoTimecode: 0x7f30c0>", empty where there is no object.
  const std::string& object() const { return object_; }
  const std::string& file() const { return file_; }
  int line() const { return line_; }

 private:
  std::string method_;
  std::string object_;
  std::string file_;
  int line_;
};

using LogSink = std::function<void(std::string_view line)>;
using AssertionHandler = std::function<void(const AssertionFailure&)>;
using LightAssertionSink = std::function<void(std::string_view line)>;

QUILL_EXPORT LogSink setLogSink(LogSink sink);
QUILL_EXPORT AssertionHandler setAssertionHandler(AssertionHandler handler);
// The line comes with its newline.
QUILL_EXPORT LightAssertionSink setLightAssertionSink(LightAssertionSink sink);

// Writes one line, given without a newline, to the log.
QUILL_EXPORT void logLine(std::string_view line);

// Hands a broken contract to the assertion handler. May return.
QUILL_EXPORT void assertionFailed(const AssertionFailure& failure);

// Prints "MyAssertMessage: %s, %s file: %s, line: %d, value: %ld\n" with the condition, an empty string, the file, the
// line and 0.
QUILL_EXPORT void lightAssertionFailed(std::string_view condition, std::string_view file, int line);

}  // namespace quill::inline v0
