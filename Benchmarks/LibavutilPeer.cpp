// The same jobs by libavutil.

#include "Measure.h"

extern "C" {
#include <libavutil/mathematics.h>
#include <libavutil/timecode.h>
}

namespace bench {

namespace {

constexpr AVRational kRate = {30000, 1001};

// Renders input i, moved on by `step` frames at each run.
auto rendering(std::uint32_t step) {
  AVTimecode start;
  if (av_timecode_init(&start, kRate, AV_TIMECODE_FLAG_DROPFRAME, 0, nullptr) != 0) std::abort();
  return [=, frames = inputs(frameOfInput), buffer = std::array<char, AV_TIMECODE_STR_SIZE>()](std::size_t i) mutable {
    frames[i] += step;
    return std::string_view(av_timecode_make_string(&start, buffer.data(), static_cast<int>(frames[i])), 11);
  };
}

}  // namespace

void measureLibavutil() {
  measure(kRender, Who::Libavutil, [] { return rendering(0); });
  measure(kAddAndRender, Who::Libavutil, [] { return rendering(1); });
  measure(kParse, Who::Libavutil, [] {
    return [texts = labels(), parsed = AVTimecode()](std::size_t i) mutable {
      if (av_timecode_init_from_string(&parsed, kRate, texts[i].c_str(), nullptr) != 0) std::abort();
      return static_cast<std::uint64_t>(parsed.start);
    };
  });
  for (const bool isWide : {false, true}) {
    measureRescaling(Who::Libavutil, isWide, [](std::int64_t value, std::int32_t from, std::int32_t to) {
      return av_rescale_rnd(value, to, from, AV_ROUND_NEAR_INF);
    });
  }
}

}  // namespace bench
