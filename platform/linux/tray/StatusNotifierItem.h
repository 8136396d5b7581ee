#pragma once

#include "platform/linux/tray/StatusNotifierTypes.h"

#include <functional>
#include <string>

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>

namespace vigilo::platform {

/// The program's item on the session bus, by the interface org.kde.StatusNotifierItem: what a panel
/// reads of it, and what the user does to it there. Main thread.
class StatusNotifierItem : public QObject {
    Q_OBJECT

public:
    struct Requests {
        std::function<void()> onPressed;
        /// Comes before a press where the desktop wants a token for coming to the front.
        std::function<void(const std::string&)> onActivationToken;
    };

    struct Icon {
        QString name; ///< in the icon theme; told only where this program's icons are installed
        /// For all other panels; drawn when one asks.
        std::function<StatusPixmaps()> pixmaps = [] { return StatusPixmaps(); };
        QString accessibilityDescription;
    };

    /// Offers the item on a connection, which may be without a bus.
    StatusNotifierItem(QDBusConnection bus, const QString& menuPath, Requests requests);
    ~StatusNotifierItem() override;

    /// An icon of another name is another picture.
    void setIcon(const Icon& icon);
    void setToolTip(const QString& toolTip);

    const Icon& icon() const { return icon_; }
    const QString& toolTip() const { return toolTip_; }
    const QString& menuPath() const { return menuPath_; }
    void press() const;
    void useActivationToken(const QString& token) const;

private:
    void send(const QString& signal);

    QDBusConnection bus_;
    QString menuPath_;
    Requests requests_;
    Icon icon_;
    QString toolTip_;
};

/// The interface's properties and methods.
class StatusNotifierAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconThemePath READ none)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(vigilo::platform::StatusPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ iconAccessibleDesc)
    Q_PROPERTY(QString OverlayIconName READ none)
    Q_PROPERTY(vigilo::platform::StatusPixmaps OverlayIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionIconName READ none)
    Q_PROPERTY(vigilo::platform::StatusPixmaps AttentionIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionMovieName READ none)
    Q_PROPERTY(vigilo::platform::StatusToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

public:
    explicit StatusNotifierAdaptor(StatusNotifierItem& item);

    static QString category() { return QStringLiteral("ApplicationStatus"); }
    static QString id() { return QStringLiteral("vigilo"); }
    static QString title() { return QStringLiteral("Vigilo"); }
    static QString status() { return QStringLiteral("Active"); }
    static int windowId() { return 0; }
    static QString none() { return {}; }
    static StatusPixmaps noPixmaps() { return {}; }
    static bool itemIsMenu() { return false; }
    QString iconName() const;
    StatusPixmaps iconPixmap() const { return item_.icon().pixmaps(); }
    QString iconAccessibleDesc() const { return item_.icon().accessibilityDescription; }
    StatusToolTip toolTip() const;
    QDBusObjectPath menu() const { return QDBusObjectPath(item_.menuPath()); }

public Q_SLOTS:
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString& orientation);
    void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);

private:
    StatusNotifierItem& item_;
};

} // namespace vigilo::platform
