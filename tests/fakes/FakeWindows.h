#pragma once

#include "platform/Application.h"
#include "platform/Windows.h"

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

    std::vector<platform::WindowSpec> made;
    std::function<void()> requestClose; ///< what the user's close button does
    bool isVisible = false;

private:
    class FakeWindow : public platform::Window {
    public:
        explicit FakeWindow(FakeWindows& windows) : windows_(windows) {}

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

    DesktopLog& log_;
};

class FakeApplication : public platform::Application {
public:
    explicit FakeApplication(DesktopLog& log) : log_(log) {}

    void loadIcon() override { log_.emplace_back("icon"); }
    void activateIgnoringOtherApps() override { log_.emplace_back("activate"); }
    void terminate() override { log_.emplace_back("terminate"); }

private:
    DesktopLog& log_;
};

} // namespace vigilo::fakes
