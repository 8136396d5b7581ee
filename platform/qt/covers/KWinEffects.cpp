#include "platform/qt/covers/KWinEffects.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QLatin1StringView>

namespace vigilo::platform {

namespace {

constexpr QLatin1StringView kwinName("org.kde.KWin");
constexpr QLatin1StringView effectsPath("/Effects");
constexpr QLatin1StringView effectsInterface("org.kde.kwin.Effects");

/// Whether it shows all windows in an arrangement of its own, in some version of KWin.
bool isOverview(const QString& effect) {
    static const QStringList names{
        QStringLiteral("cube"),        QStringLiteral("desktopgrid"),
        QStringLiteral("overview"),    QStringLiteral("presentwindows"),
        QStringLiteral("tileseditor"), QStringLiteral("windowview"),
    };
    return names.contains(effect);
}

QDBusMessage effectsRequest(QLatin1StringView interface, const QString& method) {
    QDBusMessage result = QDBusMessage::createMethodCall(kwinName, effectsPath, interface, method);
    result.setAutoStartService(false);
    return result;
}

} // namespace

std::shared_ptr<KWinEffects> KWinEffects::suspend() {
    // New covers stand before the old ones go, and nothing comes back in between.
    static std::weak_ptr<KWinEffects> inUse;
    auto result = inUse.lock();
    if (!result) {
        result.reset(new KWinEffects);
        inUse = result;
    }
    return result;
}

KWinEffects::KWinEffects() {
    QDBusMessage question =
        effectsRequest(QLatin1StringView("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QString(effectsInterface) << QStringLiteral("loadedEffects");
    auto* const answer = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> loaded = *answer;
        if (loaded.isValid()) {
            unload(loaded.value().variant().toStringList());
        }
    });
}

KWinEffects::~KWinEffects() {
    for (const QString& effect : unloaded_) {
        send(QStringLiteral("loadEffect"), effect);
    }
}

void KWinEffects::unload(const QStringList& loaded) {
    for (const QString& effect : loaded) {
        if (isOverview(effect)) {
            unloaded_.append(effect);
            send(QStringLiteral("unloadEffect"), effect);
        }
    }
}

void KWinEffects::send(const QString& method, const QString& effect) const {
    QDBusMessage message = effectsRequest(effectsInterface, method);
    message << effect;
    bus_.send(message);
}

} // namespace vigilo::platform
