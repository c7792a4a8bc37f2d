#include "QKCustomVideoModeInfo.h"

#include "../Platform/KeyedCoder.h"

namespace quill::inline v0 {

const ClassDescriptor _QKCustomVideoModeInfo::descriptor{
    "_QKCustomVideoModeInfo",
    "_OrbisCustomVideoModeInfo",
    0,
    &Object::descriptor,
    []() -> Ref<Object> { return std::make_shared<_QKCustomVideoModeInfo>(); },
    [](KeyedCoder& coder) -> Ref<Object> { return std::make_shared<_QKCustomVideoModeInfo>(coder); }};

_QKCustomVideoModeInfo::_QKCustomVideoModeInfo() = default;
_QKCustomVideoModeInfo::~_QKCustomVideoModeInfo() = default;

void* _QKCustomVideoModeInfo::asProtocol(const Protocol& protocol) {
  return &protocol == &Copying::protocol || &protocol == &Coding::protocol ? this : nullptr;
}

Ref<Object> _QKCustomVideoModeInfo::copy() const { return std::make_shared<_QKCustomVideoModeInfo>(*this); }

_QKCustomVideoModeInfo::_QKCustomVideoModeInfo(KeyedCoder& coder) {
  const DecodingRegistration registration(coder, descriptor);
  if (coder.allowsKeyedCoding()) {
    frameRate = coder.decodeDouble("_OrbisCustomVideoModeInfoFrameRate");
    preferredTimeScale = coder.decodeInt32("_OrbisCustomVideoModeInfoPreferredTimeScale");
    return;
  }
  Number values[2];
  coder.decodeValues("di", values);
  frameRate = values[0].doubleValue();
  preferredTimeScale = static_cast<std::int32_t>(values[1].int64Value());
}

void _QKCustomVideoModeInfo::encodeWithCoder(KeyedCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeDouble(frameRate, "_OrbisCustomVideoModeInfoFrameRate");
    coder.encodeInt32(preferredTimeScale, "_OrbisCustomVideoModeInfoPreferredTimeScale");
  } else {
    coder.encodeValues("di", {frameRate, preferredTimeScale});
  }
}

}  // namespace quill::inline v0
