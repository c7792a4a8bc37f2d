// Rows of text about timecode values: operations by their names, what they answer, and what they report.
#pragma once

#include "OpenVideoTimecode.h"
#include "ReportRecorder.h"
#include "TextTable.h"

#include <algorithm>
#include <array>
#include <random>

namespace quill {

// ---- Arguments of operations: the words of a row, or, where there are none, any ----

inline Cells words;
inline std::mt19937_64 random(2);
inline bool isNonnegative = true;  // of any argument

inline std::int64_t n(std::size_t i = 0) {
  if (!words.empty()) return std::stoll(words.at(i));
  constexpr std::int64_t kEnds[] = {kInt64Highest, kInt64Highest - 2, kInt64Lowest, kInt64Lowest + 2};
  const auto n = random() % 3 ? static_cast<std::int64_t>(random() >> random() % 64) : kEnds[random() % 4];
  return isNonnegative && n < 0 ? -(n + 1) : n;
}
inline std::uint64_t u(std::size_t i = 0) {
  return words.empty() ? static_cast<std::uint64_t>(n()) : saturatingUInt64(words.at(i));
}
inline double x(std::size_t i = 0) {
  if (!words.empty()) return doubleOf(words.at(i));
  constexpr double kReals[] = {0, -0.0, 0.04, 0.5, 1.5, 48, 3600, 1e9, 1e15, 9.3e18, 1e300, 5e-324, kInfinity};
  const double x = kReals[random() % std::size(kReals)];
  return isNonnegative ? x : random() % 8 ? -x : kNaN;
}
// A double where there is a point in it.
inline Number number() {
  if (words.empty() ? random() % 2 == 0 : words[0].find('.') != words[0].npos) return x();
  return !words.empty() && words[0][0] != '-' && u() >= k2To63 ? Number(u()) : Number(n());
}

inline QKSMPTETimecodeMode modeNamed(const std::string& name) {
  return name == "unknown" ? kUnknown : timecodeModeNamed(name).value();
}

// ---- Operations ----

// "5/24", and "1.25 s" in the seconds mode.
template <class V>
requires std::is_base_of_v<QKVideoTimecode, V> std::string textOf(const V& v) {
  return v.useSeconds() ? Number(v.seconds()).description() + " s" : textOf(v.storedTime());
}

template <class V, class Run>
std::string answerOf(V& v, Run run) {
  using Answer = std::remove_cvref_t<decltype(run())>;
  if constexpr (std::is_void_v<Answer>) {
    run();
    return textOf(v);
  } else if constexpr (std::is_same_v<Answer, std::string>) {
    return run();
  } else if constexpr (std::is_same_v<Answer, MediaTime>) {
    return textOf(run());
  } else {
    return Number(+run()).description();
  }
}

template <class V>
struct Operation {
  std::string_view text;
  std::string (*run)(V& v);
  // What stands before the "(", but for "v." and "V::".
  std::string_view name() const {
    const std::string_view full = text.substr(0, text.find('('));
    return full.substr(full.find_last_of(".:") + 1);
  }
};
// Of the type V.
#define OP(...)                                                                  \
  Operation<V> {                                                                 \
#__VA_ARGS__, [](V & v) { return answerOf(v, [&] { return __VA_ARGS__; }); } \
  }

template <class... Operations>
constexpr auto all(Operations... operations) {
  return std::array{operations...};
}

// What the last of some operations answers.
template <class V, std::size_t size>
std::string answerOf(const std::array<Operation<V>, size>& known, V& v, const std::string& operations) {
  std::string answer;
  for (const std::string& one : partsOf(operations, ", ")) {
    words = partsOf(one, " ");
    const auto operation = std::ranges::find(known, words[0], &Operation<V>::name);
    if (operation == known.end()) return "no such operation: " + words[0];
    words.erase(words.begin());
    answer = operation->run(v);
  }
  words.clear();
  return answer;
}

// ---- Rows ----

// Line numbers are constants in QKVideoTimecode alone.
inline Cells textsOf(const ReportRecorder& reports, const std::string& value) {
  Cells texts = reports.logs;
  for (const std::string& light : reports.lights)
    texts.push_back(light.substr(0, light.find("QKVideo") == light.npos ? light.find(", line") : light.size() - 1));
  for (std::string& text : texts) {
    const std::size_t at = text.find(value);
    if (at != text.npos) text.replace(at, value.size(), "%@");
  }
  if (reports.assertions.empty()) return texts;
  const auto& [method, file, description, object, line] = reports.assertions[0];
  const std::string selector = method.substr(method.find(' '), method.size() - method.find(' ') - 1);
  const bool isOfMethod = description.starts_with(method);
  texts.push_back((file == "QKVideoTimecode" ? std::to_string(line) : file) + selector + ' ' +
                  (isOfMethod ? "%@" + description.substr(method.size()) : description));
  return texts;
}

template <class V, std::size_t size>
void expectRow(const std::array<Operation<V>, size>& known, const V& before, const Cells& row) {
  const std::string &operations = row.at(1), &after = row.at(2);
  V v = before;
  ReportRecorder reports(ReportRecorder::Returned);
  const std::string description = v.descriptionForReport(), answer = answerOf(known, v, operations);
  EXPECT_EQ(textsOf(reports, description), Cells(row.begin() + 3, row.end()));
  const bool isLabel = after.find(':') != after.npos && answer.find(':') == answer.npos;
  EXPECT_EQ(isLabel ? labelOf(v) : answer, after);
  if (reports.assertions.empty()) return;
  const RecordedAssertion& first = reports.assertions[0];
  const bool isOfObject = first.method[0] == '-' && first.method.find(" init") == first.method.npos;
  EXPECT_TRUE(first.method.substr(2).starts_with(first.file + ' ') && first.line > 0) << reports;
  EXPECT_EQ(first.object, isOfObject ? &v : nullptr) << reports;
  // Where the handler throws, one operation ends before anything has changed or is logged.
  const ReportRecorder throwing(ReportRecorder::Thrown);
  v = before;
  EXPECT_THROW(answerOf(known, v, operations), InternalInconsistencyFailure);
  const bool isUnchanged = textOf(v) == textOf(before) && throwing.logs.empty();
  EXPECT_TRUE(isUnchanged || operations.find(',') != operations.npos) << throwing;
}

// A time that is not numeric stays: the operation of a row answers 0 at most, and logs what the row says.
template <class V, std::size_t size>
void expectLeftAlone(const std::array<Operation<V>, size>& known, const V& value, const Cells& row) {
  const ReportRecorder reports;
  V v = value;
  const std::string before = textOf(v), answer = answerOf(known, v, row.at(0));
  EXPECT_TRUE((answer == "0" || answer == before) && textOf(v) == before) << before << ": " << answer;
  EXPECT_EQ(textsOf(reports, before), Cells{row.at(1)}) << before;
}

}  // namespace quill
