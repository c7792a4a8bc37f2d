#include "QKCustomVideoModeInfo.h"

namespace quill::inline v0 {

const ClassDescriptor _QKCustomVideoModeInfo::descriptor{
    "_QKCustomVideoModeInfo", "_OrbisCustomVideoModeInfo", 0, &Object::descriptor,
    []() -> Ref<Object> { return std::make_shared<_QKCustomVideoModeInfo>(); }};

_QKCustomVideoModeInfo::_QKCustomVideoModeInfo() = default;
_QKCustomVideoModeInfo::~_QKCustomVideoModeInfo() = default;

void* _QKCustomVideoModeInfo::asProtocol(const Protocol& protocol) {
  return &protocol == &Copying::protocol ? this : nullptr;
}

Ref<Object> _QKCustomVideoModeInfo::copy() const {
  return std::make_shared<_QKCustomVideoModeInfo>(*this);
}

}  // namespace quill::inline v0
