#pragma once

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/power/PrivateBus.h"

#include <memory>
#include <utility>

#include <QDBusMessage>
#include <QString>

namespace vigilo::platform {

/// Something granted that holds the machine awake; destroying it gives it back. Only off the main
/// thread that waits for the answer, for 2 s at most.
class Inhibition {
public:
    virtual ~Inhibition() = default;

    /// By which name of the session's bus it was granted: whoever has that forgets it at its end.
    /// Empty where it outlives that.
    virtual QString grantor() const { return {}; }
};

/// Held by a service of the session until it gets the call that gives it back. Needs the
/// application object.
class CookieInhibition : public Inhibition {
public:
    CookieInhibition(std::shared_ptr<PrivateBus> bus, const QDBusMessage& releaseCall);
    ~CookieInhibition() override;

    QString grantor() const override { return releaseCall_.service(); }

    CookieInhibition(const CookieInhibition&) = delete;
    CookieInhibition& operator=(const CookieInhibition&) = delete;

private:
    std::shared_ptr<PrivateBus> bus_;
    QDBusMessage releaseCall_;
};

/// Held by logind for as long as a descriptor is open.
class DescriptorInhibition : public Inhibition {
public:
    explicit DescriptorInhibition(FileDescriptor lock) : lock_(std::move(lock)) {}

private:
    FileDescriptor lock_;
};

} // namespace vigilo::platform
