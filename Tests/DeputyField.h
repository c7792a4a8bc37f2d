// A deputy, or a whole formatter, at work in texts: what a timecode field that allows negatives shows and takes.
#pragma once

#include "../Framework/QKExtendedTimecode.h"
#include "FormatterFixtures.h"
#include "TextTable.h"

#include <cmath>
#include <functional>

namespace quill {

// Values of a position, at 24 frames per second in ticks and in the seconds mode.
inline Ref<Object> inTicks(double seconds) {
  const auto timecode = std::make_shared<QKTimecode>(0, 6'000'000, k24);
  timecode->setSeconds(seconds);
  return timecode;
}
inline Ref<Object> asSeconds(double seconds) {
  return std::make_shared<QKTimecode>(seconds, QKTimecodeUseSeconds, k24);
}

// 12.053 is 12+05/3 at 16 frames a foot. 80 ticks to a frame hold no thousandth of one, which film arithmetic adds.
inline Ref<Object> filmAt(double position) {
  auto film = std::make_shared<QKExtendedTimecode>(0, QKTimecodeBestTimeRate, k24, 24);
  const std::int64_t digits = std::llround(std::abs(position) * 1000);
  film->addFeet(digits / 1000, digits / 10 % 100, digits % 10);
  film->setIsNegative(position < 0);
  return film;
}
// Four beats are a bar of two seconds. 5.28125 are a bar, a beat, a division and 30 ticks.
template <int rate>
Ref<Object> atBeat(double beats) {
  const auto value = std::make_shared<QKExtendedTimecode>(0, rate, k24);
  value->setSeconds(beats / 2);
  return value;
}

// Options of the SMPTE deputy by letter: hours, frames, subframes, quarter frames, 24-hour rollover.
inline QKTimecodeFormatter SMPTEFormatterOf(std::string_view options) {
  const auto has = [&](char letter) { return options.find(letter) != options.npos; };
  QKTimecodeFormatter formatter;
  formatter.setSMPTEDisplaysHours(has('h'));
  formatter.setSMPTEDisplaysSubframes(has('s'));
  formatter.setSMPTEDisplaysQuarterFrames(has('q'));
  formatter.setSMPTEDisplaysFrames(has('f'));
  formatter.setSMPTEHas24HourRollover(has('r'));
  return formatter;
}

class DeputyField {
 public:
  explicit DeputyField(const QKFormatDeputy& deputy) : deputy_(&deputy) { formatter.setAllowsNegative(true); }
  // A deputy of a formatter, or the formatter itself; results are written as they show, or as labels.
  DeputyField(const QKTimecodeFormatter& settings, std::optional<QKTimecodeFormat> format, bool givesLabels = true)
      : formatter(settings),
        deputy_(format ? formatter.deputyForFormat(*format).get() : nullptr),
        givesLabels_(givesLabels) {}

  // What comes of an entry, of "2 -1" (tag 2 a step down) or of "2 59" (typed into it): its text, or its label where
  // values are made of labels; an error in brackets. A step leaves the value alone. Typing changes it and gives a copy;
  // what a formatter leaves there, where that is not the result, stands behind a comma.
  std::string run(const std::string& verb, Object& value, const std::string& argument) {
    if (verb == "show") return shown(value);
    if (verb == "cut") return segments(value);
    if (verb == "nil") return deputy_->defaultNilSymbol();
    if (verb == "selected") return std::to_string(deputy_->defaultSelectedSegmentTagInObjectValue(&value));
    if (verb == "bounds") return labelOf(formatter.minimum()) + ' ' + labelOf(formatter.maximum());
    if (verb == "legal") return legalCharacters();
    if (verb == "segment") return segment(value, std::stoll(argument));
    std::string error;
    Ref<Object> result;
    if (verb == "enter") {
      formatter.setCurrentTimecode(value.copy());
      const bool isDone = deputy_ ? deputy_->getObjectValue(&result, argument, formatter, &error)
                                  : formatter.getObjectValue(&result, argument, &error);
      return isDone ? text(*result) : "[" + error + "]";
    }
    const std::int64_t tag = std::stoll(argument);
    const std::string rest = argument.substr(argument.find(' ') + 1);
    if (verb == "step") {
      const std::string before = text(value);
      deputy_ ? deputy_->getObjectValueIncrementingSegmentWithTag(&result, tag, std::stoll(rest), &value)
              : formatter.getObjectValueIncrementingSegmentWithTag(&result, tag, std::stoll(rest), &value);
      EXPECT_EQ(text(value), before);
      return result ? text(*result) : "[none]";
    }
    const bool isDone = deputy_ ? deputy_->getObjectValueForSegmentWithTag(&result, rest, tag, &value, &error)
                                : formatter.getObjectValueForSegmentWithTag(&result, rest, tag, &value, &error);
    if (!isDone) return "[" + error + "]";
    EXPECT_NE(result.get(), &value);
    const std::string now = text(value), after = text(*result);
    return now == after ? after : after + ", " + now;
  }
  std::string entered(const Object& value, const std::string& entry) { return run("enter", *value.copy(), entry); }
  std::string stepped(Object& value, std::int64_t tag, std::int64_t increment) {
    return run("step", value, std::to_string(tag) + ' ' + std::to_string(increment));
  }
  std::string typed(Object& value, std::int64_t tag, const std::string& typing) {
    return run("type", value, std::to_string(tag) + ' ' + typing);
  }
  std::string shown(Object& value) const {
    return deputy_ ? deputy_->stringForObjectValue(&value, formatter)
                   : formatter.stringForObjectValue(&value).value_or("nothing");
  }

  // Widths are the lengths of the ranges, tags and indexes match.
  std::string segments(Object& value) const {
    std::string cut;
    for (std::int64_t index = 0; index < deputy_->segmentCountInObjectValue(&value); ++index) {
      const std::int64_t tag = deputy_->segmentTagForIndex(index, &value);
      const Range range = deputy_->substringRangeForSegmentWithTag(tag, &value);
      EXPECT_EQ(deputy_->segmentIndexForTag(tag, &value), index);
      EXPECT_EQ(static_cast<std::uint64_t>(deputy_->segmentFieldWidthForTag(tag, &value)), range.length);
      if (index > 0) cut += '|';
      cut += substring(shown(value), range);
    }
    return cut;
  }

  // Left and right padding of the segments, as "01 11 10".
  std::string paddings(std::int64_t firstTag, std::int64_t lastTag, Object* value = nullptr) const {
    std::string all;
    for (std::int64_t tag = firstTag; tag <= lastTag; ++tag) {
      bool atLeft = true, atRight = true;
      deputy_->segmentWithTagHasPadding(tag, &atLeft, &atRight, value);
      all += {' ', atLeft ? '1' : '0', atRight ? '1' : '0'};
    }
    return all.substr(1);
  }

  // A segment's index, padding at left and right, the digits of its formatter ("+" where it takes no sign), width and
  // range, as "1 11 2+ 2 3+2".
  std::string segment(Object& value, std::int64_t tag) const {
    const Range range = deputy_->substringRangeForSegmentWithTag(tag, &value);
    const auto* f = deputy_->formatterForSegmentTag(tag, &value);
    std::string digits = f ? std::to_string(f->maximumIntegerDigits()) + (f->minimum() ? "+" : "") : "none";
    if (digits.starts_with(std::to_string(NumberFormatter::kDefaultMaximumIntegerDigits))) digits = "any";
    return std::to_string(deputy_->segmentIndexForTag(tag, &value)) + ' ' + paddings(tag, tag, &value) + ' ' + digits +
           ' ' + std::to_string(deputy_->segmentFieldWidthForTag(tag, &value)) + ' ' + std::to_string(range.location) +
           '+' + std::to_string(range.length);
  }
  // In ASCII.
  std::string legalCharacters() const {
    std::string all;
    for (char c = ' '; c <= '~'; ++c)
      all.append(deputy_->legalCharacterSet().contains(static_cast<char32_t>(c)) ? 1 : 0, c);
    return all;
  }

  QKTimecodeFormatter formatter;

 private:
  std::string text(Object& value) const {
    return givesLabels_ ? labelOf(Ref<Object>(Ref<void>(), &value)) : shown(value);
  }

  const QKFormatDeputy* deputy_;
  bool givesLabels_ = false;
};

}  // namespace quill
