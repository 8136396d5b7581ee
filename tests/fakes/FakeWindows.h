#pragma once

#include "platform/Application.h"
#include "platform/Authenticator.h"
#include "platform/LockGuard.h"
#include "platform/Notifications.h"
#include "platform/Screens.h"
#include "platform/Windows.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vigilo::fakes {

/// Writes down, in order, what a program asks of its windows and its application object.
using DesktopLog = std::vector<std::string>;

class FakeWindows : public platform::Windows {
public:
    explicit FakeWindows(DesktopLog& log) : log_(log) {}

    std::unique_ptr<platform::Window> makeWindow(const platform::WindowSpec& windowSpec,
                                                 std::function<void()> onCloseRequested) override {
        made.push_back(windowSpec);
        requestClose = std::move(onCloseRequested);
        log_.push_back("make " + windowSpec.title);
        return std::make_unique<FakeWindow>(*this);
    }

    std::unique_ptr<platform::Cover> makeCover(const platform::CoverSpec& coverSpec) override {
        covers.push_back(coverSpec);
        log_.push_back("prepare " + coverSpec.screen.name);
        return std::make_unique<FakeCover>(*this, coverSpec.screen.name);
    }

    /// The displays that a cover hides now, in the order they were covered.
    std::vector<std::string> covered;
    std::vector<platform::CoverSpec> covers; ///< all that were made
    std::vector<platform::WindowSpec> made;
    std::function<void()> requestClose; ///< what the user's close button does
    bool isVisible = false;

private:
    class FakeWindow : public platform::Window {
    public:
        explicit FakeWindow(FakeWindows& windows) : windows_(windows) {}
        ~FakeWindow() override { windows_.log_.emplace_back("no window"); }

        void makeKeyAndOrderFront() override {
            windows_.isVisible = true;
            windows_.log_.emplace_back("show");
        }

        void close() override {
            windows_.isVisible = false;
            windows_.log_.emplace_back("close");
        }

        bool isVisible() const override { return windows_.isVisible; }

    private:
        FakeWindows& windows_;
    };

    class FakeCover : public platform::Cover {
    public:
        FakeCover(FakeWindows& windows, std::string screen)
            : windows_(windows), screen_(std::move(screen)) {}
        ~FakeCover() override { close(); }

        void orderFrontRegardless() override {
            windows_.log_.push_back("cover " + screen_);
            windows_.covered.push_back(screen_);
            isShown_ = true;
        }

        void makeKey() override { windows_.log_.push_back("key " + screen_); }

        void close() override {
            if (std::exchange(isShown_, false)) {
                windows_.log_.push_back("uncover " + screen_);
                windows_.covered.erase(
                    std::find(windows_.covered.begin(), windows_.covered.end(), screen_));
            }
        }

    private:
        FakeWindows& windows_;
        std::string screen_;
        bool isShown_ = false;
    };

    DesktopLog& log_;
};

class FakeScreens : public platform::Screens {
public:
    std::vector<platform::Screen> screens() const override { return attached; }
    void observe(std::function<void()> observer) override { onChange = std::move(observer); }

    /// Attaches displays of these names instead of the ones before.
    void attach(const std::vector<std::string>& names) {
        attached.clear();
        for (const std::string& name : names) {
            attached.push_back({.name = name, .frame = {.width = 1280, .height = 800}});
        }
        if (onChange) {
            onChange();
        }
    }

    std::vector<platform::Screen> attached{
        {.name = "one", .frame = {.width = 1280, .height = 800}}};
    std::function<void()> onChange;
};

class FakeAuthenticator : public platform::Authenticator {
public:
    struct Attempt {
        std::string reason;
        std::string cancelTitle;
        std::function<void(bool)> reply;
    };

    void evaluate(const std::string& reason, const std::string& cancelTitle,
                  std::function<void(bool)> reply) override {
        attempts.push_back({reason, cancelTitle, std::move(reply)});
    }

    std::vector<Attempt> attempts;
};

class FakeLockGuard : public platform::LockGuard {
public:
    void raise() override {
        isRaised = true;
        if (onRaised) {
            onRaised();
        }
    }
    void lower() override { isRaised = false; }

    bool isRaised = false;
    std::function<void()> onRaised;
};

class FakeNotifications : public platform::Notifications {
public:
    void silence() override { areSilent = true; }
    void resume() override { areSilent = false; }

    bool areSilent = false;
};

class FakeApplication : public platform::Application {
public:
    explicit FakeApplication(DesktopLog& log) : log_(log) {}

    void loadIcon() override { log_.emplace_back("icon"); }
    void activateIgnoringOtherApps() override { log_.emplace_back("activate"); }
    bool hasVisibleWindows() const override { return hasVisible; }
    void orderFrontStandardAboutPanel() override { log_.emplace_back("about"); }
    void terminate() override { log_.emplace_back("terminate"); }

    bool hasVisible = false;

private:
    DesktopLog& log_;
};

} // namespace vigilo::fakes
