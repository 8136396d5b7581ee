#include "platform/linux/workspace/Appearance.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include <systemd/sd-bus.h>

namespace vigilo::platform {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::microseconds answerLimit = 500ms; // for each of two answers
constexpr double smallestScale = 0.5;
constexpr double largestScale = 3;

struct Close {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

struct Unref {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, Unref>;

/// The one desktop whose session always has the portal. Elsewhere starting it can take very long.
bool startsPortal() {
    const char* const desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return desktop != nullptr && std::string_view(desktop).find("GNOME") != std::string_view::npos;
}

Message setting(sd_bus& bus, const char* key) {
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(&bus, &made, "org.freedesktop.portal.Desktop",
                                       "/org/freedesktop/portal/desktop",
                                       "org.freedesktop.portal.Settings", "Read") < 0) {
        return nullptr;
    }
    const Message call(made);
    sd_bus_message* answered = nullptr;
    if (sd_bus_message_append(call.get(), "ss", "org.gnome.desktop.interface", key) < 0 ||
        sd_bus_message_set_auto_start(call.get(), startsPortal() ? 1 : 0) < 0 ||
        sd_bus_call(&bus, call.get(), static_cast<std::uint64_t>(answerLimit.count()), nullptr,
                    &answered) < 0) {
        return nullptr;
    }
    return Message(answered);
}

/// Goes into the variants, of which there are two around the value, to a value of this type.
bool enter(sd_bus_message& message, char wanted) {
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(&message, &type, &contents) > 0 &&
           type == SD_BUS_TYPE_VARIANT) {
        if (sd_bus_message_enter_container(&message, type, contents) < 0) {
            return false;
        }
    }
    return type == wanted;
}

std::optional<double> number(sd_bus& bus, const char* key) {
    const Message answer = setting(bus, key);
    double value = 0;
    if (answer && enter(*answer, SD_BUS_TYPE_DOUBLE) &&
        sd_bus_message_read_basic(answer.get(), SD_BUS_TYPE_DOUBLE, &value) > 0) {
        return value;
    }
    return std::nullopt;
}

std::optional<bool> truth(sd_bus& bus, const char* key) {
    const Message answer = setting(bus, key);
    int value = 0;
    if (answer && enter(*answer, SD_BUS_TYPE_BOOLEAN) &&
        sd_bus_message_read_basic(answer.get(), SD_BUS_TYPE_BOOLEAN, &value) > 0) {
        return value != 0;
    }
    return std::nullopt;
}

} // namespace

Appearance desktopAppearance() {
    Appearance appearance;
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0) {
        return appearance;
    }
    const std::unique_ptr<sd_bus, Close> bus(opened);
    const double scale = number(*bus, "text-scaling-factor").value_or(1);
    if (scale >= smallestScale && scale <= largestScale) {
        appearance.textScale = scale;
    }
    appearance.isAnimated = truth(*bus, "enable-animations").value_or(true);
    return appearance;
}

} // namespace vigilo::platform
