#pragma once

#include "platform/Application.h"
#include "platform/linux/TerminationSignals.h"

#include <memory>

#include <QObject>
#include <QSocketNotifier>

namespace vigilo::platform {

class ContentView;
class QtWindows;

/// The Qt application as the desktop knows it. Signals and the session manager's end of session
/// lead to the same end of the event loop as `terminate()`. Needs the application object.
class QtApplication : public QObject, public Application {
    Q_OBJECT

public:
    explicit QtApplication(QtWindows& windows);
    ~QtApplication() override;

    void loadIcon() override;
    void activateIgnoringOtherApps() override;
    bool hasVisibleWindows() const override;
    void orderFrontStandardAboutPanel() override;
    void terminate() override;

    /// Lets the next window that is activated come to the front, where the desktop wants a token
    /// for that.
    static void useActivationToken(const std::string& token);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    TerminationSignals signals_;
    QSocketNotifier signalNotifier_;
    QtWindows& windows_;
    std::unique_ptr<ContentView> aboutPanel_; ///< made when it is first asked for
};

} // namespace vigilo::platform
