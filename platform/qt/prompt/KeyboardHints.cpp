#include "platform/qt/prompt/KeyboardHints.h"

namespace vigilo::platform {

KeyboardHints::KeyboardHints(QObject* parent)
    : QObject(parent),
      source_(KeyboardSource::make([this](const KeyboardState& state) { take(state); })) {}

void KeyboardHints::take(const KeyboardState& state) {
    if (state != state_) {
        state_ = state;
        Q_EMIT changed();
    }
}

} // namespace vigilo::platform
