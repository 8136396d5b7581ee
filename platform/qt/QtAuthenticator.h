#pragma once

#include "platform/Authenticator.h"

#include <functional>
#include <memory>
#include <string>

#include <QPointer>
#include <QQuickItem>

namespace vigilo::platform {

class UnlockPromptModel;

/// Asks for the owner's password in a sheet over the window that has the keyboard. Main thread.
class QtAuthenticator : public Authenticator {
public:
    QtAuthenticator();
    ~QtAuthenticator() override;

    void evaluate(const std::string& reason, const std::string& cancelTitle,
                  std::function<void(bool isOwner)> reply) override;

private:
    void end(bool isOwner);
    void removeSheet();

    std::function<void(bool)> reply_;
    std::unique_ptr<UnlockPromptModel> model_;
    QPointer<QQuickItem> sheet_;
    QPointer<QQuickItem> focusBefore_;
};

} // namespace vigilo::platform
