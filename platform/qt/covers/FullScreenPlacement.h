#pragma once

#include "platform/qt/covers/CoverPlacement.h"

#include <QMetaObject>

namespace vigilo::platform {

/// An ordinary full-screen window that asks for the focus again whenever it is lost: all that a
/// compositor without a protocol for covers allows.
class FullScreenPlacement : public CoverPlacement {
public:
    FullScreenPlacement(QQuickView& view, QScreen& screen);
    ~FullScreenPlacement() override;

    void show() override;
    void takeKeyboard() override;

private:
    QQuickView& view_;
    QMetaObject::Connection focusChange_;
};

} // namespace vigilo::platform
