#pragma once

#include "platform/Notifications.h"
#include "platform/linux/bus/SessionBus.h"

#include <cstdint>
#include <memory>
#include <optional>

#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

namespace vigilo::platform {

/// Silences notifications by an inhibition, which their service keeps for as long as this program
/// is on the bus. A desktop that has no more than a setting of the user's for it is left alone: a
/// program that is killed could not set it back.
class DesktopNotifications : public QObject, public Notifications {
public:
    /// The bus outlives it.
    explicit DesktopNotifications(const SessionBus& bus);
    ~DesktopNotifications() override;

    void silence() override;
    void resume() override;

private:
    /// What a service granted; `owner` is its unique name.
    struct Grant {
        QString owner;
        std::uint32_t cookie;
    };

    void ask();
    void giveBack(const Grant& grant);

    const SessionBus& bus_;
    std::unique_ptr<QDBusServiceWatcher> owner_; ///< only while they are silenced
    std::optional<Grant> grant_;
    int generation_ = 0; ///< what was asked for in an earlier one is given back when it comes
};

} // namespace vigilo::platform
