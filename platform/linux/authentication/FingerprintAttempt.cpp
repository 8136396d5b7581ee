#include "platform/linux/authentication/FingerprintAttempt.h"

#include <utility>

namespace vigilo::platform {

using authentication::Frame;
using authentication::FrameKind;

FingerprintAttempt::FingerprintAttempt(Events events)
    : events_(std::move(events)),
      helper_({.onMessage = [this](const Frame& frame) { take(frame); },
               .onEnd = [this](Verdict verdict) { helperEnded(verdict); }},
              Proof::fingerprint) {}

void FingerprintAttempt::take(const Frame& frame) {
    // Delays are for those who type, and the rest is not for this attempt.
    if (frame.kind == FrameKind::information || frame.kind == FrameKind::error) {
        hasSpoken_ = true;
        events_.onHint(frame.text, frame.kind == FrameKind::error);
    }
}

void FingerprintAttempt::helperEnded(Verdict verdict) {
    switch (verdict) {
    case Verdict::owner:
        events_.onOwner();
        break;
    case Verdict::refused:
        if (hasSpoken_) {
            events_.onHint("The fingerprint was not recognised. Use the password.", true);
        }
        break;
    case Verdict::failed:
        events_.onHint({}, false); // no reader, or none that works: as if there were none
        break;
    }
}

} // namespace vigilo::platform
