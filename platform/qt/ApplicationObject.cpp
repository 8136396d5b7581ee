#include "platform/qt/ApplicationObject.h"

#include "platform/linux/compositor/CompositorInterfaces.h"
#include "platform/qt/ConnectingToDisplay.h"
#include "platform/qt/PlatformChoice.h"

#include <algorithm>
#include <chrono>
#include <cstdarg>
#include <cstdlib>

#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <private/qhighdpiscaling_p.h>

#include <wayland-client-core.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

constexpr std::array<const char*, 4> scaleVariables{"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS",
                                                    "QT_FONT_DPI", "QT_WAYLAND_FORCE_DPI"};

// A busy compositor takes its time. Whatever does not answer is left to the toolkit, which waits
// for it as well.
constexpr auto compositorLimit = 5s;

/// The window is small and mostly still: drawing in software starts faster and needs less memory
/// than a graphics driver. Whoever names another way gets it.
void preferSoftwareRendering() {
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") &&
        qEnvironmentVariableIsEmpty("QMLSCENE_DEVICE")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
}

/// While it lives, keeps the toolkit from sharing its pictures with the X server. It gets
/// each as a descriptor, and when the process has none left it waits for it for ever. Sending them
/// costs about as little.
class PicturesAreSent {
public:
    PicturesAreSent() : isOurs_(qEnvironmentVariableIsEmpty(variable)) {
        if (isOurs_) {
            qputenv(variable, "1");
        }
    }
    ~PicturesAreSent() {
        // Not for the programs that we start.
        if (isOurs_) {
            qunsetenv(variable);
        }
    }
    PicturesAreSent(const PicturesAreSent&) = delete;
    PicturesAreSent& operator=(const PicturesAreSent&) = delete;

private:
    static constexpr auto variable = "QT_XCB_NO_MITSHM";
    bool isOurs_;
};

/// The platform to ask the toolkit for; empty to ask for none.
std::string platform() {
    // The Wayland library has a way of its own to tell that it cannot connect.
    wl_log_set_handler_client([](const char*, va_list) {});
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") ||
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        return {};
    }
    return platformChoice(compositorInterfaces(compositorLimit),
                          !qEnvironmentVariableIsEmpty("DISPLAY"));
}

} // namespace

ApplicationObject::ApplicationObject(char* programName)
    : startupId_(qEnvironmentVariable("DESKTOP_STARTUP_ID").toStdString()),
      platform_(platform()), arguments_{programName} {
    if (!platform_.empty()) {
        arguments_[1] = platformSwitch_.data();
        arguments_[2] = platform_.data();
        argumentCount_ = 3;
    }
    preferSoftwareRendering();
    // Lets a window on Wayland be without the role of an ordinary one, so that it can be a cover.
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    QCoreApplication::setApplicationName(QStringLiteral("vigilo"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VIGILO_VERSION));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Vigilo"));
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.vigilo.Vigilo"));
    const ConnectingToDisplay connecting;
    const PicturesAreSent picturesAreSent; // asked for once, when the server is connected to
    application_ = std::make_unique<QGuiApplication>(argumentCount_, arguments_.data());
}

ApplicationObject::~ApplicationObject() = default;

void ApplicationObject::scale(double textScale) {
    // On X11 it has come as the resolution of the fonts. On Wayland no protocol tells of it, and
    // the toolkit knows no such setting.
    const bool isChosen =
        std::any_of(scaleVariables.begin(), scaleVariables.end(),
                    [](const char* name) { return qEnvironmentVariableIsSet(name); });
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")) && !isChosen) {
        QHighDpiScaling::setGlobalFactor(textScale);
    }
}

int ApplicationObject::run() {
    return QGuiApplication::exec();
}

} // namespace vigilo::platform
