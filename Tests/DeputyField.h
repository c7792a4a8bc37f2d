// A deputy at work, in texts: what a timecode field that allows negatives shows and takes.
#pragma once

#include "../Framework/QKTimecode.h"
#include "../Framework/QKTimecodeFormatter.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace quill {

inline constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
inline constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

// Values of a position, at 24 frames per second in ticks and in the seconds mode.
using Maker = std::function<Ref<Object>(double)>;
inline Ref<Object> inTicks(double seconds) {
  const auto timecode = std::make_shared<QKTimecode>(0, 6'000'000, QKSMPTETimecodeMode_24);
  timecode->setSeconds(seconds);
  return timecode;
}
inline Ref<Object> asSeconds(double seconds) {
  return std::make_shared<QKTimecode>(seconds, QKTimecodeUseSeconds, QKSMPTETimecodeMode_24);
}

// A row: a position, what is done to it, and the text after that; a failure stands in brackets. What is done is an entry,
// or a tag and an increment or a text that is typed. Text holds many rows: "10 +1.5 > 11.500; 10 x > [Not a number.]".
struct FieldRow {
  FieldRow(double position, std::string_view after) : from(position), text(after) {}
  FieldRow(double position, std::string_view entry, std::string_view after)
      : from(position), argument(entry), text(after) {}
  FieldRow(double position, int tag, std::string_view typed, std::string_view after)
      : from(position), argument(std::to_string(tag).append(" ").append(typed)), text(after) {}
  double from;
  std::string argument, text;
};
struct FieldRows : std::vector<FieldRow> {
  FieldRows(std::initializer_list<FieldRow> rows) : std::vector<FieldRow>(rows) {}
  FieldRows(const char* text) {
    std::string_view all = text;
    for (std::size_t end = 0; end != std::string_view::npos; all.remove_prefix(end < all.size() ? end + 2 : 0)) {
      end = all.find("; ");
      const std::string_view row = all.substr(0, end);
      const std::size_t middle = row.find(" > "), space = row.find(' ');
      const double from = doubleFromText(row.substr(row[0] == '-', space - (row[0] == '-')));
      emplace_back(row[0] == '-' ? -from : from, space < middle ? row.substr(space + 1, middle - space - 1) : "",
                   row.substr(middle + 3));
    }
  }
};

class DeputyField {
 public:
  // Each row is run once for each way to make a value.
  explicit DeputyField(const QKFormatDeputy& deputy, std::vector<Maker> makers = {inTicks, asSeconds})
      : deputy_(deputy), makers_(std::move(makers)) {
    formatter.setAllowsNegative(true);
  }

  void expectShown(const FieldRows& rows) const {
    eachRow(rows, [this](auto& value, auto&) { return shown(value); });
  }
  // The text cut at the segments: "-01|02|03".
  void expectSegments(const FieldRows& rows) const {
    eachRow(rows, [this](auto& value, auto&) { return segments(value); });
  }
  void expectEntries(const FieldRows& rows) {
    eachRow(rows, [this](auto& value, auto& entry) { return entered(value, entry); });
  }
  void expectSteps(const FieldRows& rows) const {
    eachRow(rows, [this](auto& value, auto& step) {
      return stepped(value, std::stoll(step), std::stoll(step.substr(step.find(' '))));
    });
  }
  void expectTyped(const FieldRows& rows) const {
    eachRow(rows, [this](auto& value, auto& tagAndText) {
      return typed(value, std::stoll(tagAndText), std::string_view(tagAndText).substr(tagAndText.find(' ') + 1));
    });
  }

  std::string shown(Object& value) const { return deputy_.stringForObjectValue(&value, formatter); }

  std::string entered(const Object& value, std::string_view text) {
    formatter.setCurrentTimecode(value.copy());
    std::string error;
    Ref<Object> result;
    return deputy_.getObjectValue(&result, text, formatter, &error) ? shown(*result) : "[" + error + "]";
  }

  // A step leaves the value alone.
  std::string stepped(Object& value, std::int64_t tag, std::int64_t increment) const {
    const std::string before = shown(value);
    Ref<Object> result;
    deputy_.getObjectValueIncrementingSegmentWithTag(&result, tag, increment, &value);
    EXPECT_EQ(shown(value), before);
    return result ? shown(*result) : "[none]";
  }

  // Typing changes the value, and gives a copy.
  std::string typed(Object& value, std::int64_t tag, std::string_view text) const {
    std::string error;
    Ref<Object> result;
    if (!deputy_.getObjectValueForSegmentWithTag(&result, text, tag, &value, &error)) return "[" + error + "]";
    EXPECT_EQ(shown(*result), shown(value));
    EXPECT_NE(result.get(), &value);
    return shown(*result);
  }

  // Widths are the lengths of the ranges, tags and indexes match.
  std::string segments(Object& value) const {
    std::string cut;
    for (std::int64_t index = 0; index < deputy_.segmentCountInObjectValue(&value); ++index) {
      const std::int64_t tag = deputy_.segmentTagForIndex(index, &value);
      const Range range = deputy_.substringRangeForSegmentWithTag(tag, &value);
      EXPECT_EQ(deputy_.segmentIndexForTag(tag, &value), index);
      EXPECT_EQ(static_cast<std::uint64_t>(deputy_.segmentFieldWidthForTag(tag, &value)), range.length);
      if (index > 0) cut += '|';
      cut += substring(shown(value), range);
    }
    return cut;
  }

  // Left and right padding of the segments, as "01 11 10".
  std::string paddings(std::int64_t firstTag, std::int64_t lastTag) const {
    const Ref<Object> value = makers_[0](0);
    std::string all;
    for (std::int64_t tag = firstTag; tag <= lastTag; ++tag) {
      bool atLeft = true, atRight = true;
      deputy_.segmentWithTagHasPadding(tag, &atLeft, &atRight, value.get());
      all += {' ', atLeft ? '1' : '0', atRight ? '1' : '0'};
    }
    return all.substr(1);
  }

  // Feeds texts of random bytes, most of them such as entries have, and random steps: what comes out can be shown.
  void survivesRandomInput(double from) {
    constexpr std::string_view kUsual = "0123456789012345678901234567890123456789.,;:+- eE~\t";
    std::mt19937 random(20240229);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    for (int round = 0; round < 4000; ++round) {
      std::string text(below(24), ' ');
      for (char& c : text) c = below(20) == 0 ? static_cast<char>(random()) : kUsual[below(kUsual.size())];
      const std::int64_t increments[] = {1, -1, static_cast<std::int32_t>(random()), kLowest, kHighest};
      const std::int64_t increment = increments[below(5)], tag = static_cast<std::int64_t>(below(20)) - 10;
      const Ref<Object> value = makers_[below(makers_.size())](from);
      deputy_.isPartialStringValid(text, nullptr);
      EXPECT_NE(entered(*value, text), "") << text;
      EXPECT_NE(stepped(*value, tag, increment), "") << tag << " by " << increment;
      EXPECT_NE(typed(*value, tag, text), "") << text;
      segments(*value);
    }
  }

  QKTimecodeFormatter formatter;

 private:
  template <class Run>
  void eachRow(const FieldRows& rows, Run run) const {
    for (const FieldRow& row : rows) {
      for (const Maker& make : makers_) EXPECT_EQ(run(*make(row.from), row.argument), row.text) << row.from;
    }
  }

  const QKFormatDeputy& deputy_;
  std::vector<Maker> makers_;
};

// An archive with another value behind a key, where both are a byte.
inline std::string withValueOfKey(std::string archive, const std::string& key, char value) {
  const std::size_t at = archive.find(key);
  EXPECT_NE(at, std::string::npos) << key;
  if (at != std::string::npos) archive[at + key.size()] = value;
  return archive;
}

}  // namespace quill
