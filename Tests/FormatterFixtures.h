// What the tests of formatters and deputies show, type into and step: values written as labels, and a host's own value.
#pragma once

#include "../Framework/QKTimecode.h"
#include "../Framework/QKTimecodeFormatter.h"
#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"
#include "TextTable.h"

#include <random>

namespace quill {

// The value that reads "-0:01:00:10.40": a minute and ten and a half frames before zero. The subframes may be left out.
inline Ref<QKVideoTimecode> timecodeAt(QKSMPTETimecodeMode mode, const std::string& label) {
  return std::make_shared<QKVideoTimecode>(static_cast<const QKVideoTimecode&>(valueAt(mode, label)));
}

// A value of a host: it conforms by protocols alone, and keeps a video timecode inside.
class HostTimecode : public Object, public QKBasicTimecode {
 public:
  explicit HostTimecode(const QKVideoTimecode& timecode, const Protocol* basic = &QKBasicTimecode::protocol,
                        bool canCopy = true)
      : value(timecode), basic_(basic), canCopy_(canCopy) {}

  Ref<Object> copy() const override { return std::make_shared<HostTimecode>(*this); }
  void* asProtocol(const Protocol& wanted) override {
    if (&wanted == basic_) return static_cast<QKBasicTimecode*>(this);
    if (&wanted == &QKSMPTETimecode::protocol) return value.asProtocol(wanted);
    const bool isServed = &wanted == &Coding::protocol || (canCopy_ && &wanted == &Copying::protocol);
    return isServed ? static_cast<Object*>(this) : nullptr;
  }
  bool isNegative() const override { return value.isNegative(); }
  void setIsNegative(bool isNegative) override { value.setIsNegative(isNegative); }
  void clearTimecode() override { value.clearTimecode(); }
  int compare(const Object& other) const override {
    const auto* host = dynamic_cast<const HostTimecode*>(&other);
    return value.compare(host ? host->value : other);
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

// Input of a fixed seed: what comes next is the same in every run.
class Random {
 public:
  std::uint64_t below(std::uint64_t n) { return bits_() % n; }
  bool flip() { return below(2) != 0; }
  template <class T, std::size_t n>
  T of(const T (&choices)[n]) {
    return choices[below(n)];
  }
  // Of any magnitude, either sign, the ends included.
  std::int64_t integer() {
    if (below(8) == 0) return of<std::int64_t>({kInt64Lowest, kInt64Lowest + 1, -1, 0, 1, kInt64Highest});
    const auto magnitude = static_cast<std::int64_t>(bits_() >> (1 + below(63)));
    return flip() ? magnitude : -magnitude;
  }

  std::string text() {
    static const auto pieces = partsOf(
        "0|1|7|59|99|00:00:10:12|9223372036854775807|9223372036854775808|18446744073709551616|"
        "99999999999999999999999999999999999999|:|;|.|,|/|::|+|-|--| |\t|\u2003|\u2014|"
        "\u2014:\u2014:\u2014:\u2014|x|e9|inf|nan|\xFF|\xE2\x80|\uFF11|\U0001F3AC|%s|\\",
        "|");
    std::string text;
    for (std::uint64_t n = below(8); n > 0; --n)
      text += below(12) == 0 ? std::string(1, static_cast<char>(below(256))) : pieces[below(pieces.size())];
    return text;
  }

  // Of a fixed or custom mode, in ticks or seconds.
  Ref<QKVideoTimecode> value() {
    const auto mode = static_cast<QKSMPTETimecodeMode>(below(kInvalid));
    auto value = std::make_shared<QKVideoTimecode>(kMediaTimeZero, mode);
    if (mode == kCustom && flip())
      value->setCustomVideoFrameRate(of<double>({1, 1.5, 23.976, 29.5, 48, 1000, 1e6, 0.1, kInfinity}));
    if (below(4) == 0) {
      value->setTimeRate(QKTimecodeUseSeconds);
      value->setSeconds(of<double>({0, -0.0, 0.04, 10.5, -10.5, 86400.0, 359999.99, 1e9, -1e15, 1e300}));
    } else {
      value->setTimeValue(
          {flip() ? integer() : integer() % 1000000000000, of<std::int32_t>({1, 24, 1000, 2400000, 2147483647})});
    }
    const bool isNegative = value->isNegative();
    value->setSMPTESubframes(value->SMPTESubframes());  // finer fractions do not survive every step
    value->setIsNegative(isNegative);
    return value;
  }

 private:
  std::mt19937_64 bits_{20240229};
};

// That one assertion failed, at a line of a file (0: any), and nothing else was reported; then forgets it.
inline void expectAssertion(ReportRecorder& reports, std::string_view file, int line, std::string_view description) {
  ASSERT_EQ(reports.assertions.size(), 1u) << description;
  const RecordedAssertion& one = reports.assertions[0];
  EXPECT_TRUE(one.file == file && (line == 0 || one.line == line) && one.description == description) << reports;
  reports.assertions.clear();
  EXPECT_TRUE(reports.isQuiet()) << reports;
}

}  // namespace quill
