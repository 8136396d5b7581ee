#pragma once

#include "platform/Screens.h"
#include "platform/Windows.h"
#include "privacy/AgentLockView.h"

#include <memory>

namespace vigilo {

/// One display behind the lock screen.
class PrivacyWindow {
public:
    /// Made for one screen as it is now; the actions are those of its two buttons.
    PrivacyWindow(platform::Windows& windows, const platform::Screen& screen,
                  const std::shared_ptr<AwakeController>& controller, AgentLockView::Action unlock,
                  AgentLockView::Action useAppleLock);

    void orderFrontRegardless() { cover_->orderFrontRegardless(); }
    void makeKey() { cover_->makeKey(); }
    void close() { cover_->close(); }

private:
    AgentLockView view_;
    std::unique_ptr<platform::Cover> cover_;
};

} // namespace vigilo
