#pragma once

#include <functional>
#include <string>

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace vigilo::platform {

class SessionBus;

/// The program's id: the name it owns on the session bus and the one of its desktop file.
inline constexpr auto applicationId = "io.github.vigilo.Vigilo";

/// The running program as others on the session bus reach it: `org.freedesktop.Application`. It
/// makes sure that there is one instance only; on a bus that takes the place of the first one it
/// has the name where nobody was faster. Main thread.
class ApplicationService : public QObject {
    Q_OBJECT

public:
    /// What comes with a request; both may be empty.
    struct Activation {
        std::string token;     ///< lets a window come to the front on Wayland
        std::string startupId; ///< on X11; its desktop waits for the end of this start
    };

    /// What others may ask for; called from the event loop.
    struct Requests {
        std::function<void(const Activation&)> onActivate;
        std::function<void(const std::string& action, const Activation&)> onAction;
    };

    enum class Claim {
        first,        ///< nobody else runs, or there is no session bus to know it by
        passedOn,     ///< the running instance was asked to come forward
        doesNotAnswer ///< there is one that did not answer within five seconds
    };

    /// The bus outlives it.
    explicit ApplicationService(SessionBus& bus);

    /// Becomes the one instance, or asks the one that runs to come forward with the activation
    /// token and the startup id that this program was started with.
    Claim claim(const std::string& startupId);

    /// From now on requests are served.
    void serve(Requests requests);

    void activate(const QVariantMap& platformData) const;
    void activateAction(const QString& action, const QVariantMap& platformData) const;

private:
    bool takeName();
    bool passOn(const std::string& startupId);
    void busChanged();

    SessionBus& bus_;
    Requests requests_;
};

/// The interface of the Desktop Entry standard, section "D-Bus Activation".
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(ApplicationService& service);

public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& action, const QVariantList& parameter,
                        const QVariantMap& platformData);

private:
    ApplicationService& service_;
};

} // namespace vigilo::platform
