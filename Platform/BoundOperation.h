// BoundOperation: one operation of a protocol, picked once and run on whatever object comes along.
//
// - It is constant data. Argument and result live on the caller's stack, so any thread may run one at any time.
// - It binds a read of a count, "std::uint64_t frames()", or a write of one, "void setFrames(std::uint64_t)".
// - Counts go in and come out as signed numbers; one from 2^63 up is the same bits as a negative one.
#pragma once

#include "Object.h"

namespace quill::inline v0 {

class BoundOperation {
 public:
  // Bound to nothing.
  constexpr BoundOperation() = default;

  // of<&QKOneDimensionalVideoTimecode::videoFrames>()
  template <auto Operation>
  static constexpr BoundOperation of() {
    return bind<Operation>(Operation);
  }

  // The count read, or 0 from a write; a read ignores the argument. For an object that does not serve the protocol, or
  // bound to nothing, it does nothing and answers 0.
  std::int64_t run(Object* target, std::int64_t argument) const {
    void* const served = protocol_ ? asProtocolOrAlias(target, *protocol_) : nullptr;
    return served ? call_(served, argument) : 0;
  }

 private:
  using Call = std::int64_t (*)(void* served, std::int64_t argument);

  constexpr BoundOperation(const Protocol& protocol, Call call) : protocol_(&protocol), call_(call) {}

  template <auto Operation, class P>
  static constexpr BoundOperation bind(std::uint64_t (P::*)()) {
    return {P::protocol, [](void* served, std::int64_t) {
              return static_cast<std::int64_t>((static_cast<P*>(served)->*Operation)());
            }};
  }

  template <auto Operation, class P>
  static constexpr BoundOperation bind(void (P::*)(std::uint64_t)) {
    return {P::protocol, [](void* served, std::int64_t argument) {
              (static_cast<P*>(served)->*Operation)(static_cast<std::uint64_t>(argument));
              return std::int64_t{0};
            }};
  }

  const Protocol* protocol_ = nullptr;
  Call call_ = nullptr;
};

}  // namespace quill::inline v0
