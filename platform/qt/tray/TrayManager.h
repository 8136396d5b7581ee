#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include <QAbstractNativeEventFilter>
#include <QColor>

namespace vigilo::platform {

/// The tray of an X11 panel, by the System Tray Protocol Specification: which one there is, and
/// when it comes and goes. Make it on X11 only. Main thread.
class TrayManager : public QAbstractNativeEventFilter {
public:
    /// `onChanged` is called from the event loop whenever another tray, or none, is there, or the
    /// tray has changed its colours.
    explicit TrayManager(std::function<void()> onChanged);
    ~TrayManager() override;
    TrayManager(const TrayManager&) = delete;
    TrayManager& operator=(const TrayManager&) = delete;

    /// Whether this desktop has an X server that trays could be on.
    static bool isPossible();

    /// Whether there is one now.
    bool isPresent() const { return tray_ != 0; }

    /// Whether pictures on it may have transparent parts.
    bool isTranslucent() const;

    /// The colour in which it wants pictures on it drawn; none where it does not say.
    std::optional<QColor> foreground() const;

    /// Asks it to take a window in.
    void dock(std::uint32_t window) const;

    /// The colour of the tray where one of our windows in it is; black when it cannot be told.
    static QColor colourBehind(std::uint32_t window);

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void look();

    std::function<void()> onChanged_;
    std::uint32_t selection_ = 0; ///< the atom that the tray owns
    std::uint32_t manager_ = 0;   ///< the atom that announces a new owner
    std::uint32_t colours_ = 0;   ///< the atom of the property with its colours
    std::uint32_t tray_ = 0;      ///< the owner's window
};

} // namespace vigilo::platform
