#include "helpers/lock/DisplaySleep.h"

#include "helpers/lock/WaylandDisplaySleep.h"
#include "helpers/lock/X11DisplaySleep.h"

#include <array>
#include <cstdlib>
#include <sstream>
#include <string>

#include <spawn.h>
#include <unistd.h>

namespace vigilo {

namespace {

bool isSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool isPlasma() {
    const char* const names = std::getenv("XDG_CURRENT_DESKTOP");
    std::istringstream desktops(names != nullptr ? names : "");
    for (std::string desktop; std::getline(desktops, desktop, ':');) {
        if (desktop == "KDE") {
            return true;
        }
    }
    return false;
}

/// Plasma keeps the protocol for output power to its own programs.
void sleepPlasmaDisplays() {
    std::array<char, 15> program{"kscreen-doctor"};
    std::array<char, 7> option{"--dpms"};
    std::array<char, 4> off{"off"};
    const std::array arguments{program.data(), option.data(), off.data(),
                               static_cast<char*>(nullptr)};
    pid_t child = 0;
    posix_spawnp(&child, program.data(), nullptr, nullptr, arguments.data(), environ);
}

} // namespace

void sleepDisplays(SessionLock& session) {
    session.sleepMutterDisplays();
    if (!isSet("WAYLAND_DISPLAY")) {
        sleepX11Displays();
    } else if (isPlasma()) {
        sleepPlasmaDisplays();
    } else {
        sleepWaylandDisplays();
    }
}

} // namespace vigilo
