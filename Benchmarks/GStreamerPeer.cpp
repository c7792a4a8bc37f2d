// The same jobs by GStreamer's video timecode. It takes memory by other means than operator new: not counted here.

#include "Kernels.h"
#include "Measure.h"

#include <gst/video/video.h>

namespace bench {

namespace {

struct Text {
  gchar* text;
  explicit Text(gchar* made) : text(made) {}
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { g_free(text); }
};
std::uint64_t answerOf(const Text& text) { return bench::answerOf(std::string_view(text.text)); }

struct Parsed {
  GstVideoTimeCode* timecode;
  explicit Parsed(GstVideoTimeCode* made) : timecode(made) {}
  Parsed(const Parsed&) = delete;
  Parsed& operator=(const Parsed&) = delete;
  ~Parsed() { gst_video_time_code_free(timecode); }
};
std::uint64_t answerOf(const Parsed& parsed) {
  const GstVideoTimeCode& t = *parsed.timecode;
  return kernel::subframesOf({t.hours, t.minutes, t.seconds, t.frames, 0}) / 80;
}

GstVideoTimeCode timecodeOfInput(std::size_t i) {
  const auto [hours, minutes, seconds, frames, none] = kernel::fieldsOf(frameOfInput(i) * 80);
  GstVideoTimeCode timecode{};
  gst_video_time_code_init(&timecode, 30000, 1001, nullptr, GST_VIDEO_TIME_CODE_FLAGS_DROP_FRAME, hours, minutes,
                           seconds, frames, none);
  return timecode;
}

}  // namespace

void measureGStreamer() {
  measure(kRender, Who::GStreamer, [] {
    return [timecodes = inputs(timecodeOfInput)](std::size_t i) {
      return Text(gst_video_time_code_to_string(&timecodes[i]));
    };
  });
  measure(kAddAndRender, Who::GStreamer, [] {
    return [timecodes = inputs(timecodeOfInput)](std::size_t i) mutable {
      gst_video_time_code_increment_frame(&timecodes[i]);
      return Text(gst_video_time_code_to_string(&timecodes[i]));
    };
  });
  measure(kParse, Who::GStreamer, [] {
    return [texts = labels()](std::size_t i) { return Parsed(gst_video_time_code_new_from_string(texts[i].c_str())); };
  });
  for (const bool isWide : {false, true}) {
    measureRescaling(Who::GStreamer, isWide, [](std::int64_t value, std::int32_t from, std::int32_t to) {
      return gst_util_uint64_scale_round(static_cast<guint64>(value), static_cast<guint64>(to),
                                         static_cast<guint64>(from));
    });
  }
}

}  // namespace bench
