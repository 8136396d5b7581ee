#include "platform/linux/login/AutostartEntry.h"

#include "text/Parts.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace vigilo::platform {

namespace {

constexpr std::string_view switchedOffHere = "X-Vigilo-SwitchedOff";

bool contains(const std::vector<std::string>& list, std::string_view name) {
    return std::find(list.begin(), list.end(), name) != list.end();
}

/// What the startup settings of the desktops write when the user switches an entry off.
bool isSwitchedOff(const DesktopEntry& entry) {
    if (booleanValue(entry, "Hidden") == true) {
        return true;
    }
    constexpr std::array<std::string_view, 2> switches{"X-GNOME-Autostart-enabled",
                                                       "X-MATE-Autostart-enabled"};
    return std::any_of(switches.begin(), switches.end(),
                       [&](std::string_view key) { return booleanValue(entry, key) == false; });
}

/// The first name of the desktop that the entry mentions decides; one that is not mentioned is
/// shown unless others are asked for.
bool isShown(const DesktopEntry& entry, std::string_view currentDesktop) {
    const std::vector<std::string> only = listValue(entry, "OnlyShowIn");
    const std::vector<std::string> never = listValue(entry, "NotShowIn");
    for (const std::string_view desktop : parts(currentDesktop, ':')) {
        // Xfce's settings let the user start what is not meant for Xfce.
        if (contains(only, desktop) ||
            (desktop == "XFCE" && booleanValue(entry, "X-XFCE-Autostart-Override") == true)) {
            return true;
        }
        if (contains(never, desktop)) {
            return false;
        }
    }
    return only.empty();
}

bool isStartable(const DesktopEntry& entry,
                 const std::function<bool(const std::string&)>& isExecutable) {
    if (textValue(entry, "Type") != "Application") {
        return false;
    }
    const std::optional<std::string> tried = textValue(entry, "TryExec");
    if (tried && !tried->empty() && !isExecutable(*tried)) {
        return false;
    }
    const std::optional<std::string> program =
        execProgram(textValue(entry, "Exec").value_or(std::string()));
    return program && isExecutable(*program);
}

} // namespace

LoginItemStatus autostartStatus(const DesktopEntry& entry, std::string_view currentDesktop,
                                const std::function<bool(const std::string&)>& isExecutable) {
    // First of all the user's choice, which stands whether or not the rest is in order; a file that
    // only switches one of the system's off has no more than that.
    if (isSwitchedOff(entry)) {
        return booleanValue(entry, switchedOffHere) == true ? LoginItemStatus::notRegistered
                                                            : LoginItemStatus::requiresApproval;
    }
    if (!isStartable(entry, isExecutable)) {
        return LoginItemStatus::notFound;
    }
    // Kept from this desktop is a choice too.
    return isShown(entry, currentDesktop) ? LoginItemStatus::enabled
                                          : LoginItemStatus::requiresApproval;
}

std::string autostartFile(std::string_view program) {
    std::string file = "[Desktop Entry]\n"
                       "Type=Application\n"
                       "Name=Vigilo\n"
                       "Comment=Keeps the computer awake while agents work\n"
                       "Icon=io.github.vigilo.Vigilo\n";
    file += "Exec=" + execLine(program) + '\n';
    // Where the program is gone, desktops pass over the entry without a word.
    file += "TryExec=" + escapedText(program) + '\n';
    file += "Terminal=false\n"
            "StartupNotify=false\n"
            "X-GNOME-Autostart-enabled=true\n";
    return file;
}

std::string switchedOffFile() {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Vigilo\n"
           "Hidden=true\n" +
           std::string(switchedOffHere) + "=true\n";
}

} // namespace vigilo::platform
