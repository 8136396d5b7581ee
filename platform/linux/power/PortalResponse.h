#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include <QDBusConnection>
#include <QEventLoop>
#include <QObject>
#include <QVariantMap>

namespace vigilo::platform {

inline constexpr auto portalService = "org.freedesktop.portal.Desktop";
inline constexpr auto portalRequestInterface = "org.freedesktop.portal.Request";

/// The answer that the desktop portal gives to one request some time after it has accepted it. Used
/// on one thread, any one.
class PortalResponse : public QObject {
    Q_OBJECT

public:
    /// Listens from now on; `path` is the request's, known before it is made, so that the answer
    /// cannot come before somebody listens.
    PortalResponse(QDBusConnection connection, const QString& path);

    /// Blocks until the answer is there, for `limit` at most; 0 is a yes.
    std::optional<std::uint32_t> wait(std::chrono::milliseconds limit);

private Q_SLOTS:
    void respond(uint response, const QVariantMap& results);

private:
    QEventLoop loop_;
    std::optional<std::uint32_t> response_;
};

} // namespace vigilo::platform
