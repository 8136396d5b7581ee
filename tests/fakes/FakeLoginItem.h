#pragma once

#include "platform/LoginItem.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace vigilo::fakes {

class FakeLoginItem : public platform::LoginItem {
public:
    platform::LoginItemStatus status() const override {
        if (passing.empty()) {
            return current;
        }
        const platform::LoginItemStatus first = passing.front();
        passing.pop_front();
        return first;
    }

    std::optional<std::string> registerItem() override {
        return change("register", platform::LoginItemStatus::enabled);
    }

    std::optional<std::string> unregisterItem() override {
        return change("unregister", platform::LoginItemStatus::notRegistered);
    }

    void openSettings() override { calls.emplace_back("open settings"); }

    mutable std::deque<platform::LoginItemStatus> passing; ///< told once each, before `current`
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
