#include "helpers/lock/SessionLock.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include <systemd/sd-bus.h>
#include <unistd.h>

namespace vigilo {

namespace {

constexpr auto messageBus = "org.freedesktop.DBus";
constexpr auto messageBusPath = "/org/freedesktop/DBus";
constexpr auto logind = "org.freedesktop.login1";
constexpr auto logindPath = "/org/freedesktop/login1";
constexpr auto logindManager = "org.freedesktop.login1.Manager";
constexpr auto logindSession = "org.freedesktop.login1.Session";
// logind's own name for the caller's session or, outside one, the user's display session.
constexpr auto automaticSession = "/org/freedesktop/login1/session/auto";

// One of these owns its name for as long as it can lock the screen.
constexpr std::array screenSavers{"org.gnome.ScreenSaver", "org.mate.ScreenSaver",
                                  "org.cinnamon.ScreenSaver", "org.xfce.ScreenSaver",
                                  "org.kde.screensaver"};
constexpr auto commonScreenSaver = "org.freedesktop.ScreenSaver";
// Owns the common name in GNOME, where it passes on nothing but inhibitions.
constexpr auto gnomeProxy = "org.gnome.SettingsDaemon.ScreensaverProxy";

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
    if (id == nullptr || ask(sd_bus_call_method, bus, logind, logindPath, logindManager,
                             "GetSession", nullptr, &reply.message, "s", id) < 0) {
        return std::nullopt;
    }
    return readPath(reply.message);
}

/// The session that logind holds to be the user's on a display.
std::optional<std::string> displaySession(sd_bus* bus) {
    Reply user;
    if (ask(sd_bus_call_method, bus, logind, logindPath, logindManager, "GetUser", nullptr,
            &user.message, "u", static_cast<std::uint32_t>(getuid())) < 0) {
        return std::nullopt;
    }
    const auto userPath = readPath(user.message);
    Reply display;
    if (!userPath ||
        ask(sd_bus_get_property, bus, logind, userPath->c_str(), "org.freedesktop.login1.User",
            "Display", nullptr, &display.message, "(so)") < 0) {
        return std::nullopt;
    }
    const char* path = nullptr;
    if (sd_bus_message_read(display.message, "(so)", nullptr, &path) < 0) {
        return std::nullopt;
    }
    return path;
}

/// Whether logind took the request, or may yet do so when it answers again.
bool lock(sd_bus* bus, const std::string& session) {
    const int result = ask(sd_bus_call_method, bus, logind, session.c_str(), logindSession, "Lock",
                           nullptr, nullptr, "");
    return result >= 0 || result == -ETIMEDOUT;
}

std::optional<std::uint32_t> owner(sd_bus* bus, const std::string& session) {
    Reply reply;
    std::uint32_t user = 0;
    if (ask(sd_bus_get_property, bus, logind, session.c_str(), logindSession, "User", nullptr,
            &reply.message, "(uo)") < 0 ||
        sd_bus_message_read(reply.message, "(uo)", &user, nullptr) < 0) {
        return std::nullopt;
    }
    return user;
}

/// Whether a program of the session's owner is there to hear what logind passes on: one that is on
/// this bus beside us. Who of them listens the bus tells nobody, so that all of them count, as they
/// do where it cannot be known.
bool isAnybodyListening(sd_bus* bus, const std::string& session) {
    const auto wanted = owner(bus, session);
    const char* self = nullptr;
    Reply reply;
    if (!wanted || sd_bus_get_unique_name(bus, &self) < 0 ||
        ask(sd_bus_call_method, bus, messageBus, messageBusPath, messageBus, "ListNames", nullptr,
            &reply.message, "") < 0 ||
        sd_bus_message_enter_container(reply.message, 'a', "s") < 0) {
        return true;
    }
    const char* name = nullptr;
    while (sd_bus_message_read(reply.message, "s", &name) > 0) {
        Reply user;
        std::uint32_t number = 0;
        // Every connection has one unique name, which begins with a colon.
        if (*name != ':' || std::string_view(name) == self) {
            continue;
        }
        const int result = ask(sd_bus_call_method, bus, messageBus, messageBusPath, messageBus,
                               "GetConnectionUnixUser", nullptr, &user.message, "s", name);
        // A bus that hangs is not asked about all the others, too.
        if (result == -ETIMEDOUT ||
            (result >= 0 && sd_bus_message_read(user.message, "u", &number) >= 0 &&
             number == *wanted)) {
            return true;
        }
    }
    return false;
}

/// Asks for the lock of our session and returns which one that is; none where no session of ours
/// takes requests.
std::optional<std::string> askLogind(sd_bus* bus) {
    std::string session = namedSession(bus).value_or(automaticSession);
    if (lock(bus, session)) {
        return session;
    }
    auto display = displaySession(bus);
    return display && lock(bus, *display) ? display : std::nullopt;
}

bool isLocked(sd_bus* bus, const std::string& session) {
    int isLocked = 0;
    return ask(sd_bus_get_property_trivial, bus, logind, session.c_str(), logindSession,
               "LockedHint", nullptr, 'b', &isLocked) >= 0 &&
           isLocked != 0;
}

} // namespace

SessionLock::SessionLock() : system_(openBus(sd_bus_open_system)) {}

SessionLock::~SessionLock() = default;

bool SessionLock::request() {
    bool mayBeTaken = false;
    if (system_) {
        const auto session = askLogind(system_.get());
        mayBeTaken = session && isAnybodyListening(system_.get(), *session);
    }
    // Only now, so that one that hangs does not hold the other up.
    session_ = openBus(sd_bus_open_user);
    if (isOwned("org.gnome.ScreenSaver")) {
        // Slow to answer is the shell, not the bus, which is still to be asked.
        sd_bus_call_method(session_.get(), "org.gnome.ScreenSaver", "/org/gnome/ScreenSaver",
                           "org.gnome.ScreenSaver", "SetActive", nullptr, nullptr, "b", 1);
        mayBeTaken = true;
    }
    return mayBeTaken;
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
    return isOwned(commonScreenSaver) && !isOwned(gnomeProxy);
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
    if (!session_) {
        return false;
    }
    Reply reply;
    int isOwned = 0;
    const int result = sd_bus_call_method(session_.get(), messageBus, messageBusPath, messageBus,
                                          "NameHasOwner", nullptr, &reply.message, "s", name);
    if (result == -ETIMEDOUT) {
        // It would keep every further question waiting, too.
        session_.reset();
    }
    return result >= 0 && sd_bus_message_read(reply.message, "b", &isOwned) >= 0 && isOwned != 0;
}

} // namespace vigilo
