#include "privacy/PrivacyWindow.h"

#include <utility>

namespace vigilo {

namespace {
constexpr platform::Colour background{.red = 0.025, .green = 0.032, .blue = 0.06, .alpha = 1};
}

PrivacyWindow::PrivacyWindow(platform::Windows& windows, const platform::Screen& screen,
                             const std::shared_ptr<AwakeController>& controller,
                             AgentLockView::Action unlock, AgentLockView::Action useAppleLock)
    : view_(controller, std::move(unlock), std::move(useAppleLock)),
      cover_(windows.makeCover({.title = "Agent Lock",
                                .screen = screen,
                                .background = background,
                                .content = "Privacy/AgentLockView",
                                .model = &view_})) {}

} // namespace vigilo
