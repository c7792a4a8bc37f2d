// _QKCustomVideoModeInfo: the frame rate and the tick rate of a custom video mode.
//
// - A new one holds 0 and 0: not set.
#pragma once

#include "../Platform/Object.h"

namespace quill::inline v0 {

class QUILL_EXPORT _QKCustomVideoModeInfo : public Object {
 public:
  static const ClassDescriptor descriptor;

  _QKCustomVideoModeInfo();
  _QKCustomVideoModeInfo(const _QKCustomVideoModeInfo&) = default;
  _QKCustomVideoModeInfo& operator=(const _QKCustomVideoModeInfo&) = default;
  template <ProperlyDerivedFrom<_QKCustomVideoModeInfo> Derived>
  _QKCustomVideoModeInfo(const Derived&) = delete;
  template <ProperlyDerivedFrom<_QKCustomVideoModeInfo> Derived>
  _QKCustomVideoModeInfo& operator=(const Derived&) = delete;
  ~_QKCustomVideoModeInfo() override;

  explicit _QKCustomVideoModeInfo(KeyedCoder& coder);
  void encodeWithCoder(KeyedCoder& coder) const override;
  static bool supportsSecureCoding() { return true; }

  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  void* asProtocol(const Protocol& protocol) override;
  Ref<Object> copy() const override;

  double frameRate = 0;                 // frames per second; 0: not set
  std::int32_t preferredTimeScale = 0;  // ticks per second
};

}  // namespace quill::inline v0
