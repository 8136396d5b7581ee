#pragma once

#include "platform/PowerAssertions.h"
#include "platform/linux/power/InhibitionTaker.h"

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>

#include <QObject>
#include <QTimer>

class QDBusServiceWatcher;

namespace vigilo::platform {

/// Power assertions over D-Bus, held with whatever the running desktop honours. When a service that
/// matters comes, goes or restarts, or the machine wakes from suspend, each assertion is taken
/// again, the new lock before the old one is let go; a failure is tried again after growing pauses.
/// Needs the application object. Main thread only.
class DesktopPowerAssertions : public QObject, public PowerAssertions {
    Q_OBJECT

public:
    DesktopPowerAssertions();
    ~DesktopPowerAssertions() override;

    PowerAssertion create(std::string_view type, std::uint32_t level,
                          std::string_view name) override;
    void release(std::uint32_t id) override;

private Q_SLOTS:
    void prepareForSleep(bool begins);

private:
    /// One assertion held.
    struct Held {
        std::string reason;
        InhibitionTaker::Inhibitions inhibitions;
        std::shared_ptr<InhibitionTaker> retake; ///< the latest attempt under way
        std::chrono::milliseconds pause{};       ///< before the next attempt
    };

    void watch(QDBusServiceWatcher& watcher, std::initializer_list<InhibitMeans> services);
    void retakeAll();
    void retake(std::uint32_t id);
    void finishRetake(std::uint32_t id, const std::shared_ptr<InhibitionTaker>& attempt);

    PowerBuses watched_;
    std::map<std::uint32_t, Held> held_;
    std::uint32_t nextId_ = 1;
    QTimer retryTimer_;
};

} // namespace vigilo::platform
