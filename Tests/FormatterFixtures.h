// What the tests of formatters and deputies show, type into and step: values written as labels, and a host's own value.
#pragma once

#include "../Framework/QKTimecode.h"
#include "../Framework/QKTimecodeFormatter.h"
#include "../Platform/KeyedCoder.h"
#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace quill {

// The value that reads "-0:01:00:10.40": a minute and ten and a half frames before zero. The subframes may be left out.
inline Ref<QKVideoTimecode> timecodeAt(QKSMPTETimecodeMode mode, std::string_view label) {
  SMPTEFieldSet f;
  std::int64_t* const fields[] = {&f.hours, &f.minutes, &f.seconds, &f.frames, &f.subframes};
  std::size_t field = 0;
  for (const char c : label) {
    if (c >= '0' && c <= '9') {
      *fields[field] = *fields[field] * 10 + (c - '0');
    } else if (c != '-') {
      ++field;
    }
  }
  auto value = std::make_shared<QKVideoTimecode>(kMediaTimeZero, mode);
  value->setSMPTEHours(f.hours);
  value->setSMPTEMinutes(f.minutes);
  value->setSMPTESeconds(f.seconds);
  value->setSMPTEFrames(f.frames);
  value->setSMPTESubframes(f.subframes);
  value->setIsNegative(label.starts_with('-'));
  return value;
}

// A value of a host: it conforms by protocols alone, and keeps a video timecode inside.
class HostTimecode : public Object, public QKBasicTimecode, public QKSMPTETimecode {
 public:
  explicit HostTimecode(const QKVideoTimecode& timecode, const Protocol* basic = &QKBasicTimecode::protocol,
                        bool canCopy = true)
      : value(timecode), basic_(basic), canCopy_(canCopy) {}

  Ref<Object> copy() const override { return std::make_shared<HostTimecode>(*this); }
  void* asProtocol(const Protocol& protocol) override {
    if (&protocol == basic_) return static_cast<QKBasicTimecode*>(this);
    if (&protocol == &QKSMPTETimecode::protocol) return static_cast<QKSMPTETimecode*>(this);
    const bool isServed = &protocol == &Coding::protocol || (canCopy_ && &protocol == &Copying::protocol);
    return isServed ? static_cast<Object*>(this) : nullptr;
  }

  bool isNegative() const override { return value.isNegative(); }
  void setIsNegative(bool isNegative) override { value.setIsNegative(isNegative); }
  void clearTimecode() override { value.clearTimecode(); }
  int compare(const Object& other) const override {
    const auto* host = dynamic_cast<const HostTimecode*>(&other);
    return value.compare(host ? host->value : other);
  }
  bool isDropFrame() const override { return value.isDropFrame(); }
  void getSMPTEHours(std::int64_t* hours, std::int64_t* minutes, std::int64_t* seconds, std::int64_t* frames,
                     std::int64_t* subframes, std::int64_t* quarterFrames) override {
    value.getSMPTEHours(hours, minutes, seconds, frames, subframes, quarterFrames);
  }
  void setSMPTEHours(std::int64_t n) override { value.setSMPTEHours(n); }
  void setSMPTEMinutes(std::int64_t n) override { value.setSMPTEMinutes(n); }
  void setSMPTESeconds(std::int64_t n) override { value.setSMPTESeconds(n); }
  void setSMPTEFrames(std::int64_t n) override { value.setSMPTEFrames(n); }
  void setSMPTESubframes(std::int64_t n) override { value.setSMPTESubframes(n); }
  void setSMPTEQuarterFrames(std::int64_t n) override { value.setSMPTEQuarterFrames(n); }
  void addSMPTEHours(std::int64_t h, std::int64_t m, std::int64_t s, std::int64_t f, std::int64_t subframes,
                     std::int64_t quarterFrames) override {
    value.addSMPTEHours(h, m, s, f, subframes, quarterFrames);
  }
  void subtractSMPTEHours(std::int64_t h, std::int64_t m, std::int64_t s, std::int64_t f, std::int64_t subframes,
                          std::int64_t quarterFrames) override {
    value.subtractSMPTEHours(h, m, s, f, subframes, quarterFrames);
  }

  QKVideoTimecode value;

 private:
  const Protocol* basic_;  // the descriptor that it answers, or null
  bool canCopy_;
};

// The label of a value or of a host's, subframes of 0 left out; "none" for null, "?" for anything else.
inline std::string labelOf(const Ref<Object>& object) {
  if (!object) return "none";
  auto* host = dynamic_cast<HostTimecode*>(object.get());
  auto* value = host ? &host->value : classCast<QKVideoTimecode>(object.get());
  if (!value) return "?";
  const std::string label = labelOf(*value);
  return label.ends_with(".00") ? label.substr(0, label.size() - 3) : label;
}

// That one assertion failed, at a line of a file (0: any), and nothing else was reported; then forgets it.
inline void expectAssertion(ReportRecorder& reports, std::string_view file, int line, std::string_view description) {
  ASSERT_EQ(reports.assertions.size(), 1u) << description;
  EXPECT_EQ(reports.assertions[0].file, file);
  EXPECT_EQ(reports.assertions[0].line, line ? line : reports.assertions[0].line);
  EXPECT_EQ(reports.assertions[0].description, description);
  reports.assertions.clear();
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

}  // namespace quill
