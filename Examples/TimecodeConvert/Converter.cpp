#include "Converter.h"

#include "Platform/Reports.h"

#include <algorithm>
#include <cmath>

namespace convert {

using namespace quill;

namespace {

void setUp(QKTimecodeFormatter& formatter, const Settings& settings, QKTimecodeFormat format) {
  formatter.setTimecodeFormat(format);
  formatter.setAllowsNegative(true);
  formatter.setSMPTEDisplaysQuarterFrames(settings.quarterFrames);
  formatter.setFFDisplaysQuarterFrames(settings.quarterFrames);
  formatter.setHMSSecondsDecimalPlaces(settings.places);
  formatter.setODTSecondsDecimalPlaces(static_cast<std::uint64_t>(settings.places));
}

// Whether a time is far enough from the last ticks that 64 bits hold, where amounts beyond them end.
bool isInRange(const QKVideoTimecode& timecode) {
  constexpr std::int64_t kLastTick = INT64_MAX / 2;
  const MediaTime time = timecode.timeValue();
  return time.isNumeric() && time.value >= -kLastTick && time.value <= kLastTick;
}

// A time rate at which bars and ticks of the musical grid are whole numbers of time units: at another one each of them is
// cut, and a position that is typed as the start of a bar is read as the end of the one before. 0 where there is none.
std::int64_t musicalRate(const Settings& settings) {
  constexpr double kTicksPerBeat = 960, kSecondsPerMinute = 60;
  for (double unitsPerTick = 1; unitsPerTick <= 10000; ++unitsPerTick) {
    const double rate = std::round(kTicksPerBeat / kSecondsPerMinute * settings.tempo * unitsPerTick);
    const double beat = kSecondsPerMinute / settings.tempo * rate;
    const auto numerator = static_cast<double>(settings.signature.numerator);
    const double bar = numerator * (4 * beat) / static_cast<double>(settings.signature.denominator);
    if (rate > INT32_MAX) break;
    if (beat == kTicksPerBeat * unitsPerTick && bar == std::trunc(bar)) return static_cast<std::int64_t>(rate);
  }
  return 0;
}

}  // namespace

Converter::Converter(const Settings& settings)
    : musicalRate_(musicalRate(settings)),
      zero_(std::make_shared<QKExtendedTimecode>(Number(0), QKTimecodeBestTimeRate, settings.mode, settings.audioRate,
                                                 settings.tempo, settings.signature.numerator,
                                                 settings.signature.denominator, settings.film)) {
  setUp(reader_, settings, settings.from);
  setUp(writer_, settings, settings.to);
  // Read without a limit of 99 hours, and show hours past 24 as they are.
  reader_.setSMPTEHas24HourRollover(true);
  writer_.setSMPTEHas24HourRollover(false);
  if (settings.from == QKTimecodeFormatBarsBeats && musicalRate_ > 0) zero_->setTimeRate(musicalRate_);
}

bool Converter::convert(std::string_view text, std::string* result, std::string* error) {
  try {
    if (convertUnguarded(text, result, error)) return true;
  } catch (const InternalInconsistencyFailure& failure) {  // the value cannot be shown or read so
    *error = examples::firstLine(failure.what());
  }
  if (error->empty()) *error = "Cannot be read as " + std::string(kFormatNames[reader_.timecodeFormat()]) + ".";
  return false;
}

// To a formatter a sign makes an entry an amount, which some notations count otherwise than a position. Here it is the
// sign of a position.
bool Converter::convertUnguarded(std::string_view text, std::string* result, std::string* error) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty() || text.starts_with('-') || text.starts_with('+')) return false;
  reader_.setCurrentTimecode(copyOf(*zero_));
  Ref<Object> read;
  // Parsing passes over what it cannot read behind the last field; a converter must not.
  if (!reader_.getObjectValue(&read, text, error) || !reader_.isPartialStringValid(text, nullptr, error)) return false;
  auto* value = classCast<QKVideoTimecode>(read.get());
  if (!value) return false;
  value->setIsNegative(isNegative);
  if (!isInRange(*value)) {
    *error = "Out of range.";
    return false;
  }
  if (writer_.timecodeFormat() == QKTimecodeFormatSMPTE && value->SMPTEHours() > 99) {
    *error = "Beyond 99:59:59 and the last frame.";
    return false;
  }
  if (writer_.timecodeFormat() == QKTimecodeFormatBarsBeats) {
    if (value->isNegative()) {
      *error = "Bars and beats begin at zero.";
      return false;
    }
    if (musicalRate_ > 0) value->setTimeRate(musicalRate_);
  }
  *result = writer_.stringForObjectValue(value).value_or("");
  return true;
}

}  // namespace convert
