// What an object keeps in an archive, written out as a line of text.
#pragma once

#include "../Framework/QKExtendedTimecode.h"
#include "../Framework/QKFFTimecodeFormatDeputy.h"
#include "../Framework/QKHMSTimecodeFormatDeputy.h"
#include "../Framework/QKMeasuredTimecodeFormatDeputy.h"
#include "../Framework/QKOneDFramesTimecodeFormatDeputy.h"
#include "../Framework/QKOneDTimeTimecodeFormatDeputy.h"
#include "../Framework/QKScrubbableNumberFormatter.h"
#include "../Framework/QKTimecodeFormatter.h"

#include <string>

namespace quill {

// Every class that archives.
// clang-format off
inline constexpr const ClassDescriptor* kArchivedClasses[] = {
    &_QKCustomVideoModeInfo::descriptor, &QKVideoTimecode::descriptor, &QKTimecode::descriptor,
    &QKExtendedTimecode::descriptor, &QKSMPTETimecodeFormatDeputy::descriptor,
    &QKHMSTimecodeFormatDeputy::descriptor, &QKOneDVideoTimecodeFormatDeputy::descriptor,
    &QKOneDAudioTimecodeFormatDeputy::descriptor, &QKOneDTimeTimecodeFormatDeputy::descriptor,
    &QKMeasuredTimecodeFormatDeputy::descriptor, &QKFFTimecodeFormatDeputy::descriptor,
    &_QKTimecodeFormatterDeputyCollection::descriptor, &QKTimecodeFormatter::descriptor, &NumberFormatter::descriptor,
    &QKScrubbableNumberFormatter::descriptor};
// clang-format on

// Reads what a video timecode keeps to itself.
struct OpenFields : QKVideoTimecode {
  static constexpr auto time = &OpenFields::storedTime;
  static constexpr auto info = &OpenFields::customVideoModeInfo;
};

// The numbers with a blank between them.
inline std::string joined(std::initializer_list<Number> numbers) {
  std::string text;
  for (const Number& number : numbers) text += (text.empty() ? "" : " ") + number.description();
  return text;
}

inline std::string fieldsOf(const Ref<Object>& object) {
  const Object* const o = object.get();
  if (!o) return "none";
  if (const auto* info = classCast<_QKCustomVideoModeInfo>(o))
    return joined({info->frameRate, info->preferredTimeScale});
  if (const auto* v = classCast<QKVideoTimecode>(o)) {
    const MediaTime& time = (v->*OpenFields::time)();
    const auto& info = (v->*OpenFields::info)();
    const auto* audio = classCast<QKTimecode>(o);
    const auto* more = classCast<QKExtendedTimecode>(o);
    return "mode " + joined({std::int64_t{v->timecodeMode()}}) +
           (v->useSeconds() ? " seconds " + joined({v->seconds()})
                            : " time " + joined({time.value, time.timescale, time.flags, time.epoch})) +
           " custom " + joined({info.frameRate, info.preferredTimeScale}) +
           (audio ? " audio " + joined({audio->audioFrameRate(), audio->audioFrameSequencePhaseFrame()}) : "") +
           (more ? " music " +
                       joined({more->tempo(), more->timeSignatureNumerator(), more->timeSignatureDenominator()}) +
                       " film " + joined({std::int64_t{more->filmType()}})
                 : "");
  }
  if (const auto* d = classCast<QKSMPTETimecodeFormatDeputy>(o)) {
    return "SMPTE " + joined({int{d->displaysSubframes()}, int{d->displaysQuarterFrames()}, int{d->displaysHours()},
                              int{d->has24HourRollover()}, int{d->displaysFrames()}});
  }
  if (const auto* d = classCast<QKHMSTimecodeFormatDeputy>(o))
    return "HMS " + joined({d->secondsDecimalPlaces(), int{d->has24HourRollover()}});
  if (const auto* d = classCast<QKOneDTimeTimecodeFormatDeputy>(o))
    return "seconds " + joined({d->secondsDecimalPlaces()});
  if (const auto* d = classCast<QKMeasuredTimecodeFormatDeputy>(o)) {
    return "bars " + joined({d->separator(), int{d->displaysDivisionsAndTicks()}, int{d->isDivisionsFieldDropped()},
                             d->beatsDecimalPlaces()});
  }
  if (const auto* d = classCast<QKFFTimecodeFormatDeputy>(o))
    return "feet " + joined({d->separator(), int{d->displaysQuarterFrames()}});
  if (const auto* n = classCast<NumberFormatter>(o)) {
    const auto bound = [](const std::optional<Number>& number) { return number ? number->description() : "none"; };
    const auto text = [](const std::optional<std::string>& symbol) { return " " + symbol.value_or("none"); };
    std::string fields = "digits " +
                         joined({n->minimumIntegerDigits(), n->maximumIntegerDigits(), n->minimumFractionDigits(),
                                 n->maximumFractionDigits()}) +
                         " style " +
                         joined({int{n->usesGroupingSeparator()}, std::int64_t{n->numberStyle()},
                                 std::int64_t{n->formatterBehavior()}}) +
                         " from " + bound(n->minimum()) + " to " + bound(n->maximum()) + text(n->zeroSymbol()) +
                         text(n->nilSymbol()) + text(n->textForZero()) + " " + n->decimalSeparator() +
                         n->groupingSeparator() + n->minusSign();
    if (const auto* s = classCast<QKScrubbableNumberFormatter>(o)) {
      fields += " scrubbing " +
                joined({std::int64_t{s->scrubbingType()}, s->fractionDigitsForSingleDigitScrubbingType(),
                        s->fractionDigitsForWholeNumberScrubbingType(), s->integerDigitsForSingleDigitScrubbingType(),
                        s->integerDigitsForWholeNumberScrubbingType()});
    }
    return fields;
  }
  const auto* c = classCast<_QKTimecodeFormatterDeputyCollection>(o);
  const auto* f = classCast<QKTimecodeFormatter>(o);
  if (!c && !f) return o->classDescriptor().name;
  std::string text;
  for (std::int64_t i = 0; i < 7; ++i) {
    const auto format = static_cast<QKTimecodeFormat>(i);
    text += (i ? "; " : "") + fieldsOf(f ? f->deputyForFormat(format) : c->deputyForFormat(format));
  }
  if (c) return text;
  return "format " + joined({std::int64_t{f->timecodeFormat()}, int{f->allowsNegative()}}) + " min " +
         fieldsOf(f->minimum()) + " max " + fieldsOf(f->maximum()) + " nil " +
         (f->nilSymbol() ? '"' + *f->nilSymbol() + '"' : "none") + " prototype " +
         fieldsOf(f->defaultObjectPrototype()) + " entries " + joined({std::int64_t{f->SMPTEStringInterpretation()}}) +
         " deputies " + text;
}

}  // namespace quill
