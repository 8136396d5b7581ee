#include "platform/linux/login/XdgLoginItem.h"

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/login/AutostartEntry.h"
#include "platform/linux/login/FileReplacement.h"
#include "platform/linux/workspace/SettingsProgram.h"
#include "platform/linux/workspace/StartupSettingsCommand.h"
#include "text/Parts.h"
#include "text/Unicode.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {

namespace fs = std::filesystem;

constexpr auto entryName = "autostart/io.github.vigilo.Vigilo.desktop";

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

fs::path homeFolder() {
    const std::string home = variable("HOME");
    if (!home.empty()) {
        return home;
    }
    // Not getpwuid(): its answer is shared with whatever else in this process looks users up.
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* user = nullptr;
    const int status = getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &user);
    return status != 0 || user == nullptr ? fs::path() : fs::path(user->pw_dir);
}

/// Something is there under this name, be it a link that leads nowhere.
bool isPresent(const fs::path& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

/// What a file holds; none when it is no file, cannot be read or is longer than any such file.
std::optional<std::string> contentOf(const fs::path& path) {
    // Without waiting, since a pipe in the file's place would never answer.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    constexpr off_t limit = 65536;
    if (status.st_size > limit) {
        return std::nullopt;
    }
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t length = 0;
    while (length < content.size()) {
        const ssize_t count = read(file.number(), content.data() + length, content.size() - length);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return std::nullopt;
        }
        length += static_cast<std::size_t>(count);
    }
    return content;
}

bool isExecutableFile(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

/// GLib does not find a program with a percent sign in its path, systemd's generator none with a
/// backslash, however they are written; refusing them is better than a start that never comes.
bool canEveryDesktopStart(std::string_view program) {
    return std::none_of(program.begin(), program.end(), [](unsigned char character) {
        constexpr unsigned char firstPrintable = ' ';
        return character == '%' || character == '\\' || character < firstPrintable;
    });
}

/// An error as the user is to read it: where, and what the system says.
std::optional<std::string> described(const fs::path& path, const std::error_code& error) {
    if (!error) {
        return std::nullopt;
    }
    return path.string() + ": " + error.message();
}

} // namespace

AutostartEnvironment autostartEnvironment() {
    AutostartEnvironment environment;
    const fs::path configHome = variable("XDG_CONFIG_HOME");
    const fs::path home = homeFolder();
    if (configHome.is_absolute()) {
        environment.configHome = configHome;
    } else if (home.is_absolute()) {
        environment.configHome = home / ".config";
    }
    std::string folders = variable("XDG_CONFIG_DIRS");
    if (folders.empty()) {
        folders = "/etc/xdg";
    }
    for (const fs::path folder : parts(folders, ':')) {
        if (folder.is_absolute()) {
            environment.configFolders.push_back(folder);
        }
    }
    environment.currentDesktop = variable("XDG_CURRENT_DESKTOP");
    environment.searchPath = variable("PATH");
    std::error_code unknown;
    environment.program = fs::read_symlink("/proc/self/exe", unknown).string();
    return environment;
}

XdgLoginItem::XdgLoginItem(AutostartEnvironment environment)
    : environment_(std::move(environment)),
      userEntry_(environment_.configHome.empty() ? fs::path()
                                                 : environment_.configHome / entryName) {}

LoginItemStatus XdgLoginItem::status() const {
    const std::optional<fs::path> path = effectiveEntry();
    if (!path) {
        return LoginItemStatus::notRegistered;
    }
    const std::optional<std::string> content = contentOf(*path);
    const std::optional<DesktopEntry> entry =
        content ? parseDesktopEntry(*content) : std::optional<DesktopEntry>();
    if (!entry) {
        return LoginItemStatus::notFound;
    }
    return autostartStatus(*entry, environment_.currentDesktop,
                           [this](const std::string& program) { return isExecutable(program); });
}

std::optional<std::string> XdgLoginItem::registerItem() {
    const std::error_code missing = std::make_error_code(std::errc::no_such_file_or_directory);
    if (userEntry_.empty()) {
        return described("~/.config", missing);
    }
    if (environment_.program.empty()) {
        return described("/proc/self/exe", missing);
    }
    if (!isUtf8(environment_.program)) {
        return described(environment_.program,
                         std::make_error_code(std::errc::illegal_byte_sequence));
    }
    if (!canEveryDesktopStart(environment_.program)) {
        return described(environment_.program, std::make_error_code(std::errc::invalid_argument));
    }
    return described(userEntry_, replaceFile(userEntry_, autostartFile(environment_.program)));
}

std::optional<std::string> XdgLoginItem::unregisterItem() {
    if (systemEntry()) {
        // That one is not ours to remove, and without ours it would count.
        return described(userEntry_, replaceFile(userEntry_, switchedOffFile()));
    }
    if (unlink(userEntry_.c_str()) != 0 && errno != ENOENT) {
        return described(userEntry_, {errno, std::generic_category()});
    }
    return std::nullopt;
}

void XdgLoginItem::openSettings() {
    const fs::path folder = effectiveEntry().value_or(userEntry_).parent_path();
    startSettings(
        startupSettingsCommand(environment_.currentDesktop, isInstalled, folder.string()));
}

std::optional<fs::path> XdgLoginItem::systemEntry() const {
    for (const fs::path& folder : environment_.configFolders) {
        fs::path entry = folder / entryName;
        if (isPresent(entry)) {
            return entry;
        }
    }
    return std::nullopt;
}

std::optional<fs::path> XdgLoginItem::effectiveEntry() const {
    return !userEntry_.empty() && isPresent(userEntry_) ? userEntry_ : systemEntry();
}

bool XdgLoginItem::isExecutable(const std::string& program) const {
    if (program.find('/') != std::string::npos) {
        return program.front() == '/' && isExecutableFile(program);
    }
    for (const fs::path folder : parts(environment_.searchPath, ':')) {
        if (folder.is_absolute() && isExecutableFile(folder / program)) {
            return true;
        }
    }
    return false;
}

} // namespace vigilo::platform
