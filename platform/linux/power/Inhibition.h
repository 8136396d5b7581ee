#pragma once

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/power/PrivateBus.h"

#include <memory>
#include <utility>

#include <QDBusMessage>

namespace vigilo::platform {

/// Something granted that holds the machine awake; destroying it gives it back without waiting for
/// an answer.
class Inhibition {
public:
    virtual ~Inhibition() = default;
};

/// Held by a service of the session until it gets the call that gives it back.
class CookieInhibition : public Inhibition {
public:
    CookieInhibition(std::shared_ptr<PrivateBus> bus, const QDBusMessage& releaseCall);
    ~CookieInhibition() override;
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
