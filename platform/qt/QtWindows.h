#pragma once

#include "platform/Windows.h"
#include "platform/linux/DescriptorReserve.h"
#include "platform/qt/covers/LeavingWindows.h"

#include <future>

#include <QQmlEngine>

class QQuickView;

namespace vigilo::platform {

class ContentView;
class MenuModel;

/// Windows without the system's frame whose content is a QML type of the module "Vigilo".
class QtWindows : public Windows {
public:
    /// What the desktop's settings ask of every window.
    struct Look {
        bool isAnimated = true;
        bool isContrastHigh = false;
    };

    /// `mainMenu` is offered by the windows that makeWindow() makes.
    explicit QtWindows(MenuModel& mainMenu);

    /// Of those that are there, too. Without it, nothing out of the usual.
    void setLook(const Look& look);

    std::unique_ptr<Window> makeWindow(const WindowSpec& windowSpec,
                                       std::function<void()> onCloseRequested) override;
    std::unique_ptr<Cover> makeCover(const CoverSpec& coverSpec) override;

    /// A small window of the size that its content wants, hidden at first; `content` and `model`
    /// as in WindowSpec. It hides when it is closed.
    std::unique_ptr<ContentView> makePanel(const QString& title, Qt::WindowFlags flags,
                                           const std::string& content, QObject* model);

    /// Removes one of them, or of those behind the others.
    void discard(std::unique_ptr<ContentView> view);

private:
    void addFrame(QQuickView& view);

    /// A window needs some for its pictures, and the lock for its helpers; the toolkit does not
    /// survive without.
    DescriptorReserve descriptors_;
    /// Finds out which fonts there are, which the first text has to wait for.
    std::future<void> fontSearch_;
    MenuModel& mainMenu_;
    QQmlEngine engine_;
    LeavingWindows leaving_;
};

} // namespace vigilo::platform
