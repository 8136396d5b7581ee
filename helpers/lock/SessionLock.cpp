#include "helpers/lock/SessionLock.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include <systemd/sd-bus.h>
#include <unistd.h>

namespace vigilo {

namespace {

constexpr std::uint64_t callLimit = 1'000'000; // microseconds
constexpr auto logind = "org.freedesktop.login1";
constexpr auto logindPath = "/org/freedesktop/login1";
constexpr auto logindManager = "org.freedesktop.login1.Manager";
constexpr auto logindSession = "org.freedesktop.login1.Session";
// logind's own name for the caller's session or, outside one, the user's display session.
constexpr auto automaticSession = "/org/freedesktop/login1/session/auto";

// One of these owns its name for as long as it can lock the screen.
constexpr std::array screenSavers{"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                  "org.mate.ScreenSaver",        "org.cinnamon.ScreenSaver",
                                  "org.xfce.ScreenSaver",        "org.kde.screensaver"};

/// What D-Bus answered; freed at the end.
struct Reply {
    ~Reply() { sd_bus_message_unref(message); }
    sd_bus_message* message = nullptr;
};

std::optional<std::string> readPath(sd_bus_message* message) {
    const char* path = nullptr;
    if (sd_bus_message_read(message, "o", &path) < 0) {
        return std::nullopt;
    }
    return path;
}

/// The session that the environment names.
std::optional<std::string> namedSession(sd_bus* bus) {
    const char* const id = std::getenv("XDG_SESSION_ID");
    Reply reply;
    if (id == nullptr || sd_bus_call_method(bus, logind, logindPath, logindManager, "GetSession",
                                            nullptr, &reply.message, "s", id) < 0) {
        return std::nullopt;
    }
    return readPath(reply.message);
}

/// The session that logind holds to be the user's on a display.
std::optional<std::string> displaySession(sd_bus* bus) {
    Reply user;
    if (sd_bus_call_method(bus, logind, logindPath, logindManager, "GetUser", nullptr,
                           &user.message, "u", static_cast<std::uint32_t>(getuid())) < 0) {
        return std::nullopt;
    }
    const auto userPath = readPath(user.message);
    Reply display;
    if (!userPath ||
        sd_bus_get_property(bus, logind, userPath->c_str(), "org.freedesktop.login1.User",
                            "Display", nullptr, &display.message, "(so)") < 0) {
        return std::nullopt;
    }
    const char* path = nullptr;
    if (sd_bus_message_read(display.message, "(so)", nullptr, &path) < 0) {
        return std::nullopt;
    }
    return path;
}

bool lock(sd_bus* bus, const std::string& session) {
    return sd_bus_call_method(bus, logind, session.c_str(), logindSession, "Lock", nullptr, nullptr,
                              "") >= 0;
}

bool isLocked(sd_bus* bus, const std::string& session) {
    int isLocked = 0;
    return sd_bus_get_property_trivial(bus, logind, session.c_str(), logindSession, "LockedHint",
                                       nullptr, 'b', &isLocked) >= 0 &&
           isLocked != 0;
}

} // namespace

void SessionLock::Close::operator()(sd_bus* bus) const {
    sd_bus_flush_close_unref(bus);
}

SessionLock::SessionLock() {
    sd_bus* bus = nullptr;
    if (sd_bus_open_system(&bus) >= 0) {
        system_.reset(bus);
        sd_bus_set_method_call_timeout(bus, callLimit);
    }
    bus = nullptr;
    if (sd_bus_open_user(&bus) >= 0) {
        session_.reset(bus);
        sd_bus_set_method_call_timeout(bus, callLimit);
    }
}

SessionLock::~SessionLock() = default;

void SessionLock::request() {
    if (system_) {
        const auto named = namedSession(system_.get());
        const bool isAsked = lock(system_.get(), named.value_or(automaticSession));
        if (!isAsked) {
            if (const auto session = displaySession(system_.get())) {
                lock(system_.get(), *session);
            }
        }
    }
    if (session_ && isOwned("org.gnome.ScreenSaver")) {
        sd_bus_call_method(session_.get(), "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver",
                           "org.gnome.ScreenSaver", "SetActive", nullptr, nullptr, "b", 1);
    }
}

bool SessionLock::isTaken() {
    if (system_) {
        for (const auto& session : {namedSession(system_.get()).value_or(automaticSession),
                                    displaySession(system_.get()).value_or(automaticSession)}) {
            if (isLocked(system_.get(), session)) {
                return true;
            }
        }
    }
    for (const char* const name : screenSavers) {
        if (isOwned(name)) {
            return true;
        }
    }
    return false;
}

void SessionLock::sleepMutterDisplays() {
    constexpr std::int32_t off = 3; // as the levels of DPMS count
    if (isOwned("org.gnome.Mutter.DisplayConfig")) {
        sd_bus_set_property(session_.get(), "org.gnome.Mutter.DisplayConfig",
                            "/org/gnome/Mutter/DisplayConfig", "org.gnome.Mutter.DisplayConfig",
                            "PowerSaveMode", nullptr, "i", off);
    }
}

bool SessionLock::isOwned(const char* name) {
    Reply reply;
    int isOwned = 0;
    return session_ &&
           sd_bus_call_method(session_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus", "NameHasOwner", nullptr, &reply.message, "s",
                              name) >= 0 &&
           sd_bus_message_read(reply.message, "b", &isOwned) >= 0 && isOwned != 0;
}

} // namespace vigilo
