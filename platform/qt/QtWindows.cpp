#include "platform/qt/QtWindows.h"

#include "platform/Fatal.h"
#include "platform/qt/ContentView.h"
#include "platform/qt/QtCover.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/covers/Leaving.h"
#include "platform/qt/frame/MenuModel.h"

#include <cstddef>
#include <utility>

#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlExtensionPlugin>
#include <QQuickItem>
#include <QScreen>

Q_IMPORT_QML_PLUGIN(VigiloPlugin)
Q_IMPORT_QML_PLUGIN(Vigilo_FramePlugin)
Q_IMPORT_QML_PLUGIN(Vigilo_PrivacyPlugin)

namespace vigilo::platform {

namespace {

// Some for each of several displays.
constexpr std::size_t keptDescriptors = 32;

/// As much of the size as the display has room for: with very large text it may have less.
QSize fitting(const QSize& size, const QScreen& screen) {
    QSize room = screen.availableGeometry().size();
    if (room == screen.geometry().size() && room.height() < size.height()) {
        // Not everybody tells of panels; most desktops have one at the top or the bottom.
        constexpr int panel = 36;
        room.rheight() -= panel;
    }
    return size.boundedTo(room);
}

/// A window whose content is made when it is first shown, which takes longer than all else at the
/// start: the status item need not wait for it.
class QtWindow : public Window {
public:
    QtWindow(QtWindows& windows, std::function<std::unique_ptr<ContentView>()> makeView,
             const QSize& size)
        : windows_(windows), makeView_(std::move(makeView)), size_(size) {}

    ~QtWindow() override { windows_.discard(std::move(view_)); }

    void makeKeyAndOrderFront() override {
        if (!view_) {
            view_ = makeView_();
        }
        view_->stayShown();
        if (!view_->isVisible()) {
            fit();
            const QRect available = view_->screen()->availableGeometry();
            if (!wasShown_) {
                view_->setPosition(available.center() - view_->geometry().center() +
                                   view_->position());
                wasShown_ = true;
            }
        }
        view_->showNormal();
        view_->raise();
        view_->requestActivate();
    }

    void close() override {
        if (view_) {
            view_->hideSoon();
        }
    }

    bool isVisible() const override {
        return view_ && isOnDisplay(*view_) && view_->windowState() != Qt::WindowMinimized;
    }

private:
    void fit() {
        const QSize size = fitting(size_, *view_->screen());
        view_->setMinimumSize(size);
        view_->setMaximumSize(size);
        view_->resize(size);
    }

    QtWindows& windows_;
    std::function<std::unique_ptr<ContentView>()> makeView_;
    std::unique_ptr<ContentView> view_;
    QSize size_; ///< where there is room
    bool wasShown_ = false;
};

} // namespace

QtWindows::QtWindows(MenuModel& mainMenu)
    : descriptors_(keptDescriptors),
      fontSearch_(std::async([] { QFontDatabase::hasFamily(QString()); })), mainMenu_(mainMenu) {
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

void QtWindows::setLook(const Look& look) {
    // Read by the type "Wishes".
    engine_.setProperty("isAnimated", look.isAnimated);
    engine_.setProperty("isContrastHigh", look.isContrastHigh);
}

std::unique_ptr<Window> QtWindows::makeWindow(const WindowSpec& windowSpec,
                                              std::function<void()> onCloseRequested) {
    return std::make_unique<QtWindow>(
        *this,
        [this, windowSpec, onCloseRequested] {
            auto view =
                std::make_unique<ContentView>(engine_, windowSpec.background, onCloseRequested);
            view->load(windowSpec.content, windowSpec.model);
            view->setFlags(Qt::Window | Qt::FramelessWindowHint);
            view->setTitle(QString::fromStdString(windowSpec.title));
            addFrame(*view);
            return view;
        },
        QSize(windowSpec.width, windowSpec.height));
}

std::unique_ptr<ContentView> QtWindows::makePanel(const QString& title, Qt::WindowFlags flags,
                                                  const std::string& content, QObject* model) {
    constexpr Colour ground{.red = 0.11, .green = 0.12, .blue = 0.16};
    auto view = std::make_unique<ContentView>(engine_, ground, nullptr);
    view->load(content, model);
    view->setFlags(flags | Qt::FramelessWindowHint);
    view->setTitle(title);
    view->fitToContent();
    QObject::connect(view.get(), &QWindow::visibleChanged, view.get(),
                     [this, loan = DescriptorReserve::Loan()](bool isVisible) mutable {
                         loan = isVisible ? descriptors_.lend() : nullptr;
                     });
    return view;
}

void QtWindows::discard(std::unique_ptr<ContentView> view) {
    if (view) {
        leaveDisplay(*view);
        view->unload();
        leaving_.take(std::move(view));
    }
}

/// Puts the desktop's part of a window above its content.
void QtWindows::addFrame(QQuickView& view) {
    QQmlComponent component(&engine_,
                            QUrl(QStringLiteral("qrc:/qt/qml/Vigilo/Frame/WindowFrame.qml")));
    auto* const frame = qobject_cast<QQuickItem*>(component.createWithInitialProperties(
        {{QStringLiteral("parent"), QVariant::fromValue(view.contentItem())},
         {QStringLiteral("mainMenu"), QVariant::fromValue(&mainMenu_)}}));
    if (frame == nullptr) {
        fatal("the frame of a window cannot be made");
    }
    frame->setParent(view.contentItem());
}

std::unique_ptr<Cover> QtWindows::makeCover(const CoverSpec& coverSpec) {
    QScreen* const screen = QtScreens::find(coverSpec.screen.name);
    // Gone since it was listed; the displays will be covered anew in a moment.
    return std::make_unique<QtCover>(
        engine_, coverSpec, screen != nullptr ? *screen : *QGuiApplication::primaryScreen(),
        descriptors_.lend(), leaving_);
}

} // namespace vigilo::platform
