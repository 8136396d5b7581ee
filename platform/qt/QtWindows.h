#pragma once

#include "platform/Windows.h"

#include <QQmlEngine>

namespace vigilo::platform {

/// Windows without the system's frame whose content is a QML type of the module "Vigilo".
class QtWindows : public Windows {
public:
    QtWindows();

    std::unique_ptr<Window> makeWindow(const WindowSpec& windowSpec,
                                       std::function<void()> onCloseRequested) override;
    std::unique_ptr<Cover> makeCover(const CoverSpec& coverSpec) override;

private:
    QQmlEngine engine_;
};

} // namespace vigilo::platform
