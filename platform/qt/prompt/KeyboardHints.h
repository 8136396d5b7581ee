#pragma once

#include "platform/qt/prompt/KeyboardSource.h"

#include <memory>

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vigilo::platform {

/// Why a password may not come out as it is typed: Caps Lock and the keyboard's layout, live.
class KeyboardHints : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isCapsLockOn READ isCapsLockOn NOTIFY changed)
    Q_PROPERTY(QString layout READ layout NOTIFY changed)

public:
    explicit KeyboardHints(QObject* parent = nullptr);

    bool isCapsLockOn() const { return state_.isCapsLockOn; }

    /// Empty where it is not known.
    QString layout() const { return state_.layout; }

Q_SIGNALS:
    void changed();

private:
    void take(const KeyboardState& state);

    KeyboardState state_;
    std::unique_ptr<KeyboardSource> source_;
};

} // namespace vigilo::platform
