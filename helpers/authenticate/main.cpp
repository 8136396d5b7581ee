// Proves that whoever is at the keyboard is the user that runs this program: one PAM conversation
// over descriptor 3, then the end. Only a success frame together with exit status 0 means yes. With
// the argument "fingerprint" a finger on the reader is the proof, and nothing is asked.
#include "helpers/authenticate/Conversation.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <pwd.h>
#include <security/pam_appl.h>
#include <shadow.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using namespace vigilo::authentication;

/// Nobody but the kernel looks into this process, and it does not outlive the program.
void harden() {
    const rlimit none{.rlim_cur = 0, .rlim_max = 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
    close_range(socketDescriptor + 1, ~0U, 0);
    // Nothing that a module starts may speak for this process.
    fcntl(socketDescriptor, F_SETFD, FD_CLOEXEC);
}

/// A PAM service and, unless it is one of the system's, the folder with its file.
struct Service {
    std::string name;
    std::optional<std::string> folder;
};

bool exists(const std::string& path) {
    return access(path.c_str(), R_OK) == 0;
}

bool isOneOfTheSystem(const std::string& service) {
    return exists("/etc/pam.d/" + service) || exists("/usr/lib/pam.d/" + service);
}

/// Where the service files are that come with this program. Absolute also where that cannot be
/// known: the working folder is anybody's.
std::filesystem::path ownFolder() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return "/" / program.parent_path() / "pam";
}

/// Ours where it is installed; else one of ours that includes what the system asks everybody; else
/// the one of the console. Never "other", which may let everybody in.
std::optional<Service> passwordService() {
    if (isOneOfTheSystem("vigilo")) {
        return Service{.name = "vigilo", .folder = std::nullopt};
    }
    const auto own = ownFolder();
    for (const char* const included : {"common-auth", "system-auth"}) {
        if (exists(std::string("/etc/pam.d/") + included) &&
            exists((own / included / "vigilo").string())) {
            return Service{.name = "vigilo", .folder = (own / included).string()};
        }
    }
    if (exists("/etc/pam.d/login")) {
        return Service{.name = "login", .folder = std::nullopt};
    }
    return std::nullopt;
}

/// What the system's administrator says, else ours: without either there are no fingerprints.
std::optional<Service> fingerprintService() {
    const std::string name = "vigilo-fingerprint";
    if (isOneOfTheSystem(name)) {
        return Service{.name = name, .folder = std::nullopt};
    }
    const auto folder = ownFolder() / "fingerprint";
    if (exists((folder / name).string())) {
        return Service{.name = name, .folder = folder.string()};
    }
    return std::nullopt;
}

/// Whether the account has no password that could ever match. Only root can know.
bool isPasswordLocked(const char* user) {
    if (geteuid() != 0) {
        return false;
    }
    // This program has one thread.
    const spwd* const entry = getspnam(user); // cppcheck-suppress getspnamCalled
    return entry == nullptr || entry->sp_pwdp == nullptr || entry->sp_pwdp[0] == '!' ||
           entry->sp_pwdp[0] == '*';
}

/// Whether PAM has looked at the answers and found them wrong; all else are failures of the system.
bool isRefusal(int status) {
    switch (status) {
    case PAM_AUTH_ERR:
    case PAM_CRED_INSUFFICIENT:
    case PAM_USER_UNKNOWN:
    case PAM_MAXTRIES:
    case PAM_PERM_DENIED:
    case PAM_ACCT_EXPIRED:
        return true;
    default:
        return false;
    }
}

int authenticate(const Service& service, const pam_conv& conversing, const char* user) {
    pam_handle_t* handle = nullptr;
    int status = service.folder ? pam_start_confdir(service.name.c_str(), user, &conversing,
                                                    service.folder->c_str(), &handle)
                                : pam_start(service.name.c_str(), user, &conversing, &handle);
    if (status != PAM_SUCCESS) {
        send(FrameKind::impossible, "");
        return EXIT_FAILURE;
    }
    pam_set_item(handle, PAM_FAIL_DELAY, reinterpret_cast<const void*>(&reportDelay));
    status = pam_authenticate(handle, PAM_DISALLOW_NULL_AUTHTOK);
    // The account is not looked at: an expired password must not shut its owner out of a session
    // that is open already.
    pam_end(handle, status);
    // Some modules look at the password's age in the same step; it was the right one all the same.
    if (status != PAM_SUCCESS && status != PAM_NEW_AUTHTOK_REQD) {
        return isRefusal(status) ? refusedStatus : EXIT_FAILURE;
    }
    send(FrameKind::success, "");
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char* argv[]) {
    const bool isByFinger = argc > 1 && argv[1] == fingerprintArgument;
    // Before the process is closed to itself, too: where it is installed cannot be seen afterwards.
    const auto used = isByFinger ? fingerprintService() : passwordService();
    harden();
    // The user who runs this, never a name from the environment. One thread, here too.
    const passwd* const user = getpwuid(getuid()); // cppcheck-suppress getpwuidCalled
    if (user == nullptr || !used || (!isByFinger && isPasswordLocked(user->pw_name))) {
        send(FrameKind::impossible, "");
        return EXIT_FAILURE;
    }
    return authenticate(*used, isByFinger ? conversationWithoutQuestions() : conversation(),
                        std::string(user->pw_name).c_str());
}
