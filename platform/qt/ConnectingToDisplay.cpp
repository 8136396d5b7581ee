#include "platform/qt/ConnectingToDisplay.h"

#include "platform/linux/FileDescriptor.h"

#include <cstdlib>
#include <mutex>
#include <string_view>

#include <QLatin1String>
#include <QString>
#include <QtGlobal>

#include <fcntl.h>
#include <unistd.h>

namespace vigilo::platform {

namespace {

/// What the toolkit has to say when a compositor has hung up, just before it ends the process.
constexpr QLatin1String brokenConnection("The Wayland connection");

// A message handler has no other way to find these. It may run on any thread.
std::mutex mutex;
bool isConnecting = false;
FileDescriptor standardError; ///< the real one while the libraries are silenced
QtMessageHandler usualHandler = nullptr;

/// Silences what a library writes to standard error by itself: that of X has lines of its own for a
/// server that refuses.
void silenceLibraries() {
    const FileDescriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
    standardError = FileDescriptor(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    if (nowhere && standardError) {
        dup2(nowhere.number(), STDERR_FILENO);
    }
}

void hearLibraries() {
    if (standardError) {
        dup2(standardError.number(), STDERR_FILENO);
        standardError = FileDescriptor();
    }
}

/// Ends the process. With the mutex held, so that any other thread that has the same to tell waits
/// for the end.
[[noreturn]] void endWithoutDisplay() {
    hearLibraries();
    const std::string_view line =
        isConnecting ? "vigilo: cannot connect to a display; start it from a graphical session.\n"
                     : "vigilo: the connection to the display broke.\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
    // No destructors: the toolkit is half made, or in the middle of its work.
    _exit(EXIT_FAILURE);
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    {
        const std::lock_guard lock(mutex);
        if (message.startsWith(brokenConnection) || (isConnecting && type == QtFatalMsg)) {
            endWithoutDisplay();
        }
        if (isConnecting) {
            return;
        }
    }
    usualHandler(type, context, message);
}

} // namespace

ConnectingToDisplay::ConnectingToDisplay() {
    const std::lock_guard lock(mutex);
    isConnecting = true;
    usualHandler = qInstallMessageHandler(handleMessage);
    silenceLibraries();
}

ConnectingToDisplay::~ConnectingToDisplay() {
    const std::lock_guard lock(mutex);
    hearLibraries();
    isConnecting = false;
}

} // namespace vigilo::platform
