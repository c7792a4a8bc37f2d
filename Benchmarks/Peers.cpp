// The same jobs by others, as far as their packages are installed.

#include "Measure.h"

#include <cstdlib>

#ifdef QUILL_PEER_libavutil
extern "C" {
#include <libavutil/mathematics.h>
#include <libavutil/timecode.h>
}
#endif
#ifdef QUILL_PEER_gstreamer_video_1_0
#include <gst/video/video.h>
#endif

namespace bench {

namespace {

#ifdef QUILL_PEER_libavutil
auto rendering(std::uint32_t step) {
  AVTimecode start;
  if (av_timecode_init(&start, {30000, 1001}, AV_TIMECODE_FLAG_DROPFRAME, 0, nullptr) != 0) std::abort();
  return [=, buffer = std::array<char, AV_TIMECODE_STR_SIZE>()](std::uint32_t& frame) mutable {
    return std::string_view(av_timecode_make_string(&start, buffer.data(), static_cast<int>(frame += step)), 11);
  };
}

void measureLibavutil() {
  measure(kRender, kLibavutil, over(frameAt, rendering(0)));
  measure(kAddAndRender, kLibavutil, over(frameAt, rendering(1)));
  measure(kParse, kLibavutil, over(labelAt, [parsed = AVTimecode()](const std::string& text) mutable {
            if (av_timecode_init_from_string(&parsed, {30000, 1001}, text.c_str(), nullptr) != 0) std::abort();
            return static_cast<std::uint64_t>(parsed.start);
          }));
  const auto rescale = [](std::int64_t value, std::int32_t from, std::int32_t to) {
    return av_rescale_rnd(value, to, from, AV_ROUND_NEAR_INF);
  };
  measureRescaling(kLibavutil, rescale, rescale);
}
#endif

#ifdef QUILL_PEER_gstreamer_video_1_0
// What it made is released again, as the library's results are. Its memory is not counted.
struct Released {
  void operator()(gchar* text) const { g_free(text); }
  void operator()(GstVideoTimeCode* timecode) const { gst_video_time_code_free(timecode); }
};
template <class T>
using Made = std::unique_ptr<T, Released>;

std::uint64_t answerOf(const Made<gchar>& text) { return bench::answerOf(std::string_view(text.get())); }
std::uint64_t answerOf(const Made<GstVideoTimeCode>& t) {
  return kernel::ticksOfFields({t->hours, t->minutes, t->seconds, t->frames, 0}) / kernel::kTicksPerFrame;
}

GstVideoTimeCode timecodeAt(std::size_t i) {
  const auto [hours, minutes, seconds, frames, none] = kernel::fieldsOf(frameAt(i) * 80);
  GstVideoTimeCode timecode{};
  gst_video_time_code_init(&timecode, 30000, 1001, nullptr, GST_VIDEO_TIME_CODE_FLAGS_DROP_FRAME, hours, minutes,
                           seconds, frames, none);
  return timecode;
}

void measureGStreamer() {
  const auto render = [](const GstVideoTimeCode& timecode) {
    return Made<gchar>(gst_video_time_code_to_string(&timecode));
  };
  measure(kRender, kGStreamer, over(timecodeAt, render));
  measure(kAddAndRender, kGStreamer, over(timecodeAt, [=](GstVideoTimeCode& timecode) {
            gst_video_time_code_increment_frame(&timecode);
            return render(timecode);
          }));
  measure(kParse, kGStreamer, over(labelAt, [](const std::string& text) {
            return Made<GstVideoTimeCode>(gst_video_time_code_new_from_string(text.c_str()));
          }));
  const auto rescale = [](std::int64_t value, std::int32_t from, std::int32_t to) {
    return gst_util_uint64_scale_round(static_cast<guint64>(value), static_cast<guint64>(to),
                                       static_cast<guint64>(from));
  };
  measureRescaling(kGStreamer, rescale, rescale);
}
#endif

}  // namespace

void measurePeers() {
#ifdef QUILL_PEER_libavutil
  measureLibavutil();
#endif
#ifdef QUILL_PEER_gstreamer_video_1_0
  measureGStreamer();
#endif
}

}  // namespace bench
