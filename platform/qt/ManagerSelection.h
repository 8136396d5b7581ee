#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include <QAbstractNativeEventFilter>

namespace vigilo::platform {

/// Who manages something for all programs of an X server, such as the tray or the settings, by the
/// selection that only one can own (ICCCM, "Manager Selections"): which window that is, and when it
/// comes, goes or changes what it says. Make it on X11 only. Main thread.
class ManagerSelection : public QAbstractNativeEventFilter {
public:
    /// `onChanged` is called from the event loop whenever another owner, or none, is there, or it
    /// has changed this property of its window.
    ManagerSelection(std::string_view selection, std::string_view property,
                     std::function<void()> onChanged);
    ~ManagerSelection() override;
    ManagerSelection(const ManagerSelection&) = delete;
    ManagerSelection& operator=(const ManagerSelection&) = delete;

    /// Whether this desktop has an X server.
    static bool isPossible();

    /// The owner's window; 0 where there is none.
    std::uint32_t owner() const { return owner_; }

    /// The bytes of the property, of this type, without what is beyond `longest` of them; empty
    /// without an owner. Waits for the server.
    std::string property(std::uint32_t type, std::uint32_t longest) const;

    /// The number of the property's name, which is the type of some.
    std::uint32_t propertyName() const { return property_; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void look();

    std::function<void()> onChanged_;
    std::uint32_t selection_ = 0; ///< the atom that the manager owns
    std::uint32_t property_ = 0;  ///< the atom of the property
    std::uint32_t manager_ = 0;   ///< the atom that announces a new owner
    std::uint32_t owner_ = 0;
};

} // namespace vigilo::platform
