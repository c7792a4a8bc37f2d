// Writes archives of any version, item by item: an object stands for one of a class as it was then. What it knows of
// keys, types and order is written here and nowhere taken from the classes.
#pragma once

#include "../Platform/Archive.h"
#include "../Platform/MediaTime.h"

#include <string>
#include <utility>

namespace quill {

// A value behind a key, or behind its type character: an integer, a double, a boolean or an object.
struct LayoutItem {
  LayoutItem(std::string keyOrType, const Number& value) : name(std::move(keyOrType)), number(value) {}
  template <std::derived_from<Object> T>
  LayoutItem(std::string keyOrType, const Ref<T>& value) : name(std::move(keyOrType)), object(value), isObject(true) {}
  std::string name;
  Number number;
  Ref<Object> object;
  bool isObject = false;
};
using LayoutItems = std::vector<LayoutItem>;

class Layout : public Object {
 public:
  // "+" at the start of a key stands for the archive class name.
  Layout(std::string archiveName, std::int64_t version, LayoutItems keyed, LayoutItems sequential,
         Ref<Layout> base = {})
      : name_(std::move(archiveName)),
        keyed_(std::move(keyed)),
        sequential_(std::move(sequential)),
        base_(std::move(base)),
        descriptor_{"", name_.c_str(), version, base_ ? &base_->descriptor_ : nullptr, nullptr} {}

  const ClassDescriptor& classDescriptor() const override { return descriptor_; }
  void encodeWithCoder(KeyedCoder& coder) const override {
    if (base_) base_->encodeWithCoder(coder);
    if (!coder.allowsKeyedCoding()) {
      for (const LayoutItem& item : sequential_)
        item.isObject ? coder.encodeObject(item.object.get()) : coder.encodeValues(item.name, {item.number});
      return;
    }
    for (const auto& [name, number, object, isObject] : keyed_) {
      const std::string key = name.starts_with('+') ? name_ + name.substr(1) : name;
      if (isObject) {
        coder.encodeObject(object.get(), key);
      } else if (number.kind() == Number::Kind::Boolean) {
        coder.encodeBool(number.boolValue(), key);
      } else if (number.kind() == Number::Kind::Double) {
        coder.encodeDouble(number.doubleValue(), key);
      } else {
        coder.encodeInt64(number.int64Value(), key);
      }
    }
  }

 private:
  std::string name_;
  LayoutItems keyed_, sequential_;
  Ref<Layout> base_;
  ClassDescriptor descriptor_;
};

inline Ref<Layout> layout(const char* name, std::int64_t version, const LayoutItems& keyed,
                          const LayoutItems& sequential, const Ref<Layout>& base = {}) {
  return std::make_shared<Layout>(name, version, keyed, sequential, base);
}

inline const Number kYes = Number::boolean(true), kNo = Number::boolean(false);
inline const Ref<Object> kNil;

// clang-format off
inline Ref<Layout> infoLayout(double frameRate, std::int32_t timescale) {
  return layout("_OrbisCustomVideoModeInfo", 0,
                {{"+FrameRate", frameRate}, {"+PreferredTimeScale", timescale}}, {{"d", frameRate}, {"i", timescale}});
}

inline Ref<Layout> oldTicks(std::uint64_t value, std::uint64_t rate, bool isNegative, int mode, double frameRate,
                            std::int64_t version = 1) {
  return layout("OrbisVideoTimecode", version,
                {{"+Version", version}, {"+Mode", mode}, {"+CustomVideoFrameRate", frameRate}, {"+UseSeconds", kNo},
                 {"+TimeValue", value}, {"+TimeRate", rate}, {"+IsNegative", Number::boolean(isNegative)}},
                {{"i", 0}, {"Q", value}, {"Q", rate}, {"i", isNegative ? 1 : 0}, {"i", mode}, {"d", frameRate}});
}

inline Ref<Layout> oldSeconds(double seconds, bool isNegative, int mode, double frameRate) {
  return layout("OrbisVideoTimecode", 1,
                {{"+Version", 1}, {"+Mode", mode}, {"+CustomVideoFrameRate", frameRate}, {"+UseSeconds", kYes},
                 {"+TimeValue", seconds}, {"+IsNegative", Number::boolean(isNegative)}},
                {{"i", 1}, {"Q", 12345}, {"i", mode}, {"i", isNegative ? 1 : 0}, {"d", frameRate}});
}

inline Ref<Layout> ticksLayout(const MediaTime& time, int mode, const Ref<Object>& info, std::int64_t version = 2) {
  return layout("OrbisVideoTimecode", version,
                {{"+Version", version}, {"+Mode", mode}, {"+CustomVideoModeInfo", info}, {"+UseSeconds", kNo},
                 {"+RhoTimeValue", time.value}, {"+RhoTimeScale", time.timescale},
                 {"+RhoTimeFlags", static_cast<std::int32_t>(time.flags)}, {"+RhoTimeEpoch", time.epoch}},
                {{"i", 0}, {"q", time.value}, {"i", time.timescale}, {"I", time.flags}, {"q", time.epoch}, {"i", mode},
                 {"", info}});
}

inline Ref<Layout> secondsLayout(double seconds, int mode, const Ref<Object>& info) {
  return layout("OrbisVideoTimecode", 2,
                {{"+Version", 2}, {"+Mode", mode}, {"+CustomVideoModeInfo", info}, {"+UseSeconds", kYes},
                 {"+TimeValue", seconds}},
                {{"i", 1}, {"d", seconds}, {"i", mode}, {"", info}});
}

// The version behind the key is the video timecode's.
inline Ref<Layout> audioLayout(const Ref<Layout>& base, std::uint64_t rate, std::uint64_t phase) {
  return layout("OrbisTimecode", 0, {{"+Version", 2}, {"+AudioFrameRate", rate}, {"+SequencePhaseFrame", phase}},
                {{"Q", rate}, {"Q", phase}}, base);
}

// Likewise.
inline Ref<Layout> extendedLayout(const Ref<Layout>& base, double tempo, std::int64_t numerator,
                                  std::int64_t denominator, std::int64_t film) {
  return layout("OrbisExtendedTimecode", 0,
                {{"+Version", 2}, {"+Tempo", tempo}, {"+TimeSignatureNumerator", numerator},
                 {"+TimeSignatureDenominator", denominator}, {"+FilmType", film}},
                {{"d", tempo}, {"i", numerator}, {"i", denominator}, {"i", film}}, base);
}

// Sequentially a deputy's flags and numbers are integers, and no version stands before them.
inline Ref<Layout> deputyLayout(const char* name, std::int64_t version, LayoutItems options) {
  LayoutItems sequential;
  for (const LayoutItem& option : options) sequential.emplace_back("i", option.number);
  options.emplace(options.begin(), "+Version", version);
  return layout(name, version, options, sequential);
}

// What every number formatter keeps, and what a scrubbable one adds.
inline Ref<Layout> numbersLayout() {
  const auto text = [](const char* symbol) { return std::make_shared<TextObject>(symbol); };
  const Ref<Object> low = std::make_shared<Number>(-5), high = std::make_shared<Number>(2.5), zero = text("zero");
  const auto separators = [&] { return LayoutItems{{"NFDecimalSeparator", text(";")}, {"NFGroupingSeparator", text("'")}, {"NFMinusSign", text("~")}}; };
  LayoutItems keyed{{"+Version", 0}, {"NFMinimumIntegerDigits", 2}, {"NFMaximumIntegerDigits", 9}, {"NFMinimumFractionDigits", 1},
                    {"NFMaximumFractionDigits", 3}, {"NFUsesGroupingSeparator", kYes}, {"NFNumberStyle", 1}, {"NFFormatterBehavior", 1040}};
  LayoutItems sequential{{"q", 2}, {"q", 9}, {"q", 1}, {"q", 3}, {"i", 1}, {"i", 1}, {"i", 1040}};
  for (LayoutItems* items : {&keyed, &sequential}) {
    items->insert(items->end(), {{"NFMinimum", low}, {"NFMaximum", high}, {"NFZeroSymbol", zero}, {"NFNilSymbol", kNil}, {"NFTextForZero", text("00;0")}});
    for (const LayoutItem& item : separators()) items->push_back(item);
  }
  return layout("NumberFormatter", 0, keyed, sequential);
}

inline Ref<Layout> scrubbableLayout() {
  return layout("OrbisScrubbableNumberFormatter", 0,
                {{"OSCNFVersion", 0}, {"OSCNFScrubbingType", 1}, {"OSCNFFractionDigitsForSingleDigitScrubbingType", 5},
                 {"OSCNFFractionDigitsForWholeNumberScrubbingType", 4}, {"OSCNFIntegerDigitsForSingleDigitScrubbingType", 3},
                 {"OSCNFIntegerDigitsForWholeNumberScrubbingType", 2}},
                {{"i", 1}, {"i", 5}, {"i", 4}, {"i", 3}, {"i", 2}}, numbersLayout());
}

// In the order of the formats; those behind the last are absent.
inline Ref<Layout> collectionLayout(const std::vector<Ref<Object>>& deputies) {
  LayoutItems items;
  for (const char* key : {"+SMPTE", "+HMS", "+Video", "+Audio", "+Seconds", "+BarsBeats", "+FeetFrames"})
    items.emplace_back(key, items.size() < deputies.size() ? deputies[items.size()] : kNil);
  return layout("_OrbisTimecodeFormatterDeputyCollection", 0, items, items);
}

struct FormatterLayout {
  std::int64_t version;
  Ref<Object> deputies = {};
  int format = 0;
  bool allowsNegative = false;
  Ref<Object> minimum = {}, maximum = {}, nilSymbol = {}, prototype = {};
  int interpretation = 0;
};
inline Ref<Layout> formatterLayout(const FormatterLayout& f) {
  LayoutItems keyed{{"+Version", f.version}, {"OTFFormatDeputies", f.deputies}, {"OTFFormat", f.format},
                    {"OTFAllowsNegative", Number::boolean(f.allowsNegative)}, {"OTFMinimumTimecode", f.minimum},
                    {"OTFMaximumTimecode", f.maximum}, {"OTFNilSymbol", f.nilSymbol},
                    {"OTFDefaultObjectPrototype", f.prototype}};
  LayoutItems sequential{{"", f.deputies}, {"i", f.format}, {"i", int{f.allowsNegative}}, {"", f.minimum},
                         {"", f.maximum}};
  if (f.version >= 1) sequential.insert(sequential.end(), {{"", f.nilSymbol}, {"", f.prototype}});
  if (f.version >= 3) keyed.emplace_back("OTFSMPTEStringInterpretation", f.interpretation);
  if (f.version >= 3) sequential.emplace_back("i", f.interpretation);
  return layout("OrbisTimecodeFormatter", f.version, keyed, sequential);
}
// clang-format on

inline Ref<Object> dictionaryOf(std::map<std::int64_t, Ref<Object>> deputies) {
  const auto dictionary = std::make_shared<NumberedObjects>();
  dictionary->objects() = std::move(deputies);
  return dictionary;
}

}  // namespace quill
