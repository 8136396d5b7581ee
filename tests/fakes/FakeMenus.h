#pragma once

#include "platform/MenuBar.h"
#include "platform/StatusBar.h"
#include "tests/fakes/FakeWindows.h"

#include <memory>
#include <string>
#include <utility>

namespace vigilo::fakes {

class FakeMenuBar : public platform::MenuBar {
public:
    explicit FakeMenuBar(DesktopLog& log) : log_(log) {}

    void observe(platform::MenuRequests menuRequests) override {
        requests = std::move(menuRequests);
    }
    void setMainMenu(const platform::Menu& menu) override {
        mainMenu = menu;
        log_.emplace_back("main menu");
    }
    void setDockMenu(const platform::Menu& menu) override { dockMenu = menu; }

    platform::MenuRequests requests;
    platform::Menu mainMenu;
    platform::Menu dockMenu;

private:
    DesktopLog& log_;
};

class FakeStatusBar : public platform::StatusBar {
public:
    explicit FakeStatusBar(DesktopLog& log) : log_(log) {}

    std::unique_ptr<platform::StatusItem>
    makeStatusItem(platform::StatusItemSpec itemSpec) override {
        spec = std::move(itemSpec);
        log_.emplace_back("status item");
        return std::make_unique<FakeStatusItem>(*this);
    }

    platform::StatusItemSpec spec;
    platform::Menu menu;
    platform::StatusImage image;
    std::string toolTip;

private:
    class FakeStatusItem : public platform::StatusItem {
    public:
        explicit FakeStatusItem(FakeStatusBar& bar) : bar_(bar) {}
        ~FakeStatusItem() override { bar_.log_.emplace_back("no status item"); }

        void setMenu(const platform::Menu& menu) override {
            bar_.menu = menu;
            bar_.log_.emplace_back("status menu");
        }
        void setImage(const platform::StatusImage& image) override { bar_.image = image; }
        void setToolTip(std::string_view text) override { bar_.toolTip = text; }

    private:
        FakeStatusBar& bar_;
    };

    DesktopLog& log_;
};

} // namespace vigilo::fakes
