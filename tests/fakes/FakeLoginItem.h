#pragma once

#include "platform/LoginItem.h"

#include <optional>
#include <string>
#include <vector>

namespace vigilo::fakes {

class FakeLoginItem : public platform::LoginItem {
public:
    platform::LoginItemStatus status() const override { return current; }

    std::optional<std::string> registerItem() override {
        return change("register", platform::LoginItemStatus::enabled);
    }

    std::optional<std::string> unregisterItem() override {
        return change("unregister", platform::LoginItemStatus::notRegistered);
    }

    void openSettings() override { calls.emplace_back("open settings"); }

    platform::LoginItemStatus current = platform::LoginItemStatus::notRegistered;
    std::optional<std::string> error; ///< what a change fails with
    std::vector<std::string> calls;

private:
    std::optional<std::string> change(std::string call, platform::LoginItemStatus status) {
        calls.push_back(std::move(call));
        if (!error) {
            current = status;
        }
        return error;
    }
};

} // namespace vigilo::fakes
