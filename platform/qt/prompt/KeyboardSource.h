#pragma once

#include <functional>
#include <memory>

#include <QString>

namespace vigilo::platform {

/// What decides, besides the keys, which characters they type.
struct KeyboardState {
    bool isCapsLockOn = false;
    QString
        layout; ///< as the system names it, such as "US" or "German"; empty when it does not tell

    bool operator==(const KeyboardState&) const = default;
};

/// Watches the keyboard of the session. Main thread.
class KeyboardSource {
public:
    /// Called from the event loop; perhaps without a difference to the call before.
    using Listener = std::function<void(const KeyboardState&)>;

    /// For the display server of this program; null where nothing can be known.
    static std::unique_ptr<KeyboardSource> make(Listener listener);

    KeyboardSource() = default;
    virtual ~KeyboardSource() = default;
    KeyboardSource(const KeyboardSource&) = delete;
    KeyboardSource& operator=(const KeyboardSource&) = delete;
};

} // namespace vigilo::platform
