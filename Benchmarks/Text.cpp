// Labels and other notations through the formatter.

#include "Kernels.h"
#include "Measure.h"

#include "../Framework/QKExtendedTimecode.h"
#include "../Framework/QKTimecodeFormatter.h"

namespace bench {

namespace {

using namespace quill;

constexpr std::int64_t kFramesTag = 3;

// A formatter, with a value that entries start from.
Ref<QKTimecodeFormatter> formatterOf(QKTimecodeFormat format) {
  auto formatter = std::make_shared<QKTimecodeFormatter>();
  formatter->setTimecodeFormat(format);
  formatter->setCurrentTimecode(frameValue(1).copy());
  return formatter;
}

// What renders input i of the values that `at` makes.
template <class At>
auto rendering(At at, Ref<QKTimecodeFormatter> formatter) {
  return
      [values = inputs(at), formatter](std::size_t i) mutable { return formatter->stringForObjectValue(&values[i]); };
}

// What parses text i.
auto parsing(std::vector<std::string> texts, Ref<QKTimecodeFormatter> formatter) {
  return [texts, formatter](std::size_t i) {
    Ref<Object> value;
    if (!formatter->getObjectValue(&value, texts[i], nullptr)) std::abort();
    return value;
  };
}

const auto makeRendering = [] { return rendering(frameValue<>, formatterOf(QKTimecodeFormatSMPTE)); };
const auto makeParsing = [] { return parsing(labels(), formatterOf(QKTimecodeFormatSMPTE)); };

void measureLabels() {
  measure(kRender, Who::Library, makeRendering);
  measure(kRender, Who::Floor, [] {
    return [frames = inputs(frameOfInput), buffer = std::array<char, 12>()](std::size_t i) mutable {
      kernel::renderLabel(frames[i], buffer.data());
      return std::string_view(buffer.data(), 11);
    };
  });

  measure(kAddAndRender, Who::Library, [] {
    return [values = inputs(frameValue<>), formatter = formatterOf(QKTimecodeFormatSMPTE)](std::size_t i) mutable {
      values[i].addVideoFrames(1);
      return formatter->stringForObjectValue(&values[i]);
    };
  });
  measure(kAddAndRender, Who::Floor, [] {
    return [frames = inputs(frameOfInput), buffer = std::array<char, 12>()](std::size_t i) mutable {
      kernel::renderLabel(++frames[i], buffer.data());
      return std::string_view(buffer.data(), 11);
    };
  });

  measure(kParse, Who::Library, makeParsing);
  measure(kParse, Who::Floor, [] {
    return [texts = labels()](std::size_t i) { return std::uint64_t{kernel::parseLabel(texts[i].data())}; };
  });

  measure("step a segment", Who::Library, [] {
    return [values = inputs(frameValue<>), formatter = formatterOf(QKTimecodeFormatSMPTE)](std::size_t i) mutable {
      Ref<Object> stepped;
      formatter->getObjectValueIncrementingSegmentWithTag(&stepped, kFramesTag, 1, &values[i]);
      return stepped;
    };
  });

  // As large as the one that parsing and stepping make.
  measure(kAllocation, Who::Library, [] {
    const auto value = frameValue(1).copy();
    return [size = latestAllocation](std::size_t) {
      void* block = ::operator new(size);
      benchmark::DoNotOptimize(block);
      ::operator delete(block);
      return std::uint64_t{0};
    };
  });
}

// Each thread has a formatter and values of its own.
void measureThreads() {
  for (const int threads : {1, 2}) {
    const Who who = threads == 1 ? Who::OneThread : Who::TwoThreads;
    measure(kRender, who, makeRendering)->Threads(threads)->UseRealTime();
    measure(kParse, who, makeParsing)->Threads(threads)->UseRealTime();
  }
}

std::string digitsText(std::string_view what, int digits) {
  return std::string(what) + ' ' + std::to_string(digits) + " digits";
}

// A number of so many digits.
std::int64_t numberOfInput(std::size_t i, int digits) {
  std::int64_t lowest = 1;
  for (int d = 1; d < digits; ++d) lowest *= 10;
  return lowest + static_cast<std::int64_t>(i) * (lowest * 9 / std::int64_t{kInputs});
}

void measureDigits() {
  for (const int digits : {2, 3, 6, 9}) {
    const auto hours = [=](std::size_t i) { return numberOfInput(i, digits); };
    measure(digitsText("render, hours of", digits), Who::Library, [=] {
      const auto at = [=](std::size_t i) {
        return valueAt<QKVideoTimecode>(hours(i) * 3600 * kTickRate + frameOfInput(i) % 100000 * kTicksPerFrame);
      };
      return rendering(at, formatterOf(QKTimecodeFormatSMPTE));
    });
    measure(digitsText("parse, hours of", digits), Who::Library, [=] {
      const auto all = labels();
      return parsing(inputs([&](std::size_t i) { return std::to_string(hours(i)) + all[i].substr(2); }),
                     formatterOf(QKTimecodeFormatSMPTE));
    });
  }
  for (const int digits : {2, 6, 9, 12}) {
    const auto frames = [=](std::size_t i) { return numberOfInput(i, digits); };
    measure(digitsText("render, frames of", digits), Who::Library, [=] {
      return rendering([=](std::size_t i) { return valueAt<QKVideoTimecode>(frames(i) * kTicksPerFrame); },
                       formatterOf(QKTimecodeFormatVideoFrames));
    });
    measure(digitsText("parse, frames of", digits), Who::Library, [=] {
      return parsing(inputs([=](std::size_t i) { return std::to_string(frames(i)); }),
                     formatterOf(QKTimecodeFormatVideoFrames));
    });
  }
}

void measureNotations() {
  const std::pair<const char*, QKTimecodeFormat> rows[] = {
      {"SMPTE", QKTimecodeFormatSMPTE},        {"HMS", QKTimecodeFormatHMS},
      {"frames", QKTimecodeFormatVideoFrames}, {"audio frames", QKTimecodeFormatAudioFrames},
      {"seconds", QKTimecodeFormatSeconds},    {"bars", QKTimecodeFormatBarsBeats},
      {"feet", QKTimecodeFormatFeetFrames}};
  for (const auto& [name, format] : rows) {
    measure(std::string("render as ") + name, Who::Library,
            [format = format] { return rendering(frameValue<QKExtendedTimecode>, formatterOf(format)); });
  }
  measure("render, subframes shown", Who::Library, [] {
    auto formatter = formatterOf(QKTimecodeFormatSMPTE);
    formatter->setSMPTEDisplaysSubframes(true);
    return rendering(subframeValue<>, formatter);
  });
  for (const std::size_t fields : {1U, 2U, 3U}) {
    measure("parse, fields typed: " + std::to_string(fields), Who::Library, [=] {
      const auto all = labels();
      return parsing(inputs([&](std::size_t i) { return all[i].substr(12 - 3 * fields); }),
                     formatterOf(QKTimecodeFormatSMPTE));
    });
  }
}

}  // namespace

std::vector<std::string> labels() {
  return inputs([](std::size_t i) {
    std::string text(11, ' ');
    kernel::renderLabel(frameOfInput(i), text.data());
    return text;
  });
}

void measureText() {
  measureLabels();
  measureThreads();
  measureNotations();
  measureDigits();
}

}  // namespace bench
