#include "QKTimecodeProtocols.h"

namespace quill::inline v0 {

const Protocol QKBasicTimecode::legacyProtocol{"OrbisBasicTimecode"};
const Protocol QKBasicTimecode::protocol{"QKBasicTimecode", &QKBasicTimecode::legacyProtocol};
const Protocol QKSMPTETimecode::protocol{"QKSMPTETimecode"};
const Protocol QKOneDimensionalVideoTimecode::protocol{"QKOneDimensionalVideoTimecode"};
const Protocol QKOneDimensionalTimeTimecode::protocol{"QKOneDimensionalTimeTimecode"};

const Protocol QKHMSTimecode::protocol{"QKHMSTimecode"};
const Protocol QKOneDimensionalAudioTimecode::protocol{"QKOneDimensionalAudioTimecode"};
const Protocol QKMeasuredTimecode::protocol{"QKMeasuredTimecode"};
const Protocol QKFeetFramesTimecode::protocol{"QKFeetFramesTimecode"};

QKBasicTimecode::~QKBasicTimecode() = default;
QKSMPTETimecode::~QKSMPTETimecode() = default;
QKOneDimensionalVideoTimecode::~QKOneDimensionalVideoTimecode() = default;
QKOneDimensionalTimeTimecode::~QKOneDimensionalTimeTimecode() = default;
QKHMSTimecode::~QKHMSTimecode() = default;
QKOneDimensionalAudioTimecode::~QKOneDimensionalAudioTimecode() = default;
QKMeasuredTimecode::~QKMeasuredTimecode() = default;
QKFeetFramesTimecode::~QKFeetFramesTimecode() = default;

}  // namespace quill::inline v0
