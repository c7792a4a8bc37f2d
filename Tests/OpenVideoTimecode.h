// A video timecode whose operations for subclasses are open to tests, and short ways to write one down.
#pragma once

#include "../Framework/QKVideoTimecode.h"
#include "../Platform/IntegerMath.h"

#include <limits>
#include <string>

namespace quill {

inline constexpr auto k24 = QKSMPTETimecodeMode_24, k25 = QKSMPTETimecodeMode_25, k30 = QKSMPTETimecodeMode_30,
                      k2997 = QKSMPTETimecodeMode_2997, k2997Drop = QKSMPTETimecodeMode_2997Drop,
                      k2997Duration = QKSMPTETimecodeMode_2997Duration, k5994Drop = QKSMPTETimecodeMode_5994Drop,
                      k11988Drop = QKSMPTETimecodeMode_11988Drop, kCustom = QKSMPTETimecodeModeCustom,
                      kInvalid = QKSMPTETimecodeModeInvalid, kUnknown = static_cast<QKSMPTETimecodeMode>(21);
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr std::uint64_t k2To63 = std::uint64_t{1} << 63;

class OpenVideoTimecode : public QKVideoTimecode {
  using Base = QKVideoTimecode;

 public:
  using Base::Base;

  using Base::_compareDouble, Base::_doubleFrameTime, Base::addTimecodeNumberValue, Base::customVideoModeInfo;
  using Base::privateClampIntegerValue, Base::privateNormalizeHMSFs, Base::privateNormalizeSecondsValue;
  using Base::privateFramesPerHour, Base::privateFramesPerMinute, Base::privateFramesPerTenMinutes;
  using Base::privateSetSMPTEHours, Base::privateTimeForSeconds, Base::privateTimeForVideoFrames;
  using Base::privateVideoFramesFractionalPart, Base::privateWholeVideoFrames, Base::setStoredTime, Base::storedTime;

  std::int64_t _bestTimeScale() const override { return bestTimeScale ? bestTimeScale : Base::_bestTimeScale(); }

  std::int64_t bestTimeScale = 0;  // 0: the mode's own
};

// A value of that many ticks at the best rate of its mode.
inline OpenVideoTimecode ticksIn(QKSMPTETimecodeMode mode, std::int64_t ticks) {
  return {MediaTime(ticks, static_cast<std::int32_t>(QKVideoTimecode::minimumTickRateForMode(mode))), mode};
}

inline OpenVideoTimecode secondsIn(QKSMPTETimecodeMode mode, double seconds) {
  return {Number(seconds), QKTimecodeUseSeconds, mode};
}

inline OpenVideoTimecode customAt(double framesPerSecond, const MediaTime& time = kMediaTimeZero) {
  OpenVideoTimecode value(time, kCustom);
  value.setCustomVideoFrameRate(framesPerSecond);
  return value;
}

// With any time, without a word about it.
inline OpenVideoTimecode storing(const MediaTime& time, QKSMPTETimecodeMode mode) {
  OpenVideoTimecode value(kMediaTimeZero, mode);
  value.setStoredTime(time);
  return value;
}

// The value that "-1:02:03:04.05" says, of fields in their usual range.
inline OpenVideoTimecode valueAt(QKSMPTETimecodeMode mode, const std::string& label) {
  std::int64_t fields[5] = {}, *field = fields;
  for (const char c : label.substr(label[0] == '-')) {
    if (c == ':' || c == '.') {
      ++field;
    } else {
      *field = *field * 10 + (c - '0');
    }
  }
  OpenVideoTimecode value = ticksIn(mode, 0);
  value.privateSetSMPTEHours(fields[0], fields[1], fields[2], fields[3], static_cast<double>(fields[4]) / 80);
  value.setIsNegative(label[0] == '-');
  return value;
}

inline SMPTEFieldSet fieldsOf(QKVideoTimecode& value) {
  SMPTEFieldSet f;
  value.getSMPTEHours(&f.hours, &f.minutes, &f.seconds, &f.frames, &f.subframes, nullptr);
  return f;
}

// "1:02:03:04.79", "-0:00:00:01.00".
inline std::string textOf(const SMPTEFieldSet& f) {
  std::string text = std::to_string(f.hours);
  for (const auto& [mark, n] : {std::pair(':', f.minutes), {':', f.seconds}, {':', f.frames}, {'.', f.subframes}})
    text.append(1, mark).append(n < 10 ? "0" : "").append(std::to_string(n));
  return text;
}
inline std::string labelOf(QKVideoTimecode& value) { return (value.isNegative() ? "-" : "") + textOf(fieldsOf(value)); }

}  // namespace quill
