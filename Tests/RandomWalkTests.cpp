// Long random walks of values and formatters of every class: set, added to, typed into, stepped, changed in mode and
// rate, copied, archived and read back. Near walks stay within a day and where frames are whole ticks, and after each
// step all views must agree; far ones take numbers of any size and what Docs/conformance.md calls odd. Nothing fails
// but where an argument or the state calls for it: see callsForFailure.

#include "../Framework/QuillFoundation.h"
#include "../Platform/Archive.h"
#include "FormatterFixtures.h"

#include <cmath>

namespace quill {
namespace {

#ifdef QUILL_FULL_SWEEPS
constexpr int kWalks = 700;
#else
constexpr int kWalks = 70;
#endif

// clang-format off
using V = QKVideoTimecode; using A = QKTimecode; using X = QKExtendedTimecode; using F = QKTimecodeFormatter;
using Int = std::int64_t; using UInt = std::uint64_t; using S = QKScrubbableNumberFormatter;
using Bars = void (X::*)(Int, Int, Int, Int); using Beats = void (X::*)(Int, double);
// clang-format on
double asDouble(Int n) { return static_cast<double>(n); }

class Walk {
 public:
  Walk(Random& random, const Ref<V>& value, bool isFar) : random_(random), isFar_(isFar), value_(value) {
    value_->setTimecodeMode(kCustom);
    value_->setCustomVideoFrameRate(25);  // for whenever the mode comes back
    formatter_.setAllowsNegative(true);
  }
  void run() {
    for (; step_ < 300 && !testing::Test::HasFailure(); ++step_, reports_.clear()) {
      mayFail_ = callsForFailure() || !value_->isNumeric();
      try {
        random_.below(8) == 0 ? scrub() : act();
        if (!isFar_ && !(std::abs(value_->seconds()) < 86000)) value_->setSeconds(some(double()) - 200);
        check();
      } catch (const InternalInconsistencyFailure&) {
        expect(mayFail_ || callsForFailure(), "failure");
      }
    }
  }

 private:
  void expect(bool holds, const char* what) {
    if (!holds) ADD_FAILURE() << what << " at step " << step_ << ' ' << shown_ << *value_ << reports_;
  }
  // The Invalid mode; a negative value where the formatter takes none; one below zero, or its phase, under SMPTE 272M.
  bool callsForFailure() const {
    const auto a = std::dynamic_pointer_cast<A>(value_->copy());
    const bool isSequence = a && a->usingSMPTE272MConversion(), isNegative = value_->isNegative();
    return value_->timecodeMode() == kInvalid || (isNegative && !formatter_.allowsNegative()) ||
           (isSequence && (isNegative || a->videoFrames() < a->audioFrameSequencePhaseFrame()));
  }

  // clang-format off
  bool some(bool) { return random_.flip(); }
  UInt some(UInt) { return isFar_ ? static_cast<UInt>(random_.integer()) : random_.below(1u << random_.below(17)); }
  Int some(Int) {
    const Int n = random_.below(24) == 0 ? random_.integer() % 100 : static_cast<Int>(some(UInt()) >> 1);
    mayFail_ = mayFail_ || n < 1;
    return n;
  }
  double some(double) {
    const double n = asDouble(some(Int())) / 64;
    mayFail_ = mayFail_ || n < 1 || isFar_;
    return isFar_ ? random_.of({n, n, kInfinity, -kInfinity, std::nan(""), 1e300, -0.0, 1e-9}) : n;
  }
  template <class T> Ref<T> again(const T& object) {
    const ClassDescriptor* const classes[] = {&object.classDescriptor()};
    const ArchiveKind kind = random_.of({ArchiveKind::Keyed, ArchiveKind::Sequential});
    const auto result = random_.flip() ? unarchivedObject(archivedData(object, kind), classes) : object.copy();
    return std::static_pointer_cast<T>(result);
  }
  template <class T, class... Arguments> void call(void (T::*function)(Arguments...)) {
    Object& object = std::same_as<T, F> ? formatter_ : static_cast<Object&>(*value_);
    std::apply([&](auto... n) { (static_cast<T&>(object).*function)(n...); }, std::tuple{some(Arguments())...});
  }
  template <auto function> static void op(Walk& walk) { walk.call(function); }
  static constexpr void (*kOps[])(Walk&) = {  // 15 of the formatter, 16 of every class, 9 of audio, 14 of the rest
      op<&F::setHMSSecondsDecimalPlaces>, op<&F::setODTSecondsDecimalPlaces>, op<&F::setMBeatsDecimalPlaces>,
      op<&F::setMSeparator>, op<&F::setFFSeparator>, op<&F::setMIsDivisionsFieldDropped>,
      op<&F::setAllowsNegative>, op<&F::setSMPTEDisplaysFrames>, op<&F::setSMPTEDisplaysQuarterFrames>,
      op<&F::setFFDisplaysQuarterFrames>, op<&F::setSMPTEDisplaysHours>, op<&F::setSMPTEDisplaysSubframes>,
      op<&F::setSMPTEHas24HourRollover>, op<&F::setHMSHas24HourRollover>, op<&F::setMDisplaysDivisionsAndTicks>,
      op<&V::setSMPTEHours>, op<&V::setSMPTEMinutes>, op<&V::setSMPTESeconds>, op<&V::setSMPTEFrames>,
      op<&V::setSMPTESubframes>, op<&V::setSMPTEQuarterFrames>, op<&V::addSMPTEHours>, op<&V::subtractSMPTEHours>,
      op<&V::setVideoFrames>, op<&V::setSignedVideoFrames>, op<&V::addVideoFrames>, op<&V::subtractVideoFrames>,
      op<&V::setSeconds>, op<&V::addSeconds>, op<&V::subtractSeconds>, op<&V::setIsNegative>,
      op<&A::setHMSHours>, op<&A::setHMSMinutes>, op<&A::setHMSSeconds>, op<&A::addHMSHours>, op<&A::subtractHMSHours>,
      op<&A::setAudioFrames>, op<&A::addAudioFrames>, op<&A::subtractAudioFrames>,
      op<&A::setAudioFrameSequencePhaseFrame>, op<&X::setFFFeet>, op<&X::setFFFrames>, op<&X::setFFQuarterFrames>,
      op<&X::addFeet>, op<&X::subtractFeet>, op<&X::setBars>, op<&X::setIntegerBeats>, op<&X::setDoubleBeats>,
      op<&X::setDivisions>, op<&X::setTicks>,
      op<Bars(&X::addBars)>, op<Bars(&X::subtractBars)>, op<Beats(&X::addBars)>, op<Beats(&X::subtractBars)>};
  // clang-format on

  void act() {
    auto* const a = classCast<A>(value_.get());
    auto* const x = classCast<X>(value_.get());
    const UInt choice = (isFar_ ? 0 : 9) + random_.below(80);
    if (choice < (x ? std::size(kOps) : a ? 40 : 31)) return kOps[choice](*this);
    const auto mode = static_cast<QKSMPTETimecodeMode>(random_.below(20 + (isFar_ && random_.flip())));
    switch (random_.below(11)) {
      case 0: return value_->setTimeValue({some(Int()) - 20000 * !isFar_, random_.of({1, 24, 90000, 2400000})});
      case 1: value_->setTimecodeMode(mode); break;
      case 2: value_ = mode == kInvalid ? value_ : value_->timecodePreservingSMPTEWithMode(mode); break;
      case 3: return value_->setTimeRate(random_.of<Int>({QKTimecodeUseSeconds, 1, 600, 48000, 27000000}));
      case 4: return a ? a->setAudioFrameRate(random_.of<UInt>({24000, 32000, 44100, 48000})) : void();
      case 5:
        if (!x) return;
        x->setFilmType(static_cast<QKFilmType>(random_.below(isFar_ ? 12 : 4)));
        x->setTimeSignatureNumerator(1 + static_cast<Int>(random_.below(12)));
        x->setTimeSignatureDenominator(random_.of<Int>({2, 4, isFar_ ? 8 : 4}));
        return x->setTempo(random_.of<double>({60, 120, isFar_ ? 132.7 : 240}));
      case 6: value_ = again(*value_); break;
      case 7: formatter_ = *again(formatter_); break;
      default:
        formatter_.setCurrentTimecode(value_->copy());
        const Ref<Object> result = edited(formatter_, *value_);
        if (classCast<V>(result.get())) value_ = std::static_pointer_cast<V>(result);
        const bool isShowable = value_->isNumeric() && (!value_->isNegative() || formatter_.allowsNegative());
        return expect(mayFail_ || isShowable, "edited");
    }
    if (isFar_) formatter_.setMaximum(std::abs(value_->seconds()) < 1e9 ? value_.get() : nullptr);
    if (value_->timecodeMode() != kCustom) return;
    value_->setCustomVideoFrameRate(random_.of<double>({1, 24, 50, isFar_ ? 27.5 : 25, isFar_ ? 0.1 : 48}));
  }
  void scrub() {
    if (random_.flip()) scrubbing_ = *again(scrubbing_);
    scrubbing_.setScrubbingType(random_.flip() ? kSingleDigitScrubbing : kWholeNumberScrubbing);
    if (const Ref<Object> result = edited(scrubbing_, scrubbed_)) scrubbed_ = static_cast<Number&>(*result);
    if (!isFar_ && !(std::abs(scrubbed_.doubleValue()) < 1e9)) scrubbed_ = 0;
    checkText(scrubbing_, scrubbed_, isFar_ ? 0 : 1.01 / std::pow(10.0, asDouble(scrubbing_.maximumFractionDigits())));
  }
  // Entered, typed or stepped, at a segment that is shown or one that is not.
  template <class Formatter>
  Ref<Object> edited(Formatter& formatter, Object& object) {
    const auto count = std::max<Int>(formatter.segmentCountInObjectValue(&object), 1);
    const auto index = static_cast<Int>(random_.below(static_cast<UInt>(count) + 1));
    const Int tag = index == count ? random_.of<Int>({-4, 3, 7}) : formatter.segmentTagForIndex(index, &object);
    const std::string typed = random_.text(), text = random_.flip() ? typed : typed + shown_;
    Ref<Object> result;
    const UInt way = random_.below(3);
    if (way == 0) formatter.getObjectValue(&result, text, nullptr);
    if (way == 1) formatter.getObjectValueForSegmentWithTag(&result, text, tag, &object, nullptr);
    if (way == 2)
      formatter.getObjectValueIncrementingSegmentWithTag(&result, tag,
                                                         random_.integer() % (isFar_ ? kInt64Highest : 20), &object);
    return result;
  }

  void check() {
    if (!isFar_) checkViews();
    const Ref<V> other = again(*value_), zero = copyOf(*value_);
    zero->clearTimecode();
    expect(*other == *value_ && other->hash() == value_->hash(), "copy");
    expect((value_->compare(*zero) < 0) == value_->isNegative(), "sign");
    // A place of each notation, in seconds; 0 where its text is not the value's.
    const auto* const a = classCast<A>(value_.get());
    const bool hasNoBars = value_->isNegative() || value_->timeRate() % 16 != 0;  // no whole divisions
    const double frame = value_->useSeconds() ? 0 : 1.01 / value_->videoFrameRate();
    const double sample = a && frame > 0 ? 2.0 / static_cast<double>(a->audioFrameRate()) : 0;
    const double places[] = {frame < 0.01 ? 0 : frame, 1e-3, frame, sample, 1e-6, hasNoBars ? 0 : 0.01, frame};
    const auto format = static_cast<QKTimecodeFormat>(random_.below(7));
    formatter_.setTimecodeFormat(format);
    formatter_.setCurrentTimecode(zero);
    checkText(formatter_, *value_, isFar_ ? 0 : places[format]);
  }
  void checkViews() {
    if (auto* const x = classCast<X>(value_.get()); x && !x->isNegative()) {
      Int bars = 0;
      double beats = 0;
      x->getBars(&bars, &beats);
      beats += asDouble(bars * 4 * x->timeSignatureNumerator() / x->timeSignatureDenominator()) - 1;
      expect(std::abs(beats * 60 / x->tempo() - x->seconds()) < 1e-6, "bars and beats");
    }
    Int h = 0, m = 0, s = 0, f = 0, subframes = 0, quarterFrames = 0;
    value_->getSMPTEHours(&h, &m, &s, &f, &subframes, &quarterFrames);
    expect(m < 60 && s < 60 && subframes < 80 && quarterFrames == subframes / 20, "ranges of fields");
    const auto frames = static_cast<Int>(value_->videoFrames());
    const double rate = value_->videoFrameRate(),
                 past = std::abs(value_->seconds()) * rate - asDouble(frames) + (value_->isDuration() ? 0.5 : 0);
    expect(past > -0.001 && past < 1.001, "frames");
    expect(value_->signedVideoFrames() == (value_->isNegative() ? -frames : frames), "signed frames");
    const auto* const row = timecodeModeRow(value_->timecodeMode());
    const Int labels = row ? row->countingRate : static_cast<Int>(rate), dropped = row ? row->droppedLabels() : 0;
    const Int label = ((h * 60 + m) * 60 + s) * labels + f - dropped * (h * 54 + m - m / 10);
    const double elapsed = privateSecondsFromHMS(h, m, asDouble(s) + (asDouble(f) + asDouble(subframes) / 80) / rate);
    expect(value_->isDuration() ? std::abs(elapsed - std::abs(value_->seconds())) < 0.02 / rate : label == frames,
           "label");
  }
  // A copy shows the same. Segments follow each other to the end, but where rounding gives a digit more. The text is
  // read as the value, to one in the last place shown.
  template <class Formatter>
  void checkText(Formatter& formatter, Object& object, double place) {
    Ref<Object> read = object.copy();
    shown_ = formatter.stringForObjectValue(&object).value();
    expect(formatter.stringForObjectValue(read.get()) == shown_, "text of a copy");
    if (place == 0 || shown_.empty()) return;
    UInt end = 0;
    for (Int i = 0, count = formatter.segmentCountInObjectValue(&object); i < count; ++i) {
      const Int tag = formatter.segmentTagForIndex(i, &object);
      const Range range = formatter.substringRangeForSegmentWithTag(tag, &object);
      const auto gap = substring(shown_, {end, range.location - end});
      expect(range.location >= end && range.length > 0 && gap.find_first_of("0123456789") == gap.npos, "segment");
      expect(formatter.segmentIndexForTag(tag, &object) == i, "index of a tag");
      end = range.location + range.length;
    }
    const auto at = [](Object& o) {
      const auto* const number = classCast<Number>(&o);
      return number ? number->doubleValue() : static_cast<V&>(o).seconds();
    };
    expect(end + (shown_.find("10") != shown_.npos) >= characterCount(shown_), "segments");
    expect(formatter.getObjectValue(&read, shown_, nullptr) && std::abs(at(*read) - at(object)) < place + 1e-6, "text");
  }
  Random& random_;
  bool isFar_, mayFail_ = false;
  int step_ = 0;
  Ref<V> value_;
  Number scrubbed_;
  F formatter_;
  S scrubbing_;
  std::string shown_;
  ReportRecorder reports_;
};

TEST(RandomWalk, ViewsAgreeAndNothingFailsUncalledFor) {
  Random random;
  for (int n = 0; n < kWalks && !HasFailure(); ++n) {
    Walk(random, std::make_shared<V>(), n % 2 == 0).run();
    Walk(random, std::make_shared<A>(0, 48000, k24, 48000), n % 2 == 0).run();
    Walk(random, std::make_shared<X>(0, 48000, k24, 48000), n % 2 == 0).run();
  }
}

}  // namespace
}  // namespace quill
